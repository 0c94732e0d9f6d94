#include "output/encoders.h"

#include <limits>

namespace vldv::output {

namespace {

constexpr std::size_t fileHeaderSize = 14, infoHeaderSize = 40, headersSize = fileHeaderSize + infoHeaderSize;
constexpr unsigned bitsPerPixel = 24;

void write_headers(std::byte* out, const pixel_view& pixels, const picture_settings& settings, std::uint64_t fileSize)
{
    constexpr double largest = std::numeric_limits<std::int32_t>::max();
    byte_writer header(out);
    header.text("BM");
    header.u32(static_cast<std::uint32_t>(fileSize));
    header.u32(0); // reserved
    header.u32(headersSize);
    header.u32(infoHeaderSize);
    header.u32(static_cast<std::uint32_t>(pixels.width));
    header.u32(static_cast<std::uint32_t>(pixels.height)); // above 0: the bottom row comes first
    header.u16(1);                                         // planes
    header.u16(bitsPerPixel);
    header.u32(0); // not compressed
    header.u32(static_cast<std::uint32_t>(fileSize - headersSize));
    header.u32(resolution_field(settings.xPixelsPerMetre, largest));
    header.u32(resolution_field(settings.yPixelsPerMetre, largest));
    header.u32(0); // no palette
    header.u32(0);
}

void write_row(std::byte* out, const std::byte* pixels, int width, int bytesPerPixel)
{
    if (bytesPerPixel == 3) {
        std::memcpy(out, pixels, 3 * static_cast<std::size_t>(width));
        return;
    }
    for (int x = 0; x < width; ++x, out += 3, pixels += 4) {
        out[0] = pixels[0];
        out[1] = pixels[1];
        out[2] = pixels[2];
    }
}

} // namespace

picture_bytes encode_bmp(const pixel_view& pixels, const picture_settings& settings)
{
    const std::uint64_t rowBytes = (std::uint64_t{3} * static_cast<unsigned>(pixels.width) + 3) / 4 * 4;
    const std::uint64_t fileSize = headersSize + rowBytes * static_cast<unsigned>(pixels.height);
    if (fileSize > std::numeric_limits<std::uint32_t>::max())
        return base::read_error{0, "the picture is too large for BMP, which ends at 4 GiB"};
    std::vector<std::byte> bytes(fileSize);
    write_headers(bytes.data(), pixels, settings, fileSize);
    std::byte* out = bytes.data() + headersSize;
    for (int y = pixels.height - 1; y >= 0; --y, out += rowBytes)
        write_row(out, pixels.row(y), pixels.width, pixels.bytesPerPixel);
    return bytes;
}

} // namespace vldv::output
