#pragma once
#include "primitives/cpu.h"
#include "primitives/simd.h"

#include <string>
#include <vector>

/// A kernel in each form that this machine can run, with the name of the form.
template <class Function>
struct kernel_form {
    std::string name;
    Function* run;
};
template <class Function>
using kernel_forms = std::vector<kernel_form<Function>>;

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
