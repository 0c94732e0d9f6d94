#include "surface/figures/overlay_bitmap.h"

#include "document/samples/bitmap_heights.h"

#include <array>
#include <cstring>

namespace vldv::surface {

namespace {

constexpr unsigned palettes = 8; // most bits of an index

/// Blue, green, red and one more, as the bytes of a pixel of 32 bits.
using pixel = std::array<std::uint8_t, 4>;

std::vector<pixel> colors_of(const BITMAPINFOHEADER& header, const std::uint8_t* entries)
{
    const std::size_t count = std::size_t{1} << header.biBitCount;
    std::vector<pixel> colors(count, pixel{});
    for (std::size_t i = 0; i < count; ++i) {
        const auto gray = static_cast<std::uint8_t>(i * 255 / (count - 1));
        if (header.biClrUsed == 0)
            colors[i] = {gray, gray, gray, 0};
        else if (i < header.biClrUsed)
            std::memcpy(colors[i].data(), entries + i * sizeof(RGBQUAD), sizeof(RGBQUAD));
    }
    return colors;
}

void convert_indexed(const BITMAPINFOHEADER& header, const std::uint8_t* row, const std::vector<pixel>& colors,
                     pixel* out)
{
    const unsigned bits = header.biBitCount, perByte = 8 / bits, mask = (1u << bits) - 1;
    for (unsigned x = 0; x < static_cast<unsigned>(header.biWidth); ++x)
        out[x] = colors[row[x / perByte] >> (8 - bits - x % perByte * bits) & mask];
}

/// Five bits a channel, blue the lowest.
void convert_16(const BITMAPINFOHEADER& header, const std::uint8_t* row, pixel* out)
{
    const auto channel = [](unsigned value) { return static_cast<std::uint8_t>((value & 31u) * 255 / 31); };
    for (int x = 0; x < header.biWidth; ++x) {
        const unsigned value = row[2 * x] | unsigned{row[2 * x + 1]} << 8;
        out[x] = {channel(value), channel(value >> 5), channel(value >> 10), 0};
    }
}

} // namespace

CBitmap overlay_bitmap::of(const BITMAPINFOHEADER& packed)
{
    // The header is followed by the colours and these by the rows of pixels. Pixels of 24 and 32 bits are drawn from
    // there; others are converted once and kept while the same bitmap is asked for.
    auto* const block = reinterpret_cast<std::uint8_t*>(const_cast<BITMAPINFOHEADER*>(&packed)) + packed.biSize;
    std::uint8_t* const bits = block + std::size_t{packed.biClrUsed} * sizeof(RGBQUAD);
    if (packed.biBitCount > 16) return {.header = packed, .bits = reinterpret_cast<std::byte*>(bits)};
    BITMAPINFOHEADER header = packed;
    header.biBitCount = 8 * sizeof(pixel);
    header.biClrUsed = 0;
    if (converted != &packed) {
        const auto width = static_cast<std::size_t>(packed.biWidth), rows = static_cast<std::size_t>(packed.biHeight);
        pixels.resize(width * rows * sizeof(pixel));
        const std::size_t stride = document::bitmap_row_bytes(packed);
        const bool isIndexed = packed.biBitCount <= palettes;
        const std::vector<pixel> colors = isIndexed ? colors_of(packed, block) : std::vector<pixel>();
        auto* const out = reinterpret_cast<pixel*>(pixels.data());
        for (std::size_t y = 0; y < rows; ++y) {
            if (isIndexed)
                convert_indexed(packed, bits + y * stride, colors, out + y * width);
            else
                convert_16(packed, bits + y * stride, out + y * width);
        }
        converted = &packed;
    }
    header.biSizeImage = static_cast<std::uint32_t>(pixels.size());
    return {.header = header, .bits = pixels.data()};
}

} // namespace vldv::surface
