#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace test_support {

/// What the format's usual library makes of a picture file: red, green, blue, the top row first.
struct decoded_picture {
    int width = 0, height = 0;
    std::vector<std::uint8_t> rgb;
    double xPixelsPerMetre = 0.0, yPixelsPerMetre = 0.0;

    const std::uint8_t* pixel(int x, int y) const { return &rgb[3 * (static_cast<std::size_t>(y) * width + x)]; }
};

// An empty picture when the bytes are not understood.
decoded_picture decode_png(std::span<const std::byte> bytes);
decoded_picture decode_jpeg(std::span<const std::byte> bytes);
decoded_picture decode_tiff(std::span<const std::byte> bytes);
/// By hand: a plain 24-bit bitmap with positive height and nothing else.
decoded_picture decode_bmp(std::span<const std::byte> bytes);

/// An integer of a file, least significant byte first.
std::uint32_t little_at(std::span<const std::byte> bytes, std::size_t at, unsigned count);

} // namespace test_support
