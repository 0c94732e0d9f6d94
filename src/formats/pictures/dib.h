#pragma once
#include "base/VLAxis.h"
#include "formats/recording.h"

#include <cstdint>
#include <span>
#include <vector>

/// What the picture readers share: bitmaps with rows bottom-up on 32-bit boundaries.
namespace vldv::formats {

/// Bytes of one row of a bitmap, padded to 32 bits.
std::uint64_t dib_row_bytes(std::uint64_t width, unsigned bitCount) noexcept;
/// True when a bitmap of this size has at least one pixel and its bits are counted by 32 bits.
bool is_dib_size(std::uint64_t width, std::uint64_t height, unsigned bitCount) noexcept;
/// A picture with a filled header, its bits zero. The size must be a `is_dib_size`; `palette_` may be empty only for
/// more than 8 bits. \throws std::bad_alloc
picture make_picture(std::uint64_t width, std::uint64_t height, unsigned bitCount, std::vector<RGBQUAD> palette_ = {});
/// The bytes of the row that is `fromTop` rows below the top of the picture.
std::span<std::byte> row_from_top(picture& image, std::uint64_t fromTop) noexcept;
/// Grey levels from black to white, or the other way round.
std::vector<RGBQUAD> grey_palette(unsigned entries, bool whiteFirst = false);

/// A resolution for a bitmap header: rounded; 0, which means unknown, for one that 31 bits or a length cannot express.
std::int32_t header_resolution(double pixelsPerMetre) noexcept;
/// Axis of an image along a resolution: in mm for pixels of a millimetre or more, in nm below a micrometre, else in µm;
/// "px" with one unit a sample for a resolution that is not positive and finite.
VLAxis resolution_axis(double pixelsPerMetre);

} // namespace vldv::formats
