#include "curves/figures/force/force_packs.h"

#include "primitives/cpu.h"

#include <cstring>
#include <limits>
#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace vldv::curves {

namespace {

using sample_tile = std::int16_t[packLanes][packLanes];

/// tile[k][lane] = curves[lane][i + k].
#if defined(__x86_64__)
[[gnu::always_inline]] inline void transpose(const std::int16_t* const* curves, int i, sample_tile& tile) noexcept
{
    const auto row = [&](int lane) __attribute__((always_inline)) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(curves[lane] + i));
    };
    const auto put = [&](int k, __m128i samples) __attribute__((always_inline)) {
        _mm_store_si128(reinterpret_cast<__m128i*>(tile[k]), samples);
    };
    // Interleaving neighbours three times brings samples of eight curves together.
    const __m128i a0 = _mm_unpacklo_epi16(row(0), row(1)), a1 = _mm_unpackhi_epi16(row(0), row(1));
    const __m128i a2 = _mm_unpacklo_epi16(row(2), row(3)), a3 = _mm_unpackhi_epi16(row(2), row(3));
    const __m128i a4 = _mm_unpacklo_epi16(row(4), row(5)), a5 = _mm_unpackhi_epi16(row(4), row(5));
    const __m128i a6 = _mm_unpacklo_epi16(row(6), row(7)), a7 = _mm_unpackhi_epi16(row(6), row(7));
    const __m128i b0 = _mm_unpacklo_epi32(a0, a2), b1 = _mm_unpackhi_epi32(a0, a2);
    const __m128i b2 = _mm_unpacklo_epi32(a4, a6), b3 = _mm_unpackhi_epi32(a4, a6);
    const __m128i b4 = _mm_unpacklo_epi32(a1, a3), b5 = _mm_unpackhi_epi32(a1, a3);
    const __m128i b6 = _mm_unpacklo_epi32(a5, a7), b7 = _mm_unpackhi_epi32(a5, a7);
    put(0, _mm_unpacklo_epi64(b0, b2));
    put(1, _mm_unpackhi_epi64(b0, b2));
    put(2, _mm_unpacklo_epi64(b1, b3));
    put(3, _mm_unpackhi_epi64(b1, b3));
    put(4, _mm_unpacklo_epi64(b4, b6));
    put(5, _mm_unpackhi_epi64(b4, b6));
    put(6, _mm_unpacklo_epi64(b5, b7));
    put(7, _mm_unpackhi_epi64(b5, b7));
}
#else
inline void transpose(const std::int16_t* const* curves, int i, sample_tile& tile) noexcept
{
    for (int k = 0; k < packLanes; ++k)
        for (int lane = 0; lane < packLanes; ++lane) tile[k][lane] = curves[lane][i + k];
}
#endif

using pack = double __attribute__((vector_size(8 * packLanes)));
using pack_bits = std::int64_t __attribute__((vector_size(8 * packLanes)));
using samples_16 = std::int16_t __attribute__((vector_size(2 * packLanes)));
using samples_32 = std::int32_t __attribute__((vector_size(4 * packLanes)));

// What the compiler makes of vectors by itself.
namespace plain {
#define VLDV_TARGET_LAMBDA
#define VLDV_TARGET inline
VLDV_TARGET pack as_numbers(const std::int16_t* samples) noexcept
{
    samples_16 raw;
    std::memcpy(&raw, samples, sizeof raw);
    return __builtin_convertvector(__builtin_convertvector(raw, samples_32), pack);
}
VLDV_TARGET pack lower(const pack& a, const pack& b) noexcept { return b < a ? b : a; }
VLDV_TARGET pack higher(const pack& a, const pack& b) noexcept { return b < a ? a : b; }
#include "curves/figures/force_packs_form.inc"
#undef VLDV_TARGET
#undef VLDV_TARGET_LAMBDA
} // namespace plain

