#include "primitives/simd.h"

#if defined(__x86_64__)
#include <immintrin.h>

#define VLDV_AVX512_ENTRY __attribute__((target("avx512f,avx512bw,avx512vl,avx512dq")))
#define VLDV_AVX512 __attribute__((target("avx512f,avx512bw,avx512vl,avx512dq"), always_inline)) inline
// Tables of 256 bytes in registers need the byte permutations.
#define VLDV_VBMI_ENTRY __attribute__((target("avx512f,avx512bw,avx512vl,avx512dq,avx512vbmi")))
#define VLDV_VBMI __attribute__((target("avx512f,avx512bw,avx512vl,avx512dq,avx512vbmi"), always_inline)) inline

namespace vldv::primitives::simd {

namespace {

constexpr std::size_t block = 64; // samples at a time

struct window_vectors {
    __m512 low, span;
};

VLDV_AVX512 window_vectors spread(byte_window window) noexcept
{
    return {_mm512_set1_ps(window.low), _mm512_set1_ps(window.high - window.low)};
}

/// 16 values as 32-bit numbers 0 … 255: the very operations of `mapped_byte`, whose two comparisons a clamp replaces.
VLDV_AVX512 __m512i mapped(__m512 values, const window_vectors& window) noexcept
{
    const __m512 scaled =
        _mm512_div_ps(_mm512_mul_ps(_mm512_sub_ps(values, window.low), _mm512_set1_ps(255.0f)), window.span);
    const __m512 clamped = _mm512_min_ps(_mm512_max_ps(scaled, _mm512_setzero_ps()), _mm512_set1_ps(255.0f));
    return _mm512_cvtps_epi32(clamped);
}

/// Four vectors of 16 to 64 bytes in order: packing works within each quarter, so a permutation of the 32-bit groups
/// brings them back.
VLDV_AVX512 __m512i packed(__m512i a, __m512i b, __m512i c, __m512i d) noexcept
{
    const __m512i order = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
    const __m512i quarters = _mm512_packus_epi16(_mm512_packs_epi32(a, b), _mm512_packs_epi32(c, d));
    return _mm512_permutexvar_epi32(order, quarters);
}

VLDV_AVX512 __m512 widened(__m256i heights) noexcept { return _mm512_cvtepi32_ps(_mm512_cvtepi16_epi32(heights)); }

VLDV_AVX512 __m256i load_heights(const std::int16_t* at) noexcept
{
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}

/// One channel of 64 colours: the table's halves in two registers each, the byte's top bit chooses between them.
struct channel_table {
    __m512i parts[4];
};

VLDV_VBMI channel_table load_table(const std::uint8_t* table) noexcept
{
    return {{_mm512_load_si512(table), _mm512_load_si512(table + 64), _mm512_load_si512(table + 128),
             _mm512_load_si512(table + 192)}};
}

VLDV_VBMI __m512i looked_up(__m512i bytes, __mmask64 upper, const channel_table& table) noexcept
{
    const __m512i below = _mm512_permutex2var_epi8(table.parts[0], bytes, table.parts[1]);
    const __m512i above = _mm512_permutex2var_epi8(table.parts[2], bytes, table.parts[3]);
    return _mm512_mask_blend_epi8(upper, below, above);
}

/// Stores 16 pixels around the fourth bytes that are there.
VLDV_VBMI void store_pixels(std::uint8_t* out, __m512i pixels) noexcept
{
    const __m512i kept = _mm512_set1_epi32(static_cast<int>(0xff000000u));
    const __m512i before = _mm512_loadu_si512(out);
    constexpr int choose = 0xca; // kept ? before : pixels, bit by bit
    _mm512_storeu_si512(out, _mm512_ternarylogic_epi32(kept, before, pixels, choose));
}

/// Where the bytes of 64 pixels of 3 bytes come from, for each of their 3 vectors: blue and green as one table of 128,
/// red apart.
struct interleaving {
    alignas(64) std::uint8_t blueGreen[3][64] = {};
    alignas(64) std::uint8_t red[3][64] = {};
    std::uint64_t isRed[3] = {};
    constexpr interleaving()
    {
        for (unsigned k = 0; k < 3 * block; ++k) {
            const auto pixel = static_cast<std::uint8_t>(k / 3), channel = static_cast<std::uint8_t>(k % 3);
            blueGreen[k / block][k % block] = static_cast<std::uint8_t>(pixel + (channel == 1 ? block : 0));
            red[k / block][k % block] = pixel;
            isRed[k / block] |= std::uint64_t{channel == 2} << k % block;
        }
    }
};

} // namespace

VLDV_AVX512_ENTRY void map_heights_avx512(std::span<const std::int16_t> heights, byte_window window,
                                          std::uint8_t* out) noexcept
{
    const window_vectors vectors = spread(window);
    std::size_t i = 0;
    for (; i + block <= heights.size(); i += block) {
        const std::int16_t* at = heights.data() + i;
        const __m512i bytes =
            packed(mapped(widened(load_heights(at)), vectors), mapped(widened(load_heights(at + 16)), vectors),
                   mapped(widened(load_heights(at + 32)), vectors), mapped(widened(load_heights(at + 48)), vectors));
        _mm512_storeu_si512(out + i, bytes);
    }
    for (; i < heights.size(); ++i) out[i] = mapped_byte(heights[i], window);
}

VLDV_AVX512_ENTRY void map_floats_avx512(std::span<const float> values, byte_window window, std::uint8_t* out) noexcept
{
    const window_vectors vectors = spread(window);
    std::size_t i = 0;
    for (; i + block <= values.size(); i += block) {
        const float* at = values.data() + i;
        const __m512i bytes =
            packed(mapped(_mm512_loadu_ps(at), vectors), mapped(_mm512_loadu_ps(at + 16), vectors),
                   mapped(_mm512_loadu_ps(at + 32), vectors), mapped(_mm512_loadu_ps(at + 48), vectors));
        _mm512_storeu_si512(out + i, bytes);
    }
    for (; i < values.size(); ++i) out[i] = mapped_byte(values[i], window);
}

VLDV_VBMI_ENTRY void paint_32_vbmi(std::span<const std::uint8_t> bytes, const color_lookup& colors,
                                   std::uint8_t* out) noexcept
{
    const channel_table blue = load_table(colors.blue), green = load_table(colors.green), red = load_table(colors.red);
    // Interleaving works within quarters: this order of the 32-bit groups makes its results consecutive.
    const __m512i order = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
    std::size_t i = 0;
    for (; i + block <= bytes.size(); i += block, out += 4 * block) {
        const __m512i level = _mm512_permutexvar_epi32(order, _mm512_loadu_si512(bytes.data() + i));
        const __mmask64 upper = _mm512_movepi8_mask(level);
        const __m512i b = looked_up(level, upper, blue), g = looked_up(level, upper, green),
                      r = looked_up(level, upper, red), none = _mm512_setzero_si512();
        const __m512i bgLow = _mm512_unpacklo_epi8(b, g), bgHigh = _mm512_unpackhi_epi8(b, g);
        const __m512i rLow = _mm512_unpacklo_epi8(r, none), rHigh = _mm512_unpackhi_epi8(r, none);
        store_pixels(out, _mm512_unpacklo_epi16(bgLow, rLow));
        store_pixels(out + block, _mm512_unpackhi_epi16(bgLow, rLow));
        store_pixels(out + 2 * block, _mm512_unpacklo_epi16(bgHigh, rHigh));
        store_pixels(out + 3 * block, _mm512_unpackhi_epi16(bgHigh, rHigh));
    }
    paint_32_reference(bytes.subspan(i), colors, out);
}

VLDV_VBMI_ENTRY void paint_24_vbmi(std::span<const std::uint8_t> bytes, const color_lookup& colors,
                                   std::uint8_t* out) noexcept
{
    static constexpr interleaving order;
    const channel_table blue = load_table(colors.blue), green = load_table(colors.green), red = load_table(colors.red);
    std::size_t i = 0;
    for (; i + block <= bytes.size(); i += block, out += 3 * block) {
        const __m512i level = _mm512_loadu_si512(bytes.data() + i);
        const __mmask64 upper = _mm512_movepi8_mask(level);
        const __m512i b = looked_up(level, upper, blue), g = looked_up(level, upper, green),
                      r = looked_up(level, upper, red);
        for (int k = 0; k < 3; ++k) {
            const __m512i mixed = _mm512_permutex2var_epi8(b, _mm512_load_si512(order.blueGreen[k]), g);
            _mm512_storeu_si512(out + k * block, _mm512_mask_permutexvar_epi8(mixed, order.isRed[k],
                                                                              _mm512_load_si512(order.red[k]), r));
        }
    }
    paint_24_reference(bytes.subspan(i), colors, out);
}

} // namespace vldv::primitives::simd
#endif
