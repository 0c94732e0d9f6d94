#include "primitives/simd.h"

#if defined(__x86_64__)
#include <immintrin.h>

namespace primitives::simd {

namespace {

void add_last_columns(const_height_block rows, int first, std::int32_t* sums) noexcept
{
    for (int x = first; x < rows.width; ++x) {
        sums[x] = 0;
        for (int y = 0; y < rows.height; ++y) sums[x] += rows.row(y)[x];
    }
}

} // namespace

// Two rows at a time: their numbers are interleaved, and a multiplication with ones adds neighbours in 32 bits. Columns
// come out in the order of the interleaving, which is put right once at the end.

__attribute__((target("avx512f,avx512bw"))) void add_rows_avx512(const_height_block rows, std::int32_t* sums) noexcept
{
    constexpr int lanes = 32;
    const __m512i ones = _mm512_set1_epi16(1);
    const __m512i low = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11),
                  high = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
    int x = 0;
    for (; x + lanes <= rows.width; x += lanes) {
        __m512i first = _mm512_setzero_si512(), second = first;
        const auto* at = reinterpret_cast<const char*>(rows.data + x);
        int y = 0;
        for (; y + 2 <= rows.height; y += 2, at += 2 * std::ptrdiff_t{rows.step}) {
            const __m512i a = _mm512_loadu_si512(at), b = _mm512_loadu_si512(at + rows.step);
            first = _mm512_add_epi32(first, _mm512_madd_epi16(_mm512_unpacklo_epi16(a, b), ones));
            second = _mm512_add_epi32(second, _mm512_madd_epi16(_mm512_unpackhi_epi16(a, b), ones));
        }
        if (y < rows.height) {
            const __m512i a = _mm512_loadu_si512(at), none = _mm512_setzero_si512();
            first = _mm512_add_epi32(first, _mm512_madd_epi16(_mm512_unpacklo_epi16(a, none), ones));
            second = _mm512_add_epi32(second, _mm512_madd_epi16(_mm512_unpackhi_epi16(a, none), ones));
        }
        _mm512_storeu_si512(sums + x, _mm512_permutex2var_epi64(first, low, second));
        _mm512_storeu_si512(sums + x + lanes / 2, _mm512_permutex2var_epi64(first, high, second));
    }
    add_last_columns(rows, x, sums);
}

__attribute__((target("avx2"))) void add_rows_avx2(const_height_block rows, std::int32_t* sums) noexcept
{
    constexpr int lanes = 16;
    const __m256i ones = _mm256_set1_epi16(1);
    int x = 0;
    for (; x + lanes <= rows.width; x += lanes) {
        __m256i first = _mm256_setzero_si256(), second = first;
        const auto* at = reinterpret_cast<const char*>(rows.data + x);
        int y = 0;
        for (; y < rows.height; y += 2, at += 2 * std::ptrdiff_t{rows.step}) {
            const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
            const __m256i b = y + 1 < rows.height ? _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + rows.step))
                                                  : _mm256_setzero_si256();
            first = _mm256_add_epi32(first, _mm256_madd_epi16(_mm256_unpacklo_epi16(a, b), ones));
            second = _mm256_add_epi32(second, _mm256_madd_epi16(_mm256_unpackhi_epi16(a, b), ones));
        }
        auto* const out = reinterpret_cast<__m256i*>(sums + x);
        _mm256_storeu_si256(out, _mm256_permute2x128_si256(first, second, 0x20));
        _mm256_storeu_si256(out + 1, _mm256_permute2x128_si256(first, second, 0x31));
    }
    add_last_columns(rows, x, sums);
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

} // namespace primitives::simd
#endif