#if defined(__x86_64__)
namespace avx2 {
#define VLDV_TARGET_LAMBDA __attribute__((target("avx2")))
#define VLDV_TARGET VLDV_TARGET_LAMBDA inline

// A vector that is wider than the registers lives in memory, whatever is done with it; its halves do not.
struct pack_bits {
    __m256i low, high;
    VLDV_TARGET friend pack_bits operator+(const pack_bits& a, const pack_bits& b) noexcept
    {
        return {_mm256_add_epi64(a.low, b.low), _mm256_add_epi64(a.high, b.high)};
    }
    VLDV_TARGET friend pack_bits operator-(const pack_bits& a, const pack_bits& b) noexcept
    {
        return {_mm256_sub_epi64(a.low, b.low), _mm256_sub_epi64(a.high, b.high)};
    }
    VLDV_TARGET friend pack_bits operator&(const pack_bits& a, const pack_bits& b) noexcept
    {
        return {_mm256_and_si256(a.low, b.low), _mm256_and_si256(a.high, b.high)};
    }
};

struct pack {
    __m256d low, high;
    VLDV_TARGET friend pack operator+(const pack& a, const pack& b) noexcept
    {
        return {_mm256_add_pd(a.low, b.low), _mm256_add_pd(a.high, b.high)};
    }
    VLDV_TARGET friend pack operator-(const pack& a, const pack& b) noexcept
    {
        return {_mm256_sub_pd(a.low, b.low), _mm256_sub_pd(a.high, b.high)};
    }
    VLDV_TARGET friend pack operator*(const pack& a, const pack& b) noexcept
    {
        return {_mm256_mul_pd(a.low, b.low), _mm256_mul_pd(a.high, b.high)};
    }
    VLDV_TARGET friend pack operator+(const pack& a, double b) noexcept { return a + all(b); }
    VLDV_TARGET friend pack operator*(const pack& a, double b) noexcept { return a * all(b); }
    VLDV_TARGET friend pack operator/(const pack& a, double b) noexcept
    {
        return {_mm256_div_pd(a.low, _mm256_set1_pd(b)), _mm256_div_pd(a.high, _mm256_set1_pd(b))};
    }
    VLDV_TARGET pack operator-() const noexcept
    {
        const __m256d sign = _mm256_set1_pd(-0.0);
        return {_mm256_xor_pd(low, sign), _mm256_xor_pd(high, sign)};
    }
    VLDV_TARGET pack& operator+=(const pack& b) noexcept { return *this = *this + b; }
    VLDV_TARGET pack& operator-=(const pack& b) noexcept { return *this = *this - b; }
    VLDV_TARGET pack& operator*=(double b) noexcept { return *this = *this * b; }
    VLDV_TARGET friend pack_bits operator<=(const pack& a, const pack& b) noexcept
    {
        return {_mm256_castpd_si256(_mm256_cmp_pd(a.low, b.low, _CMP_LE_OQ)),
                _mm256_castpd_si256(_mm256_cmp_pd(a.high, b.high, _CMP_LE_OQ))};
    }
    VLDV_TARGET friend pack_bits operator>=(const pack& a, const pack& b) noexcept { return b <= a; }

private:
    VLDV_TARGET static pack all(double value) noexcept { return {_mm256_set1_pd(value), _mm256_set1_pd(value)}; }
};

VLDV_TARGET pack as_numbers(const std::int16_t* samples) noexcept
{
    const __m128i raw = _mm_loadu_si128(reinterpret_cast<const __m128i*>(samples));
    return {_mm256_cvtepi32_pd(_mm_cvtepi16_epi32(raw)),
            _mm256_cvtepi32_pd(_mm_cvtepi16_epi32(_mm_unpackhi_epi64(raw, raw)))};
}
VLDV_TARGET pack lower(const pack& a, const pack& b) noexcept
{
    return {_mm256_min_pd(a.low, b.low), _mm256_min_pd(a.high, b.high)};
}
VLDV_TARGET pack higher(const pack& a, const pack& b) noexcept
{
    return {_mm256_max_pd(a.low, b.low), _mm256_max_pd(a.high, b.high)};
}
#include "curves/figures/force_packs_form.inc"
#undef VLDV_TARGET
#undef VLDV_TARGET_LAMBDA
} // namespace avx2
namespace avx512 {
#define VLDV_TARGET_LAMBDA __attribute__((target("avx512f,avx512bw,avx512vl,avx512dq")))
#define VLDV_TARGET VLDV_TARGET_LAMBDA inline
VLDV_TARGET pack as_numbers(const std::int16_t* samples) noexcept
{
    const __m128i raw = _mm_loadu_si128(reinterpret_cast<const __m128i*>(samples));
    return _mm512_cvtepi32_pd(_mm256_cvtepi16_epi32(raw));
}
VLDV_TARGET pack lower(const pack& a, const pack& b) noexcept { return _mm512_min_pd(a, b); }
VLDV_TARGET pack higher(const pack& a, const pack& b) noexcept { return _mm512_max_pd(a, b); }
#include "curves/figures/force_packs_form.inc"
#undef VLDV_TARGET
#undef VLDV_TARGET_LAMBDA
} // namespace avx512
#endif

constexpr std::size_t alignment = 64;

} // namespace

pack_work::pack_work(const curve_smoother& smoother_) : smoother(smoother_)
{
    const auto n = static_cast<std::size_t>(smoother.samples());
    const primitives::uniform_spline* const spline = smoother.splineOrNull();
    const std::size_t few = spline ? 0 : (n + packLanes - 1) / packLanes * packLanes;
    const std::size_t knots = spline ? static_cast<std::size_t>(spline->coefficients()) : 0;
    block.resize((n + few + knots) * packLanes + alignment / sizeof(double));
    const auto misplaced = reinterpret_cast<std::uintptr_t>(block.data()) % alignment;
    steps = block.data() + (misplaced ? (alignment - misplaced) / sizeof(double) : 0);
    shortPart = steps + n * packLanes;
    coefficients = shortPart + few * packLanes;
    const auto words = static_cast<std::size_t>(sample_bits::wordsFor(smoother.samples()) * packLanes);
    steep.resize(words);
    flat.resize(words);
}

void mark_steps(const pack_source& source, const pack_thresholds& thresholds, pack_work& work) noexcept
{
#if defined(__x86_64__)
    if (primitives::has_avx512()) return mark_steps_avx512(source, thresholds, work);
    if (primitives::has_avx2()) return mark_steps_avx2(source, thresholds, work);
#endif
    mark_steps_plain(source, thresholds, work);
}

void mark_steps_plain(const pack_source& source, const pack_thresholds& thresholds, pack_work& work) noexcept
{
    plain::mark_steps_form(source, thresholds, work);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void mark_steps_avx2(const pack_source& source, const pack_thresholds& thresholds,
                                                     pack_work& work) noexcept
{
    avx2::mark_steps_form(source, thresholds, work);
}

__attribute__((target("avx512f,avx512bw,avx512vl,avx512dq"))) void
mark_steps_avx512(const pack_source& source, const pack_thresholds& thresholds, pack_work& work) noexcept
{
    avx512::mark_steps_form(source, thresholds, work);
}
#endif

} // namespace vldv::curves
