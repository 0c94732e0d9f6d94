#include "document/samples/bitmap_heights.h"

#include <cmath>
#include <cstring>
#include <vector>

namespace vldv::document {

namespace {

constexpr std::uint32_t plain = 0, bitFields = 3;

/// Sums of the palette's channels, for every index that a pixel can hold.
std::vector<std::int16_t> indexed_samples(const BITMAPINFOHEADER& header, const RGBQUAD* palette)
{
    std::vector<std::int16_t> samples(std::size_t{1} << header.biBitCount, 0);
    const unsigned entries = bitmap_palette_entries(header);
    for (unsigned i = 0; i < samples.size() && i < entries; ++i)
        samples[i] = static_cast<std::int16_t>(palette ? palette[i].rgbRed + palette[i].rgbGreen + palette[i].rgbBlue
                                                       : static_cast<int>(i));
    return samples;
}

/// Most significant pixel first.
void indexed_row(const std::uint8_t* row, unsigned bitCount, const std::vector<std::int16_t>& samples,
                 std::span<std::int16_t> out)
{
    const unsigned pixelsPerByte = 8 / bitCount, mask = (1u << bitCount) - 1;
    for (std::size_t x = 0; x < out.size(); ++x) {
        const unsigned shift = (pixelsPerByte - 1 - static_cast<unsigned>(x % pixelsPerByte)) * bitCount;
        out[x] = samples[row[x / pixelsPerByte] >> shift & mask];
    }
}

// Little-endian pixels of five bits a channel; times 8 these have about the range of eight bits.
void row_16(const std::uint8_t* row, std::span<std::int16_t> out)
{
    for (std::size_t x = 0; x < out.size(); ++x) {
        const unsigned pixel = row[2 * x] | row[2 * x + 1] << 8;
        out[x] = static_cast<std::int16_t>(8 * ((pixel & 31) + (pixel >> 5 & 31) + (pixel >> 10 & 31)));
    }
}

void row_24(const std::uint8_t* row, std::span<std::int16_t> out)
{
    for (std::size_t x = 0; x < out.size(); ++x)
        out[x] = static_cast<std::int16_t>(row[3 * x] + row[3 * x + 1] + row[3 * x + 2]);
}

/// The 32-bit form raises byte 0 by one and leaves byte 1 out; existing files hold heights made that way.
void row_32(const std::uint8_t* row, std::span<std::int16_t> out)
{
    for (std::size_t x = 0; x < out.size(); ++x)
        out[x] = static_cast<std::int16_t>(row[4 * x] + 1 + row[4 * x + 2] + row[4 * x + 3]);
}

} // namespace

std::size_t bitmap_row_bytes(const BITMAPINFOHEADER& header) noexcept
{
    // Rows are padded to whole 32-bit words.
    return (std::size_t{static_cast<std::uint32_t>(header.biWidth)} * header.biBitCount + 31) / 32 * 4;
}

unsigned bitmap_palette_entries(const BITMAPINFOHEADER& header) noexcept
{
    return header.biClrUsed == 0 && header.biBitCount <= 8 ? 1u << header.biBitCount : header.biClrUsed;
}

bool is_convertible_bitmap(const BITMAPINFOHEADER& header) noexcept
{
    const unsigned bits = header.biBitCount;
    const bool knownDepth = bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    const bool known = knownDepth && (header.biCompression == plain || header.biCompression == bitFields);
    // The size of a packed bitmap has 32 bits.
    return known && header.biWidth > 0 && header.biHeight > 0 &&
           bitmap_row_bytes(header) * static_cast<std::uint64_t>(header.biHeight) <= 0xffffffffu &&
           std::int64_t{header.biWidth} * header.biHeight <= 0xffffffffLL;
}

VLAxis bitmap_axis(std::int32_t pixelsPerMetre)
{
    if (pixelsPerMetre == 0) return {0.0, 1.0, "px"};
    const double pixels = std::abs(static_cast<double>(pixelsPerMetre));
    // The unit by the size of a pixel: millimetres from 1 mm on, then micrometres, nanometres below 1 µm.
    const double magnitude = std::log10(1.0 / pixels); // of the pixel's size in metres
    if (magnitude >= -3.0) return {0.0, 1000.0 / pixels, "mm"};
    if (magnitude < -6.0) return {0.0, 1e9 / pixels, "nm"};
    return {0.0, 1e6 / pixels, "µm"};
}

void bitmap_heights(const BITMAPINFOHEADER& header, const std::uint8_t* bits, const RGBQUAD* palette,
                    std::span<std::int16_t> out)
{
    const std::size_t width = static_cast<std::size_t>(header.biWidth), stride = bitmap_row_bytes(header);
    const std::size_t height = static_cast<std::size_t>(header.biHeight);
    const std::vector<std::int16_t> samples =
        header.biBitCount <= 8 ? indexed_samples(header, palette) : std::vector<std::int16_t>();
    for (std::size_t y = 0; y < height; ++y) {
        const std::uint8_t* row = bits + y * stride;
        const std::span<std::int16_t> target = out.subspan(y * width, width);
        switch (header.biBitCount) {
        case 16:
            row_16(row, target);
            break;
        case 24:
            row_24(row, target);
            break;
        case 32:
            row_32(row, target);
            break;
        default:
            indexed_row(row, header.biBitCount, samples, target);
        }
    }
}

} // namespace vldv::document
