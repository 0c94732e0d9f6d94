#include "formats/pictures/bmp_header.h"

#include "base/text.h"
#include "formats/pictures/dib.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace vldv::formats {

namespace {

constexpr std::size_t fileHeaderBytes = 14, sizeBytes = 4;
constexpr std::uint32_t coreHeader = 12, shortestOs2Header = 16, infoHeader = 40, os2Header = 64;
constexpr std::size_t masksAt = fileHeaderBytes + infoHeader, masksBytes = 12;

/// File header, header and masks, zero where the header is shorter.
using head_bytes = std::array<std::byte, masksAt + masksBytes>;

/// As the file has it.
struct raw_header {
    std::uint32_t pixelsAt = 0, headerBytes = 0;
    std::int64_t width = 0, height = 0;
    unsigned bitCount = 0;
    std::uint32_t compression = 0;
    std::int32_t xPixelsPerMetre = 0, yPixelsPerMetre = 0;
    std::uint32_t coloursUsed = 0;
    std::array<std::uint32_t, 3> masks{};
};

bool is_windows_header(std::uint32_t size) noexcept
{
    constexpr std::uint32_t sizes[] = {infoHeader, 52, 56, 108, 124};
    return std::ranges::find(sizes, size) != std::end(sizes);
}

raw_header parse(const head_bytes& head)
{
    base::byte_reader in(head);
    raw_header raw;
    in.skip(10); // "BM", file size, reserved
    raw.pixelsAt = in.u32();
    raw.headerBytes = in.u32();
    if (raw.headerBytes == coreHeader) {
        raw.width = in.u16(), raw.height = in.u16();
        in.skip(2);
        raw.bitCount = in.u16();
        return raw;
    }
    raw.width = in.i32(), raw.height = in.i32();
    in.skip(2);
    raw.bitCount = in.u16();
    raw.compression = in.u32();
    in.skip(4); // size of the pixels, often 0 or wrong
    raw.xPixelsPerMetre = in.i32(), raw.yPixelsPerMetre = in.i32();
    raw.coloursUsed = in.u32();
    in.skip(4);
    for (std::uint32_t& mask : raw.masks) mask = in.u32();
    return raw;
}

/// Fills `head` as far as the header goes. An error text, or empty.
std::string read_head(source& file, head_bytes& head)
{
    const auto part = [&](std::size_t from, std::size_t to) {
        return file.read(from, std::span(head).subspan(from, to - from));
    };
    if (!part(0, fileHeaderBytes + sizeBytes)) return "header cut short";
    const std::uint32_t size = parse(head).headerBytes;
    if (!is_bmp_header_size(size)) return base::formatted("header size: %u is unknown", size);
    const std::size_t end = fileHeaderBytes + size;
    if (file.size() < end || !part(0, std::min(end, head.size()))) return "header cut short";
    const std::uint32_t compression = parse(head).compression;
    const bool masksFollow = size == infoHeader && (compression == 3 || compression == 6);
    return !masksFollow || part(masksAt, head.size()) ? std::string() : "colour masks cut short";
}

/// An error text, or empty.
std::string set_coding(bmp_header& header, const raw_header& raw)
{
    enum : std::uint32_t { plain = 0, rle8 = 1, rle4 = 2, fields = 3, jpeg = 4, png = 5, alphaFields = 6 };
    const unsigned bits = header.bitCount = raw.bitCount;
    const std::string wrongPair =
        base::formatted("compression %u does not go with %u bits a pixel", raw.compression, bits);
    if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32)
        return base::formatted("bit count: %u is none of 1, 4, 8, 16, 24, 32", bits);
    if (!is_windows_header(raw.headerBytes) && raw.compression > rle4)
        return base::formatted("compression: %u of OS/2 bitmaps is not supported", raw.compression);
    switch (raw.compression) {
    case plain:
        header.coding = bmp_coding::plain;
        return {};
    case rle8:
        header.coding = bmp_coding::rle8;
        return bits == 8 ? std::string() : wrongPair;
    case rle4:
        header.coding = bmp_coding::rle4;
        return bits == 4 ? std::string() : wrongPair;
    case fields:
    case alphaFields:
        header.coding = bmp_coding::fields;
        return bits == 16 || bits == 32 ? std::string() : wrongPair;
    case jpeg:
    case png:
        return "compression: the pixels are an embedded JPEG or PNG file";
    default:
        return base::formatted("compression: %u is unknown", raw.compression);
    }
}

