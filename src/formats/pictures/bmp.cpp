#include "formats/pictures/bmp.h"

#include "base/text.h"
#include "formats/pictures/bmp_header.h"
#include "formats/pictures/bmp_rle.h"
#include "formats/pictures/dib.h"

#include <algorithm>
#include <bit>

namespace vldv::formats {

namespace {

constexpr std::uint32_t fields555[] = {0x7c00, 0x03e0, 0x001f}, fields888[] = {0xff0000, 0x00ff00, 0x0000ff};
constexpr std::uint64_t rowsBetweenReports = 256;

/// True when a row of the file is a row of the picture.
bool stays_as_it_is(const bmp_header& header)
{
    if (header.coding == bmp_coding::fields)
        return header.bitCount == 16 && std::ranges::equal(header.fields, fields555);
    return true;
}

/// One colour channel of a pixel.
class channel {
public:
    explicit channel(std::uint32_t mask_) : mask(mask_), shift(mask_ ? std::countr_zero(mask_) : 0), top(mask_ >> shift)
    {
    }
    /// The level on 0 to 255, rounded; 0 when the pixel has no such channel.
    std::byte level(std::uint32_t pixel) const noexcept
    {
        if (top == 0) return std::byte{0};
        const std::uint64_t value = (pixel & mask) >> shift;
        return static_cast<std::byte>((value * 255 + top / 2) / top);
    }

private:
    std::uint32_t mask;
    int shift;
    std::uint32_t top;
};

/// Pixels of 16 or 32 bits with these masks as 24-bit colours.
void convert_row(std::span<const std::byte> row, unsigned bitCount, std::span<const channel, 3> redGreenBlue,
                 std::uint64_t width, std::span<std::byte> out)
{
    base::byte_reader in(row);
    for (std::size_t x = 0; x < width; ++x) {
        const std::uint32_t pixel = bitCount == 16 ? in.u16() : in.u32();
        out[3 * x] = redGreenBlue[2].level(pixel);
        out[3 * x + 1] = redGreenBlue[1].level(pixel);
        out[3 * x + 2] = redGreenBlue[0].level(pixel);
    }
}

/// An error text, or empty.
std::string read_rows(source& file, const bmp_header& header, picture& out)
{
    const std::size_t rowBytes = static_cast<std::size_t>(dib_row_bytes(header.width, header.bitCount));
    const bool asItIs = stays_as_it_is(header);
    const std::span<const std::uint32_t> masks =
        header.coding == bmp_coding::fields ? std::span<const std::uint32_t>(header.fields) : fields888;
    const channel redGreenBlue[] = {channel(masks[0]), channel(masks[1]), channel(masks[2])};
    std::vector<std::byte> row(asItIs ? 0 : rowBytes);
    for (std::uint64_t y = 0; y < header.height; ++y) {
        const auto target = row_from_top(out, header.topDown ? y : header.height - 1 - y);
        if (!file.read(header.pixelsAt + y * rowBytes, asItIs ? target : std::span(row)))
            return "pixels cannot be read";
        if (!asItIs) convert_row(row, header.bitCount, redGreenBlue, header.width, target);
        if (y % rowsBetweenReports != 0) continue;
        if (!file.progress(static_cast<double>(y) / static_cast<double>(header.height))) return "reading was cancelled";
    }
    return {};
}

/// Code of two bytes makes at most 255 pixels; beyond that, rows may be skipped, but hardly all of a large picture.
bool is_plausible_rle(const bmp_header& header, std::uint64_t codeBytes)
{
    constexpr std::uint64_t pixelsPerByte = 1024, spare = 1u << 20;
    return header.width * header.height <= codeBytes * pixelsPerByte + spare;
}

/// An error text, or empty. Nothing is allocated for pixels that the file does not hold.
std::string check_pixels(const source& file, const bmp_header& header, std::uint64_t room)
{
    if (header.pixelsAt > file.size()) return "position of the pixels: behind the end of the file";
    if (header.coding == bmp_coding::rle4 || header.coding == bmp_coding::rle8) {
        if (header.topDown) return "height: run-length coded pixels cannot run downwards";
        return is_plausible_rle(header, room) ? std::string() : "width and height: too large for so few coded bytes";
    }
    const std::uint64_t needed = dib_row_bytes(header.width, header.bitCount) * header.height;
    if (needed <= room) return {};
    return base::formatted("pixels cut short: %llu bytes are needed, %llu are there",
                           static_cast<unsigned long long>(needed), static_cast<unsigned long long>(room));
}

std::string read_code(source& file, const bmp_header& header, std::uint64_t codeBytes, picture& out)
{
    std::vector<std::byte> code(static_cast<std::size_t>(codeBytes));
    return file.read(header.pixelsAt, code) ? decode_bmp_rle(code, out) : "pixels cannot be read";
}

} // namespace

base::read_result<recording> read_bmp(source& file)
{
    auto header = read_bmp_header(file);
    if (!header) return header.error();
    const std::uint64_t room = file.size() - std::min(file.size(), header->pixelsAt);
    std::string reason = check_pixels(file, *header, room);
    if (!reason.empty()) return base::read_error{header->pixelsAt, reason};

    const unsigned bitCount = stays_as_it_is(*header) ? header->bitCount : 24;
    if (!is_dib_size(header->width, header->height, bitCount))
        return base::read_error{0, "width and height: too many pixels"};
    picture image = make_picture(header->width, header->height, bitCount, std::move(header->palette));
    image.header.biXPelsPerMeter = header->xPixelsPerMetre;
    image.header.biYPelsPerMeter = header->yPixelsPerMetre;
    const bool isCoded = header->coding == bmp_coding::rle4 || header->coding == bmp_coding::rle8;
    reason = isCoded ? read_code(file, *header, room, image) : read_rows(file, *header, image);
    if (!reason.empty()) return base::read_error{header->pixelsAt, reason};
    recording result;
    result.items.emplace_back(std::move(image));
    return result;
}

bool sniff_bmp(std::span<const std::byte> head)
{
    base::byte_reader in(head);
    const bool hasTag = in.tag("BM");
    in.skip(12);
    const std::uint32_t headerBytes = in.u32();
    return hasTag && !in.failed() && is_bmp_header_size(headerBytes);
}

} // namespace vldv::formats
