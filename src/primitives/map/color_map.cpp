#include "primitives/map/color_map.h"

#include "primitives/cpu.h"
#include "primitives/simd.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vldv::primitives {

std::uint8_t mapped_byte(float value, byte_window window) noexcept
{
    if (value <= window.low) return 0;
    if (value >= window.high) return 255;
    const float scaled = (value - window.low) * 255.0f / (window.high - window.low);
    return static_cast<std::uint8_t>(std::nearbyint(scaled));
}

void map_heights(std::span<const std::int16_t> heights, byte_window window, std::uint8_t* out) noexcept
{
    if (!window.isOpen()) {
        std::fill_n(out, heights.size(), std::uint8_t{0});
        return;
    }
#if defined(__x86_64__)
    if (has_avx512()) return simd::map_heights_avx512(heights, window, out);
    if (has_avx2()) return simd::map_heights_avx2(heights, window, out);
#endif
    for (std::size_t i = 0; i < heights.size(); ++i) out[i] = mapped_byte(heights[i], window);
}

void map_floats(std::span<const float> values, byte_window window, std::uint8_t* out) noexcept
{
    if (!window.isOpen()) {
        std::fill_n(out, values.size(), std::uint8_t{0});
        return;
    }
#if defined(__x86_64__)
    if (has_avx512()) return simd::map_floats_avx512(values, window, out);
    if (has_avx2()) return simd::map_floats_avx2(values, window, out);
#endif
    for (std::size_t i = 0; i < values.size(); ++i) out[i] = mapped_byte(values[i], window);
}

void join_channels(color_lookup& colors) noexcept
{
    for (int i = 0; i < 256; ++i)
        colors.pixel[i] = colors.blue[i] | std::uint32_t{colors.green[i]} << 8 | std::uint32_t{colors.red[i]} << 16;
}

void paint_32_reference(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept
{
    for (const std::uint8_t byte : bytes) {
        out[0] = colors.blue[byte];
        out[1] = colors.green[byte];
        out[2] = colors.red[byte];
        out += 4;
    }
}

void paint_32(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept
{
#if defined(__x86_64__)
    if (has_vbmi()) return simd::paint_32_vbmi(bytes, colors, out);
    if (has_avx2()) return simd::paint_32_avx2(bytes, colors, out);
#endif
    paint_32_reference(bytes, colors, out);
}

void paint_24_reference(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept
{
    for (const std::uint8_t byte : bytes) {
        out[0] = colors.blue[byte];
        out[1] = colors.green[byte];
        out[2] = colors.red[byte];
        out += 3;
    }
}

void paint_24_words(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept
{
    if (bytes.empty()) return;
    // The fourth byte of a word is overwritten by the next pixel, so that only the last must be exact.
    for (const std::uint8_t byte : bytes.first(bytes.size() - 1)) {
        std::memcpy(out, &colors.pixel[byte], 4);
        out += 3;
    }
    paint_24_reference(bytes.last(1), colors, out);
}

void paint_24(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept
{
#if defined(__x86_64__)
    if (has_vbmi()) return simd::paint_24_vbmi(bytes, colors, out);
#endif
    paint_24_words(bytes, colors, out);
}

} // namespace vldv::primitives
