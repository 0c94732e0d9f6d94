#pragma once
#include "base/VLAxis.h"
#include "platform/draw/bitmap.h"

#include <cstdint>
#include <span>

/// How a device-independent bitmap becomes heights: a sample is the sum of the colour channels.
namespace vldv::document {

/// Bytes of one row, padded to 32 bits. The width must not be negative.
std::size_t bitmap_row_bytes(const BITMAPINFOHEADER& header) noexcept;
/// Palette entries that stand behind the header: biClrUsed, or all that the bit count allows when that is 0.
unsigned bitmap_palette_entries(const BITMAPINFOHEADER& header) noexcept;
/// Whether width, height, bit count and compression are such that `bitmap_heights` can convert it.
bool is_convertible_bitmap(const BITMAPINFOHEADER& header) noexcept;

/// Axis along a resolution in pixels a metre: in mm for pixels of a millimetre or more, in nm below a micrometre, else
/// in µm; "px" with the default scale for a resolution of 0.
VLAxis bitmap_axis(std::int32_t pixelsPerMetre);

/// width * height samples, rows in the order of the bitmap. `palette` may be null; then an indexed pixel counts as its
/// index. The header must be convertible.
void bitmap_heights(const BITMAPINFOHEADER& header, const std::uint8_t* bits, const RGBQUAD* palette,
                    std::span<std::int16_t> out);

} // namespace vldv::document
