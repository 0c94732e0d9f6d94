#pragma once
#include <cstddef>
#include <span>

/// Which instruction sets this processor has, of those that sources of kernels are compiled for. What is asked for here
/// is what `vldv_kernels` in cmake/folder.cmake tells the compiler that it may use.
namespace vldv::primitives {

inline bool has_avx2() noexcept
{
#if defined(__x86_64__)
    static const bool found = __builtin_cpu_supports("avx2");
    return found;
#else
    return false;
#endif
}

/// Whether the processor has AVX-512 as servers have had it from the first: F, BW, DQ and VL.
inline bool has_avx512() noexcept
{
#if defined(__x86_64__)
    static const bool found = has_avx2() && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                              __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
    return found;
#else
    return false;
#endif
}

/// Whether it has the byte permutations of VBMI as well, which only tables of bytes need.
inline bool has_vbmi() noexcept
{
#if defined(__x86_64__)
    static const bool found = has_avx512() && __builtin_cpu_supports("avx512vbmi");
    return found;
#else
    return false;
#endif
}

/// What this processor can run of the forms of something, in the order plain, AVX2, AVX-512, VBMI; each set has those
/// before it. The last is the widest.
template <class Form, std::size_t Count>
std::span<const Form> runnable(const Form (&forms)[Count]) noexcept
{
    const std::size_t sets = 1u + has_avx2() + has_avx512() + has_vbmi();
    return {forms, sets < Count ? sets : Count};
}

} // namespace vldv::primitives
