#include "primitives/simd.h"

#if defined(__x86_64__)
#include <algorithm>
#include <immintrin.h>

namespace vldv::primitives::simd {

namespace {

height_range merged(height_range a, height_range b) noexcept
{
    return {std::min(a.minimum, b.minimum), std::max(a.maximum, b.maximum)};
}

/// The range of what a vector of minima and one of maxima collected.
template <std::size_t Lanes>
height_range collected(const std::int16_t (&low)[Lanes], const std::int16_t (&high)[Lanes]) noexcept
{
    return {find_range_reference(low).minimum, find_range_reference(high).maximum};
}

} // namespace

__attribute__((target("avx2"))) height_range find_range_avx2(std::span<const std::int16_t> heights) noexcept
{
    constexpr std::size_t lanes = 16, step = 4 * lanes;
    const std::int16_t* next = heights.data();
    __m256i low[4], high[4];
    for (int k = 0; k < 4; ++k) {
        low[k] = _mm256_set1_epi16(32767);
        high[k] = _mm256_set1_epi16(-32768);
    }
    std::size_t left = heights.size();
    for (; left >= step; left -= step, next += step)
        for (std::size_t k = 0; k < 4; ++k) {
            const __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(next + k * lanes));
            low[k] = _mm256_min_epi16(low[k], block);
            high[k] = _mm256_max_epi16(high[k], block);
        }
    std::int16_t lowest[lanes], highest[lanes];
    const __m256i allLow = _mm256_min_epi16(_mm256_min_epi16(low[0], low[1]), _mm256_min_epi16(low[2], low[3]));
    const __m256i allHigh = _mm256_max_epi16(_mm256_max_epi16(high[0], high[1]), _mm256_max_epi16(high[2], high[3]));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(lowest), allLow);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(highest), allHigh);
    return merged(collected(lowest, highest), find_range_reference({next, left}));
}

__attribute__((target("avx512f,avx512bw"))) height_range
find_range_avx512(std::span<const std::int16_t> heights) noexcept
{
    constexpr std::size_t lanes = 32, step = 4 * lanes;
    const std::int16_t* next = heights.data();
    __m512i low[4], high[4];
    for (int k = 0; k < 4; ++k) {
        low[k] = _mm512_set1_epi16(32767);
        high[k] = _mm512_set1_epi16(-32768);
    }
    std::size_t left = heights.size();
    for (; left >= step; left -= step, next += step)
        for (std::size_t k = 0; k < 4; ++k) {
            const __m512i block = _mm512_loadu_si512(next + k * lanes);
            low[k] = _mm512_min_epi16(low[k], block);
            high[k] = _mm512_max_epi16(high[k], block);
        }
    std::int16_t lowest[lanes], highest[lanes];
    _mm512_storeu_si512(lowest, _mm512_min_epi16(_mm512_min_epi16(low[0], low[1]), _mm512_min_epi16(low[2], low[3])));
    _mm512_storeu_si512(highest,
                        _mm512_max_epi16(_mm512_max_epi16(high[0], high[1]), _mm512_max_epi16(high[2], high[3])));
    return merged(collected(lowest, highest), find_range_reference({next, left}));
}

} // namespace vldv::primitives::simd
#endif
