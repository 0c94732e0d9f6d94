#pragma once

namespace vldv::primitives {

/// Whether the processor has AVX-512 as servers have had it from the first: F, BW, DQ and VL.
inline bool has_avx512() noexcept
{
#if defined(__x86_64__)
    static const bool found = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
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

inline bool has_avx2() noexcept
{
#if defined(__x86_64__)
    static const bool found = __builtin_cpu_supports("avx2");
    return found;
#else
    return false;
#endif
}

} // namespace vldv::primitives
