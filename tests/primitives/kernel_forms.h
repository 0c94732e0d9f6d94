#pragma once
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
