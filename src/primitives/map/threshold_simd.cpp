#include "primitives/simd.h"

#if defined(__x86_64__)
#include "primitives/mask/bit_image.h"

#include <algorithm>
#include <immintrin.h>

namespace vldv::primitives::simd {

namespace {

/// Memory this far ahead is on its way into the cache while the caller works on a row, who asks for rows one after
/// another. Beyond the end the request does nothing.
void fetch_ahead(const std::int16_t* block) noexcept
{
    constexpr std::uintptr_t distance = 16384;
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(block) + distance;
    _mm_prefetch(reinterpret_cast<const char*>(address), _MM_HINT_T0);
    _mm_prefetch(reinterpret_cast<const char*>(address + 64), _MM_HINT_T0);
}

} // namespace

__attribute__((target("avx512f,avx512bw"))) void
threshold_row_avx512(std::span<const std::int16_t> heights, std::int16_t threshold, std::uint64_t* bits) noexcept
{
    const __m512i limit = _mm512_set1_epi16(threshold);
    const std::int16_t* next = heights.data();
    std::size_t left = heights.size();
    for (; left >= bitsOfWord; left -= bitsOfWord, next += bitsOfWord) {
        fetch_ahead(next);
        const std::uint64_t low = _mm512_cmpgt_epi16_mask(_mm512_loadu_si512(next), limit);
        const std::uint64_t high = _mm512_cmpgt_epi16_mask(_mm512_loadu_si512(next + 32), limit);
        *bits++ = low | high << 32;
    }
    threshold_row_reference({next, left}, threshold, bits);
}

__attribute__((target("avx2"))) void threshold_row_avx2(std::span<const std::int16_t> heights, std::int16_t threshold,
                                                        std::uint64_t* bits) noexcept
{
    const __m256i limit = _mm256_set1_epi16(threshold);
    const std::int16_t* next = heights.data();
    std::size_t left = heights.size();
    for (; left >= bitsOfWord; left -= bitsOfWord) {
        fetch_ahead(next);
        std::uint64_t word = 0;
        for (int part = 0; part < bitsOfWord; part += 32, next += 32) {
            const auto* const block = reinterpret_cast<const __m256i*>(next);
            const __m256i low = _mm256_cmpgt_epi16(_mm256_loadu_si256(block), limit);
            const __m256i high = _mm256_cmpgt_epi16(_mm256_loadu_si256(block + 1), limit);
            // Packing works on halves of 128 bits; the permutation puts its quarters in order.
            const __m256i bytes = _mm256_permute4x64_epi64(_mm256_packs_epi16(low, high), 0b11011000);
            word |= static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm256_movemask_epi8(bytes))) << part;
        }
        *bits++ = word;
    }
    threshold_row_reference({next, left}, threshold, bits);
}

namespace {

/// Adds 32-bit numbers without a sign to 64-bit ones.
__attribute__((target("avx512f"))) inline __m512i add_unsigned(__m512i total, __m512i numbers) noexcept
{
    const __m512i even = _mm512_and_si512(numbers, _mm512_set1_epi64(0xFFFFFFFF));
    return _mm512_add_epi64(total, _mm512_add_epi64(even, _mm512_srli_epi64(numbers, 32)));
}

/// The largest of eight heights: the smallest of what they lack to 32767.
__attribute__((target("avx512f,avx512bw,avx512vl"))) inline std::int16_t highest_of(__m128i heights) noexcept
{
    const __m128i lacking = _mm_minpos_epu16(_mm_sub_epi16(_mm_set1_epi16(32767), heights));
    return static_cast<std::int16_t>(32767 - (_mm_cvtsi128_si32(lacking) & 0xFFFF));
}

/// Runs of at most eight heights are most of what there is among small areas.
__attribute__((target("avx512f,avx512bw,avx512vl"))) run_sums sum_short_run(const std::int16_t* first,
                                                                            std::size_t count) noexcept
{
    const auto used = static_cast<__mmask8>((1u << count) - 1);
    const __m128i block = _mm_maskz_loadu_epi16(used, first);
    const __m128i pairs = _mm_madd_epi16(block, _mm_set1_epi16(1)), squares = _mm_madd_epi16(block, block);
    const __m128i fours = _mm_add_epi32(pairs, _mm_srli_epi64(pairs, 32));
    const __m128i total = _mm_add_epi32(fours, _mm_unpackhi_epi64(fours, fours));
    const __m128i wide =
        _mm_add_epi64(_mm_and_si128(squares, _mm_set1_epi64x(0xFFFFFFFF)), _mm_srli_epi64(squares, 32));
    return {_mm_cvtsi128_si32(total), _mm_cvtsi128_si64(wide) + _mm_extract_epi64(wide, 1),
            highest_of(_mm_mask_blend_epi16(used, _mm_set1_epi16(-32768), block))};
}

} // namespace

