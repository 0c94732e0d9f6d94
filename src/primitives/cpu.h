#pragma once

namespace primitives {

/// Whether the processor has the byte permutations of AVX-512 VBMI (and what came before them).
inline bool has_vbmi() noexcept
{
#if defined(__x86_64__)
    static const bool found = __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512bw") &&
                              __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq");
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

} // namespace primitives
