#include "primitives/simd.h"

#if defined(__x86_64__)
#include <algorithm>
#include <cstring>
#include <immintrin.h>
#include <iterator>

namespace vldv::primitives::simd {

namespace {

void add_last_columns(const_height_block rows, int first, std::int32_t* sums, height_range& range) noexcept
{
    for (int x = first; x < rows.width; ++x) {
        sums[x] = 0;
        for (int y = 0; y < rows.height; ++y) {
            const std::int16_t sample = rows.row(y)[x];
            sums[x] += sample;
            range.include({sample, sample});
        }
    }
}

/// Smallest and largest, lane by lane.
struct lanes_512 {
    __m512i least, most;
};
__attribute__((target("avx512f,avx512bw"))) inline void include(lanes_512& range, __m512i samples) noexcept
{
    range.least = _mm512_min_epi16(range.least, samples);
    range.most = _mm512_max_epi16(range.most, samples);
}
struct lanes_256 {
    __m256i least, most;
};
__attribute__((target("avx2"))) inline void include(lanes_256& range, __m256i samples) noexcept
{
    range.least = _mm256_min_epi16(range.least, samples);
    range.most = _mm256_max_epi16(range.most, samples);
}

template <class Lanes>
height_range of_lanes(const Lanes& range) noexcept
{
    alignas(64) std::int16_t least[sizeof range.least / sizeof(std::int16_t)], most[std::size(least)];
    std::memcpy(least, &range.least, sizeof least);
    std::memcpy(most, &range.most, sizeof most);
    return {*std::ranges::min_element(least), *std::ranges::max_element(most)};
}

} // namespace

// Two rows at a time: their numbers are interleaved, and a multiplication with ones adds neighbours in 32 bits. Columns
// come out in the order of the interleaving, which is put right once at the end.

__attribute__((target("avx512f,avx512bw"))) height_range add_rows_avx512(const_height_block rows,
                                                                         std::int32_t* sums) noexcept
{
    constexpr int lanes = 32;
    const __m512i ones = _mm512_set1_epi16(1);
    const __m512i low = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11),
                  high = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
    lanes_512 range{_mm512_set1_epi16(32767), _mm512_set1_epi16(-32768)};
    int x = 0;
    for (; x + lanes <= rows.width; x += lanes) {
        __m512i first = _mm512_setzero_si512(), second = first;
        const auto* at = reinterpret_cast<const char*>(rows.data + x);
        int y = 0;
        for (; y + 2 <= rows.height; y += 2, at += 2 * std::ptrdiff_t{rows.step}) {
            const __m512i a = _mm512_loadu_si512(at), b = _mm512_loadu_si512(at + rows.step);
            include(range, a);
            include(range, b);
            first = _mm512_add_epi32(first, _mm512_madd_epi16(_mm512_unpacklo_epi16(a, b), ones));
            second = _mm512_add_epi32(second, _mm512_madd_epi16(_mm512_unpackhi_epi16(a, b), ones));
        }
        if (y < rows.height) {
            const __m512i a = _mm512_loadu_si512(at), none = _mm512_setzero_si512();
            include(range, a);
            first = _mm512_add_epi32(first, _mm512_madd_epi16(_mm512_unpacklo_epi16(a, none), ones));
            second = _mm512_add_epi32(second, _mm512_madd_epi16(_mm512_unpackhi_epi16(a, none), ones));
        }
        _mm512_storeu_si512(sums + x, _mm512_permutex2var_epi64(first, low, second));
        _mm512_storeu_si512(sums + x + lanes / 2, _mm512_permutex2var_epi64(first, high, second));
    }
    height_range found = of_lanes(range);
    add_last_columns(rows, x, sums, found);
    return found;
}

__attribute__((target("avx2"))) height_range add_rows_avx2(const_height_block rows, std::int32_t* sums) noexcept
{
    constexpr int lanes = 16;
    const __m256i ones = _mm256_set1_epi16(1);
    lanes_256 range{_mm256_set1_epi16(32767), _mm256_set1_epi16(-32768)};
    int x = 0;
    for (; x + lanes <= rows.width; x += lanes) {
        __m256i first = _mm256_setzero_si256(), second = first;
        const auto* at = reinterpret_cast<const char*>(rows.data + x);
        int y = 0;
        for (; y < rows.height; y += 2, at += 2 * std::ptrdiff_t{rows.step}) {
            const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
            __m256i b = _mm256_setzero_si256();
            include(range, a);
            if (y + 1 < rows.height) {
                b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + rows.step));
                include(range, b);
            }
            first = _mm256_add_epi32(first, _mm256_madd_epi16(_mm256_unpacklo_epi16(a, b), ones));
            second = _mm256_add_epi32(second, _mm256_madd_epi16(_mm256_unpackhi_epi16(a, b), ones));
        }
        auto* const out = reinterpret_cast<__m256i*>(sums + x);
        _mm256_storeu_si256(out, _mm256_permute2x128_si256(first, second, 0x20));
        _mm256_storeu_si256(out + 1, _mm256_permute2x128_si256(first, second, 0x31));
    }
    height_range found = of_lanes(range);
    add_last_columns(rows, x, sums, found);
    return found;
}

__attribute__((target("avx512f,avx512bw,avx512vl"))) std::size_t write_means_avx512(std::span<const std::int32_t> sums,
                                                                                    const double* share,
                                                                                    const double* shift,
                                                                                    std::int16_t* out) noexcept
{
    constexpr std::size_t lanes = 8;
    const __m256i lift = _mm256_set1_epi32(32768);
    std::size_t i = 0;
    for (; i + lanes <= sums.size(); i += lanes) {
        const __m512d sum = _mm512_cvtepi32_pd(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(&sums[i])));
        const __m512d mean = _mm512_add_pd(_mm512_mul_pd(sum, _mm512_loadu_pd(share + i)), _mm512_loadu_pd(shift + i));
        const __m256i whole = _mm256_sub_epi32(_mm512_cvttpd_epi32(mean), lift);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm256_cvtepi32_epi16(whole));
    }
    return i;
}

__attribute__((target("avx2"))) std::size_t write_means_avx2(std::span<const std::int32_t> sums, const double* share,
                                                             const double* shift, std::int16_t* out) noexcept
{
    constexpr std::size_t lanes = 4;
    const __m128i lift = _mm_set1_epi32(32768);
    std::size_t i = 0;
    for (; i + lanes <= sums.size(); i += lanes) {
        const __m256d sum = _mm256_cvtepi32_pd(_mm_loadu_si128(reinterpret_cast<const __m128i*>(&sums[i])));
        const __m256d mean = _mm256_add_pd(_mm256_mul_pd(sum, _mm256_loadu_pd(share + i)), _mm256_loadu_pd(shift + i));
        const __m128i whole = _mm_sub_epi32(_mm256_cvttpd_epi32(mean), lift);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + i), _mm_packs_epi32(whole, whole));
    }
    return i;
}

} // namespace vldv::primitives::simd
#endif
