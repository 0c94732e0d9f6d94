#pragma once
#include <cstdint>
#include <span>

/// From samples to bytes and from bytes to pixels, a row at a time. Kernels own nothing and allocate nothing.
namespace vldv::primitives {

/// The values that are shown: `low` and below become byte 0, `high` and above byte 255.
struct byte_window {
    float low, high;
    /// An empty or reversed window shows nothing: all bytes are 0.
    bool isOpen() const noexcept { return low < high; }
};

/// b = (v - low) * 255 / (high - low) in single precision, each operation rounded, the result rounded to nearest with
/// ties to even; 0 at or below the window and for what is no number, 255 at or above it. The definition.
std::uint8_t mapped_byte(float value, byte_window window) noexcept;

/// Bytes of a row; `out` has room for as many. Equal to `mapped_byte` in every bit.
void map_heights(std::span<const std::int16_t> heights, byte_window window, std::uint8_t* out) noexcept;
void map_floats(std::span<const float> values, byte_window window, std::uint8_t* out) noexcept;

/// Colour of each byte.
struct color_lookup {
    alignas(64) std::uint8_t blue[256];
    alignas(64) std::uint8_t green[256];
    alignas(64) std::uint8_t red[256];
    alignas(64) std::uint32_t pixel[256]; ///< the three in one word, blue in the low byte; see `join_channels`
};
/// Fills `pixel` from the three channels.
void join_channels(color_lookup& colors) noexcept;

/// Writes blue, green and red of each byte's colour into pixels of 4 bytes; the fourth is left as it is.
void paint_32(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept;
void paint_32_reference(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept;
/// Writes blue, green and red of each byte's colour into pixels of 3 bytes.
void paint_24(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept;
void paint_24_reference(std::span<const std::uint8_t> bytes, const color_lookup& colors, std::uint8_t* out) noexcept;

} // namespace vldv::primitives