__attribute__((target("avx512f,avx512bw,avx512vl"))) run_sums
sum_run_avx512(std::span<const std::int16_t> heights) noexcept
{
    constexpr std::size_t lanes = 32;
    const std::int16_t* next = heights.data();
    std::size_t left = heights.size();
    if (left <= 8) return sum_short_run(next, left);
    const __m512i ones = _mm512_set1_epi16(1), lowest = _mm512_set1_epi16(-32768);
    __m512i sum = _mm512_setzero_si512(), squares = sum, high = lowest;
    while (left > 0) {
        const std::size_t count = std::min(left, lanes);
        const auto used = static_cast<__mmask32>(~0u >> (lanes - count));
        const __m512i block = _mm512_maskz_loadu_epi16(used, next);
        // Pairs of heights give at most 2^16, pairs of squares at most 2^31.
        const __m512i pairs = _mm512_madd_epi16(block, ones);
        sum = _mm512_add_epi64(
            sum, _mm512_add_epi64(_mm512_srai_epi64(_mm512_slli_epi64(pairs, 32), 32), _mm512_srai_epi64(pairs, 32)));
        squares = add_unsigned(squares, _mm512_madd_epi16(block, block));
        high = _mm512_max_epi16(high, _mm512_mask_blend_epi16(used, lowest, block));
        next += count;
        left -= count;
    }
    const __m256i half = _mm256_max_epi16(_mm512_castsi512_si256(high), _mm512_extracti64x4_epi64(high, 1));
    const __m128i quarter = _mm_max_epi16(_mm256_castsi256_si128(half), _mm256_extracti128_si256(half, 1));
    return {_mm512_reduce_add_epi64(sum), _mm512_reduce_add_epi64(squares), highest_of(quarter)};
}

__attribute__((target("avx2"))) run_sums sum_run_avx2(std::span<const std::int16_t> heights) noexcept
{
    constexpr std::size_t lanes = 16;
    const __m256i ones = _mm256_set1_epi16(1), even = _mm256_set1_epi64x(0xFFFFFFFF);
    __m256i sum = _mm256_setzero_si256(), squares = sum, high = _mm256_set1_epi16(-32768);
    const std::int16_t* next = heights.data();
    std::size_t left = heights.size();
    for (; left >= lanes; left -= lanes, next += lanes) {
        const __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(next));
        const __m256i pairs = _mm256_madd_epi16(block, ones), products = _mm256_madd_epi16(block, block);
        sum = _mm256_add_epi64(sum, _mm256_add_epi64(_mm256_cvtepi32_epi64(_mm256_castsi256_si128(pairs)),
                                                     _mm256_cvtepi32_epi64(_mm256_extracti128_si256(pairs, 1))));
        squares = _mm256_add_epi64(squares,
                                   _mm256_add_epi64(_mm256_and_si256(products, even), _mm256_srli_epi64(products, 32)));
        high = _mm256_max_epi16(high, block);
    }
    std::int64_t sums[4], products[4];
    std::int16_t highs[lanes];
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(sums), sum);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(products), squares);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(highs), high);
    run_sums total = sum_run_reference({next, left});
    for (int i = 0; i < 4; ++i) total.add({sums[i], products[i], -32768});
    total.highest = std::max(total.highest, *std::max_element(highs, highs + lanes));
    return total;
}

} // namespace vldv::primitives::simd
#endif
