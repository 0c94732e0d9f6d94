#pragma once
#include "base/streams/byte_reader.h"
#include "formats/source.h"
#include "platform/draw/bitmap.h"

#include <array>
#include <cstdint>
#include <vector>

namespace vldv::formats {

enum class bmp_coding { plain, fields, rle8, rle4 };

/// The headers of a bitmap file, checked: width and height are positive, coding and bit count fit each other.
struct bmp_header {
    std::uint64_t width = 0, height = 0;
    bool topDown = false;
    unsigned bitCount = 0; ///< 1, 4, 8, 16, 24 or 32
    bmp_coding coding = bmp_coding::plain;
    std::int32_t xPixelsPerMetre = 0, yPixelsPerMetre = 0;
    std::array<std::uint32_t, 3> fields{}; ///< masks of red, green and blue in a pixel, contiguous; for `fields` alone
    std::vector<RGBQUAD> palette;          ///< for up to 8 bits, never empty then
    std::uint64_t pixelsAt = 0;            ///< position in the file
};

/// Header sizes that exist.
bool is_bmp_header_size(std::uint32_t size) noexcept;
base::read_result<bmp_header> read_bmp_header(source& file);

} // namespace vldv::formats