/// An error text, or empty.
std::string set_fields(bmp_header& header, const raw_header& raw)
{
    header.fields = raw.masks;
    const std::uint32_t usable = header.bitCount == 16 ? 0xffffu : 0xffffffffu;
    for (const std::uint32_t mask : header.fields) {
        const std::uint32_t level = mask ? mask >> std::countr_zero(mask) : 0;
        if ((mask & ~usable) != 0 || (level & (level + 1)) != 0)
            return base::formatted("colour mask: %#x is no run of bits of a pixel", mask);
    }
    const bool any = header.fields[0] || header.fields[1] || header.fields[2];
    return any ? std::string() : "colour masks: all are 0";
}

/// The palette between header and pixels. An error text, or empty.
std::string read_palette(source& file, bmp_header& header, const raw_header& raw)
{
    const std::size_t entryBytes = raw.headerBytes == coreHeader ? 3 : 4;
    const std::uint64_t start = fileHeaderBytes + raw.headerBytes;
    const std::uint64_t room = header.pixelsAt > start ? (header.pixelsAt - start) / entryBytes : 0;
    const std::uint64_t all = std::uint64_t{1} << header.bitCount;
    const std::uint64_t used = raw.coloursUsed == 0 ? all : std::min<std::uint64_t>(raw.coloursUsed, all);
    const std::size_t entries = static_cast<std::size_t>(std::min(used, room));
    if (entries == 0) return "palette: there is none between header and pixels";
    std::vector<std::byte> bytes(entries * entryBytes);
    if (!file.read(start, bytes)) return "palette: cut short";
    base::byte_reader in(bytes);
    for (std::size_t i = 0; i < entries; ++i) {
        RGBQUAD colour;
        colour.rgbBlue = in.u8(), colour.rgbGreen = in.u8(), colour.rgbRed = in.u8();
        in.skip(entryBytes - 3);
        header.palette.push_back(colour);
    }
    return {};
}

} // namespace

bool is_bmp_header_size(std::uint32_t size) noexcept
{
    const bool isOs2 = size == coreHeader || (size >= shortestOs2Header && size <= os2Header && size % 4 == 0);
    return isOs2 || is_windows_header(size);
}

base::read_result<bmp_header> read_bmp_header(source& file)
{
    head_bytes head{};
    std::string reason = read_head(file, head);
    if (!reason.empty()) return base::read_error{0, reason};
    const raw_header raw = parse(head);
    bmp_header header;
    header.topDown = raw.height < 0;
    header.pixelsAt = raw.pixelsAt;
    header.xPixelsPerMetre = raw.xPixelsPerMetre, header.yPixelsPerMetre = raw.yPixelsPerMetre;
    reason = set_coding(header, raw);
    if (reason.empty() && header.coding == bmp_coding::fields) reason = set_fields(header, raw);
    if (!reason.empty()) return base::read_error{fileHeaderBytes, reason};
    header.width = raw.width > 0 ? static_cast<std::uint64_t>(raw.width) : 0;
    header.height = static_cast<std::uint64_t>(std::abs(raw.height));
    if (!is_dib_size(header.width, header.height, header.bitCount)) {
        const auto w = static_cast<long long>(raw.width), h = static_cast<long long>(raw.height);
        return base::read_error{fileHeaderBytes, base::formatted("width and height: %lld x %lld is no size", w, h)};
    }
    if (header.bitCount <= 8) reason = read_palette(file, header, raw);
    if (!reason.empty()) return base::read_error{fileHeaderBytes + raw.headerBytes, reason};
    return header;
}

} // namespace vldv::formats
