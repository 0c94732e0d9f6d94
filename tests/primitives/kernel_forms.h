#pragma once
#include "primitives/cpu.h"
#include "primitives/simd.h"
#include "primitives/simd/kernels.h"

#include <string>
#include <type_traits>
#include <vector>

/// A kernel in each form that this machine can run, with the name of the form.
template <class Function>
struct kernel_form {
    std::string name;
    Function* run;
};
template <class Function>
using kernel_forms = std::vector<kernel_form<Function>>;

/// Those of each instruction set that the machine has, and the plain form that defines the answer where it is given.
template <class Function>
kernel_forms<Function> forms_of(Function* primitives::kernel_table::* kernel,
                                std::type_identity_t<Function>* reference = nullptr)
{
    kernel_forms<Function> forms;
    for (const primitives::kernel_table& set : primitives::available_kernels())
        forms.push_back({set.name, set.*kernel});
    if (reference) forms.push_back({"reference", reference});
    return forms;
}

/// The chosen form, and those of each instruction set that the machine has (null: there is none).
template <class Function>
kernel_forms<Function> forms_of(Function* chosen, Function* avx2, Function* avx512,
                                bool hasWidest = primitives::has_avx512())
{
    kernel_forms<Function> forms{{"chosen", chosen}};
    if (avx2 && primitives::has_avx2()) forms.push_back({"AVX2", avx2});
    if (avx512 && hasWidest) forms.push_back({"AVX-512", avx512});
    return forms;
}
#if defined(__x86_64__)
#define VLDV_SET_FORMS(kernel) &kernel##_avx2, &kernel##_avx512
#define VLDV_FORMS(kernel)                                                                                             \
    forms_of(primitives::kernel, primitives::simd::kernel##_avx2, primitives::simd::kernel##_avx512)
#else
#define VLDV_SET_FORMS(kernel)                                                                                         \
    {}, {}
#define VLDV_FORMS(kernel) forms_of(primitives::kernel, {}, {})
#endif
