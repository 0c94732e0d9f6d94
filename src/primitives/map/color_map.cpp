#include "primitives/map/color_map.h"

#include "primitives/simd/kernels.h"

#include <algorithm>
#include <cmath>

namespace vldv::primitives {

std::uint8_t mapped_byte(float value, byte_window window) noexcept
{
    // Written so that what is no number becomes 0, too.
    if (!(value > window.low)) return 0;
    if (value >= window.high) return 255;
    const float scaled = (value - window.low) * 255.0f / (window.high - window.low);
    return static_cast<std::uint8_t>(std::nearbyint(scaled));
}

void map_heights(std::span<const std::int16_t> heights, byte_window window, std::uint8_t* out) noexcept
{
    if (window.isOpen())
        kernels().mapHeights(heights.data(), heights.size(), window, out);
    else
        std::fill_n(out, heights.size(), std::uint8_t{0});
}

void map_floats(std::span<const float> values, byte_window window, std::uint8_t* out) noexcept
{
    if (window.isOpen())
        kernels().mapFloats(values.data(), values.size(), window, out);
    else
        std::fill_n(out, values.size(), std::uint8_t{0});
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
    kernels().paint32(bytes.data(), bytes.size(), colors, out);
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

void paint_24(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept
{
    kernels().paint24(bytes.data(), bytes.size(), colors, out);
}

} // namespace vldv::primitives
