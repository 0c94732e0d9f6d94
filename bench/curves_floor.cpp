#include "curves_floor.h"

#include "primitives/cpu.h"

#include <cstdint>
#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace vldv::bench {

namespace {

using pack = double __attribute__((vector_size(64)));
using raw = std::int32_t __attribute__((vector_size(32)));

// The same lines for each kind of vector: `lower` and `higher` are what differs.
#define VLDV_ARITHMETIC(lower, higher)                                                                                 \
    raw number = raw{} + 3;                                                                                            \
    pack w[4] = {pack{} + 0.1, pack{} + 0.2, pack{} + 0.3, pack{} + 0.4};                                              \
    const pack c[4] = {pack{} + 1.1, pack{} + 1.2, pack{} + 1.3, pack{} + 1.4};                                        \
    const pack scale = pack{} + 0.5, start = pack{} + 1.0;                                                             \
    pack sums[4] = {}, before = {}, here = {}, last = {}, total = {}, squares = {};                                    \
    for (std::size_t i = 0; i < samples / 8; ++i) {                                                                    \
        asm volatile("" : "+m"(number), "+m"(w[0]), "+m"(w[1]), "+m"(w[2]), "+m"(w[3]));                               \
        const pack y = __builtin_convertvector(number, pack) * scale + start;                                          \
        for (int k = 0; k < 4; ++k) sums[k] += y * w[k];                                                               \
        const pack value = (c[0] * w[0] + c[1] * w[1]) + (c[2] * w[2] + c[3] * w[3]);                                  \
        const pack after = value - last;                                                                               \
        const pack median = higher(lower(before, here), lower(higher(before, here), after));                           \
        total += median;                                                                                               \
        squares += median * median;                                                                                    \
        before = here;                                                                                                 \
        here = after;                                                                                                  \
        last = value;                                                                                                  \
    }                                                                                                                  \
    return total[0] + squares[1] + sums[0][0] + sums[1][0] + sums[2][0] + sums[3][0];

#if defined(__x86_64__)
__attribute__((target("avx512f"))) double wide_arithmetic(std::size_t samples)
{
    VLDV_ARITHMETIC(_mm512_min_pd, _mm512_max_pd)
}
#endif

#define VLDV_LOWER(a, b) ((b) < (a) ? (b) : (a))
#define VLDV_HIGHER(a, b) ((b) < (a) ? (a) : (b))
double plain_arithmetic(std::size_t samples) { VLDV_ARITHMETIC(VLDV_LOWER, VLDV_HIGHER) }

} // namespace

double force_arithmetic(std::size_t samples)
{
#if defined(__x86_64__)
    if (primitives::has_avx512()) return wide_arithmetic(samples);
#endif
    return plain_arithmetic(samples);
}

} // namespace vldv::bench
