#include "primitives/simd.h"

#if defined(__x86_64__)
#include <immintrin.h>

namespace primitives::simd {

namespace {

template <std::size_t Lanes>
double total_of(const double (&lanes)[Lanes]) noexcept
{
    double sum = 0.0;
    for (const double lane : lanes) sum += lane;
    return sum;
}

} // namespace

__attribute__((target("avx512f,avx512bw,avx512vl,avx512dq"))) std::size_t
add_powers_avx512(power_sums& total, std::span<const std::int16_t> row, double offset, double slope) noexcept
{
    constexpr std::size_t lanes = 8, blocks = 2;
    const __m512d step = _mm512_set1_pd(slope * (lanes * blocks));
    __m512d line[blocks], second[blocks] = {}, third[blocks] = {}, fourth[blocks] = {}, absolute[blocks] = {};
    for (std::size_t b = 0; b < blocks; ++b)
        line[b] = _mm512_add_pd(_mm512_set1_pd(offset + slope * static_cast<double>(lanes * b)),
                                _mm512_mul_pd(_mm512_set1_pd(slope), _mm512_setr_pd(0, 1, 2, 3, 4, 5, 6, 7)));
    std::size_t i = 0;
    for (; i + lanes * blocks <= row.size(); i += lanes * blocks)
#pragma GCC unroll 2
        for (std::size_t b = 0; b < blocks; ++b) {
            const __m128i heights_ = _mm_loadu_si128(reinterpret_cast<const __m128i*>(&row[i + lanes * b]));
            const __m512d z = _mm512_sub_pd(_mm512_cvtepi32_pd(_mm256_cvtepi16_epi32(heights_)), line[b]);
            const __m512d square = _mm512_mul_pd(z, z);
            second[b] = _mm512_add_pd(second[b], square);
            third[b] = _mm512_fmadd_pd(square, z, third[b]);
            fourth[b] = _mm512_fmadd_pd(square, square, fourth[b]);
            absolute[b] = _mm512_add_pd(absolute[b], _mm512_abs_pd(z));
            line[b] = _mm512_add_pd(line[b], step);
        }
    const auto put = [](double& sum, __m512d a, __m512d b) __attribute__((target("avx512f"))) {
        double spread[lanes];
        _mm512_storeu_pd(spread, _mm512_add_pd(a, b));
        sum += total_of(spread);
    };
    put(total.second, second[0], second[1]);
    put(total.third, third[0], third[1]);
    put(total.fourth, fourth[0], fourth[1]);
    put(total.absolute, absolute[0], absolute[1]);
    return i;
}

__attribute__((target("avx2"))) std::size_t add_powers_avx2(power_sums& total, std::span<const std::int16_t> row,
                                                            double offset, double slope) noexcept
{
    constexpr std::size_t lanes = 4;
    const __m256d step = _mm256_set1_pd(slope * lanes), sign = _mm256_set1_pd(-0.0);
    __m256d line =
        _mm256_add_pd(_mm256_set1_pd(offset), _mm256_mul_pd(_mm256_set1_pd(slope), _mm256_setr_pd(0, 1, 2, 3)));
    __m256d second = _mm256_setzero_pd(), third = second, fourth = second, absolute = second;
    std::size_t i = 0;
    for (; i + lanes <= row.size(); i += lanes) {
        const __m128i heights_ = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&row[i]));
        const __m256d z = _mm256_sub_pd(_mm256_cvtepi32_pd(_mm_cvtepi16_epi32(heights_)), line);
        const __m256d square = _mm256_mul_pd(z, z);
        second = _mm256_add_pd(second, square);
        third = _mm256_add_pd(third, _mm256_mul_pd(square, z));
        fourth = _mm256_add_pd(fourth, _mm256_mul_pd(square, square));
        absolute = _mm256_add_pd(absolute, _mm256_andnot_pd(sign, z));
        line = _mm256_add_pd(line, step);
    }
    const auto put = [](double& sum, __m256d a) __attribute__((target("avx2"))) {
        double spread[lanes];
        _mm256_storeu_pd(spread, a);
        sum += total_of(spread);
    };
    put(total.second, second);
    put(total.third, third);
    put(total.fourth, fourth);
    put(total.absolute, absolute);
    return i;
}

} // namespace primitives::simd
#endif
