// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/map/threshold.h"
#include "primitives/simd/vector.h"

namespace vldv::primitives::simd {
namespace {

/// Memory this far ahead is on its way into the cache while the caller works on a row, who asks for rows one after
/// another. Beyond the end the request does nothing.
inline void fetch_ahead(const std::int16_t* block)
{
    constexpr std::uintptr_t distance = 16384;
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(block) + distance;
    __builtin_prefetch(reinterpret_cast<const void*>(address));
    __builtin_prefetch(reinterpret_cast<const void*>(address + 64));
}

/// One bit a height of two registers, 1 where it is above.
inline std::uint64_t bits_above(const std::int16_t* heights, vec<std::int16_t> limit)
{
    const auto low = load(heights), high = load(heights + wide<std::int16_t>);
#if VLDV_VECTOR_BYTES == 64
    const auto above = [&](vec<std::int16_t> some) -> std::uint64_t {
        return _mm512_cmpgt_epi16_mask(bits(some), bits(limit));
    };
    return above(low) | above(high) << 32;
#elif VLDV_VECTOR_BYTES == 32
    // Packing works on halves of 128 bits; the permutation puts its quarters in order.
    const __m256i bytes = _mm256_packs_epi16(bits(low > limit), bits(high > limit));
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_permute4x64_epi64(bytes, 0b11011000)));
#else
    return zeros_of(even_places(as<std::uint8_t>(low <= limit), as<std::uint8_t>(high <= limit)));
#endif
}

void threshold_row(const std::int16_t* heights, std::size_t count, std::int16_t threshold, std::uint64_t* bits) noexcept
{
    const auto limit = all(threshold);
    for (; count >= 64; count -= 64, heights += 64) {
        fetch_ahead(heights);
        std::uint64_t word = 0;
        for (int part = 0; part < 64; part += VLDV_VECTOR_BYTES) word |= bits_above(heights + part, limit) << part;
        *bits++ = word;
    }
    if (count == 0) return;
    *bits = 0;
    for (std::size_t i = 0; i < count; ++i) *bits |= static_cast<std::uint64_t>(heights[i] > threshold) << i;
}

/// Adds 32-bit numbers without a sign to 64-bit ones.
inline void add_unsigned(vec<std::uint64_t>& total, vec<std::int32_t> numbers)
{
    const auto pairs = as<std::uint64_t>(numbers);
    total += (pairs & 0xFFFFFFFF) + (pairs >> 32);
}

inline std::int16_t highest_of(vec<std::int16_t, 8> heights)
{
#if VLDV_VECTOR_BYTES > 16
    // One instruction finds the smallest of eight numbers without a sign: of what the heights lack to 32767.
    const __m128i least = _mm_minpos_epu16(reinterpret_cast<__m128i>(32767 - heights));
    return static_cast<std::int16_t>(32767 - (_mm_cvtsi128_si32(least) & 0xFFFF));
#else
    return folded(heights, [](auto a, auto b) { return a > b ? a : b; });
#endif
}

/// Sums of heights, two by two, place by place.
struct place_sums {
    vec<std::uint64_t> sum{}, squares{};
    vec<std::int16_t> high = all<std::int16_t>(-32768);
    std::int64_t lift = 0; ///< what `sum` has too much

    /// \param shown  the same heights, but -32768 where there is none
    void add(vec<std::int16_t> heights, vec<std::int16_t> shown)
    {
        // A pair of heights gives at least -2^16, and with as much on top no sign; one of squares at most 2^31.
        constexpr int most = 1 << 16;
        add_unsigned(sum, pair_products(heights, all<std::int16_t>(1)) + most);
        add_unsigned(squares, pair_products(heights, heights));
        high = higher(high, shown);
        lift += std::int64_t{wide<std::int32_t>} * most;
    }
    run_sums joined() const
    {
        const auto both = [](auto a, auto b) { return a + b; };
        const auto larger = [](auto a, auto b) { return a > b ? a : b; };
        return {static_cast<std::int64_t>(folded(sum, both)) - lift, static_cast<std::int64_t>(folded(squares, both)),
                highest_of(folded<8>(high, larger))};
    }
};

#if VLDV_VECTOR_BYTES == 64

inline run_sums add_rest(place_sums& sums, const std::int16_t* heights, std::size_t count)
{
    if (count > 0) {
        const auto used = static_cast<__mmask32>(~0u >> (32 - count));
        const __m512i block = _mm512_maskz_loadu_epi16(used, heights);
        sums.add(as<std::int16_t>(block),
                 as<std::int16_t>(_mm512_mask_blend_epi16(used, _mm512_set1_epi16(-32768), block)));
    }
    return sums.joined();
}

/// Runs of at most eight heights are most of what there is among small areas.
inline run_sums sum_few(const std::int16_t* heights, std::size_t count)
{
    const auto used = static_cast<__mmask8>((1u << count) - 1);
    const __m128i block = _mm_maskz_loadu_epi16(used, heights);
    const __m128i pairs = _mm_madd_epi16(block, _mm_set1_epi16(1)), squares = _mm_madd_epi16(block, block);
    const __m128i fours = _mm_add_epi32(pairs, _mm_srli_epi64(pairs, 32));
    const __m128i total = _mm_add_epi32(fours, _mm_unpackhi_epi64(fours, fours));
    const __m128i pairwise =
        _mm_add_epi64(_mm_and_si128(squares, _mm_set1_epi64x(0xFFFFFFFF)), _mm_srli_epi64(squares, 32));
    return {_mm_cvtsi128_si32(total), _mm_cvtsi128_si64(pairwise) + _mm_extract_epi64(pairwise, 1),
            highest_of(as<std::int16_t>(_mm_mask_blend_epi16(used, _mm_set1_epi16(-32768), block)))};
}

#else

inline void add_one_by_one(run_sums& total, const std::int16_t* heights, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        total.sum += heights[i];
        total.squares += heights[i] * heights[i];
        total.highest = heights[i] > total.highest ? heights[i] : total.highest;
    }
}

inline run_sums add_rest(const place_sums& sums, const std::int16_t* heights, std::size_t count)
{
    run_sums total = sums.joined();
    add_one_by_one(total, heights, count);
    return total;
}

inline run_sums sum_few(const std::int16_t* heights, std::size_t count)
{
    run_sums total{0, 0, -32768};
    add_one_by_one(total, heights, count);
    return total;
}

#endif

run_sums sum_run(const std::int16_t* heights, std::size_t count) noexcept
{
    constexpr std::size_t lanes = wide<std::int16_t>;
    if (count <= 8) return sum_few(heights, count);
    place_sums sums;
    if (count < lanes) return add_rest(sums, heights, count);
    for (; count >= lanes; count -= lanes, heights += lanes) sums.add(load(heights), load(heights));
    return add_rest(sums, heights, count);
}

} // namespace
} // namespace vldv::primitives::simd
