#include "primitives/simd.h"

#include <cmath>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

// Powers are summed in sixteen lanes: sample i of a row goes to lane i mod 16, and at the end lane k + 8 is added to
// lane k, then all from lane 0 on. Every form does the same operations in the same order, so that figures do not depend
// on the machine.

namespace vldv::primitives::simd {

namespace {

constexpr std::size_t lanes = 16, half = lanes / 2;

/// Sixteen sums.
using lane_sums = double[lanes];

double total_of(const lane_sums& sums) noexcept
{
    double total = 0.0;
    for (std::size_t k = 0; k < half; ++k) total += sums[k] + sums[k + half];
    return total;
}

struct lane_powers {
    lane_sums second = {}, third = {}, fourth = {}, absolute = {};
    void addTo(power_sums& total) const noexcept
    {
        total.second += total_of(second);
        total.third += total_of(third);
        total.fourth += total_of(fourth);
        total.absolute += total_of(absolute);
    }
};

} // namespace

std::size_t add_powers_plain(power_sums& total, std::span<const std::int16_t> row, double offset, double slope) noexcept
{
    lane_powers sums;
    lane_sums line;
    for (std::size_t k = 0; k < lanes; ++k) line[k] = offset + slope * static_cast<double>(k);
    const double step = slope * lanes;
    std::size_t i = 0;
    for (; i + lanes <= row.size(); i += lanes)
        for (std::size_t k = 0; k < lanes; ++k) {
            const double z = row[i + k] - line[k], square = z * z;
            sums.second[k] += square;
            sums.third[k] += square * z;
            sums.fourth[k] += square * square;
            sums.absolute[k] += std::fabs(z);
            line[k] += step;
        }
    sums.addTo(total);
    return i;
}

#if defined(__x86_64__)

__attribute__((target("avx512f,avx512bw,avx512vl,avx512dq"))) std::size_t
add_powers_avx512(power_sums& total, std::span<const std::int16_t> row, double offset, double slope) noexcept
{
    constexpr std::size_t wide = 8, blocks = lanes / wide;
    const __m512d step = _mm512_set1_pd(slope * lanes), slopes = _mm512_set1_pd(slope);
    const __m512d numbers = _mm512_setr_pd(0, 1, 2, 3, 4, 5, 6, 7);
    __m512d line[blocks], second[blocks] = {}, third[blocks] = {}, fourth[blocks] = {}, absolute[blocks] = {};
    for (std::size_t b = 0; b < blocks; ++b)
        line[b] =
            _mm512_add_pd(_mm512_set1_pd(offset),
                          _mm512_mul_pd(slopes, _mm512_add_pd(numbers, _mm512_set1_pd(static_cast<double>(wide * b)))));
    std::size_t i = 0;
    for (; i + lanes <= row.size(); i += lanes)
#pragma GCC unroll 2
        for (std::size_t b = 0; b < blocks; ++b) {
            const __m128i heights_ = _mm_loadu_si128(reinterpret_cast<const __m128i*>(&row[i + wide * b]));
            const __m512d z = _mm512_sub_pd(_mm512_cvtepi32_pd(_mm256_cvtepi16_epi32(heights_)), line[b]);
            const __m512d square = _mm512_mul_pd(z, z);
            second[b] = _mm512_add_pd(second[b], square);
            third[b] = _mm512_add_pd(third[b], _mm512_mul_pd(square, z));
            fourth[b] = _mm512_add_pd(fourth[b], _mm512_mul_pd(square, square));
            absolute[b] = _mm512_add_pd(absolute[b], _mm512_abs_pd(z));
            line[b] = _mm512_add_pd(line[b], step);
        }
    lane_powers sums;
    for (std::size_t b = 0; b < blocks; ++b) {
        _mm512_storeu_pd(sums.second + wide * b, second[b]);
        _mm512_storeu_pd(sums.third + wide * b, third[b]);
        _mm512_storeu_pd(sums.fourth + wide * b, fourth[b]);
        _mm512_storeu_pd(sums.absolute + wide * b, absolute[b]);
    }
    sums.addTo(total);
    return i;
}

/// A half of the lanes at a time: there are registers for no more, and the row is in the nearest cache.
__attribute__((target("avx2"))) std::size_t add_powers_avx2(power_sums& total, std::span<const std::int16_t> row,
                                                            double offset, double slope) noexcept
{
    constexpr std::size_t wide = 4, blocks = half / wide;
    const __m256d step = _mm256_set1_pd(slope * lanes), sign = _mm256_set1_pd(-0.0), slopes = _mm256_set1_pd(slope);
    const __m256d numbers = _mm256_setr_pd(0, 1, 2, 3);
    lane_powers sums;
    std::size_t end = 0;
    for (std::size_t first = 0; first < lanes; first += half) {
        __m256d line[blocks], second[blocks] = {}, third[blocks] = {}, fourth[blocks] = {}, absolute[blocks] = {};
        for (std::size_t b = 0; b < blocks; ++b)
            line[b] = _mm256_add_pd(
                _mm256_set1_pd(offset),
                _mm256_mul_pd(slopes, _mm256_add_pd(numbers, _mm256_set1_pd(static_cast<double>(first + wide * b)))));
        std::size_t i = 0;
        for (; i + lanes <= row.size(); i += lanes)
#pragma GCC unroll 2
            for (std::size_t b = 0; b < blocks; ++b) {
                const __m128i heights_ = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&row[i + first + wide * b]));
                const __m256d z = _mm256_sub_pd(_mm256_cvtepi32_pd(_mm_cvtepi16_epi32(heights_)), line[b]);
                const __m256d square = _mm256_mul_pd(z, z);
                second[b] = _mm256_add_pd(second[b], square);
                third[b] = _mm256_add_pd(third[b], _mm256_mul_pd(square, z));
                fourth[b] = _mm256_add_pd(fourth[b], _mm256_mul_pd(square, square));
                absolute[b] = _mm256_add_pd(absolute[b], _mm256_andnot_pd(sign, z));
                line[b] = _mm256_add_pd(line[b], step);
            }
        for (std::size_t b = 0; b < blocks; ++b) {
            _mm256_storeu_pd(sums.second + first + wide * b, second[b]);
            _mm256_storeu_pd(sums.third + first + wide * b, third[b]);
            _mm256_storeu_pd(sums.fourth + first + wide * b, fourth[b]);
            _mm256_storeu_pd(sums.absolute + first + wide * b, absolute[b]);
        }
        end = i;
    }
    sums.addTo(total);
    return end;
}
#endif

} // namespace vldv::primitives::simd
