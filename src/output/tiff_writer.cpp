// Layout: header, one directory, the values that do not fit into its entries, strips from the top row down.
#include "output/encoders.h"

#include <algorithm>
#include <limits>

namespace vldv::output {

namespace {

constexpr std::uint32_t samples = 3, stripTarget = 8192; // bytes; what readers of little memory like
constexpr std::uint32_t headerSize = 8, entrySize = 12, entryCount = 13;
constexpr std::uint32_t directorySize = 2 + entryCount * entrySize + 4;
constexpr std::uint32_t valuesAt = headerSize + directorySize;
constexpr std::uint32_t bitsAt = valuesAt, bitsSize = 8; // three SHORT and padding
constexpr std::uint32_t resolutionAt = bitsAt + bitsSize, resolutionSize = 16;
constexpr std::uint32_t stripTablesAt = resolutionAt + resolutionSize;
static_assert(valuesAt % 2 == 0 && stripTablesAt % 2 == 0); // values stand on even offsets

enum tiff_type : std::uint16_t { typeShort = 3, typeLong = 4, typeRational = 5 };

struct fraction {
    std::uint32_t numerator, denominator;
};

/// Samples a centimetre, to a thousandth where that fits.
fraction per_centimetre(double pixelsPerMetre) noexcept
{
    constexpr double largest = std::numeric_limits<std::uint32_t>::max(), thousandths = 1000.0;
    const double wanted = pixelsPerMetre / 100.0;
    if (const std::uint32_t fine = resolution_field(wanted * thousandths, largest))
        return {fine, static_cast<std::uint32_t>(thousandths)};
    return {resolution_field(wanted, largest), 1};
}

struct tiff_resolution {
    fraction x{72, 1}, y{72, 1}; // what a reader assumes of a screen
    std::uint32_t unit = 2;      ///< 2 inch, 3 centimetre
};

tiff_resolution resolution_of(const picture_settings& settings) noexcept
{
    const fraction x = per_centimetre(settings.xPixelsPerMetre), y = per_centimetre(settings.yPixelsPerMetre);
    if (x.numerator == 0 || y.numerator == 0) return {};
    return {x, y, 3};
}

struct strip_layout {
    std::uint32_t rows;   ///< a strip, but for the last one
    std::uint32_t strips; ///< how many
    std::uint64_t rowBytes;
    std::uint64_t pixelsAt;
    std::uint64_t fileSize;

    std::uint32_t bytesOf(std::uint32_t strip, std::uint32_t height) const noexcept
    {
        return static_cast<std::uint32_t>(std::min(rows, height - strip * rows) * rowBytes);
    }
};

strip_layout lay_out(std::uint32_t width, std::uint32_t height) noexcept
{
    strip_layout layout{};
    layout.rowBytes = std::uint64_t{width} * samples;
    layout.rows = static_cast<std::uint32_t>(std::max<std::uint64_t>(1, stripTarget / layout.rowBytes));
    layout.strips = static_cast<std::uint32_t>((std::uint64_t{height} + layout.rows - 1) / layout.rows);
    const std::uint64_t tables = layout.strips > 1 ? 8 * std::uint64_t{layout.strips} : 0;
    layout.pixelsAt = stripTablesAt + tables;
    layout.fileSize = layout.pixelsAt + layout.rowBytes * height;
    return layout;
}

/// Entries stand in ascending order of their tags.
class directory_writer {
public:
    explicit directory_writer(std::byte* first) noexcept : out(first) {}
    void entry(std::uint16_t tag, tiff_type type, std::uint32_t count, std::uint32_t value) noexcept
    {
        out.u16(tag);
        out.u16(type);
        out.u32(count);
        out.u32(value); // a SHORT stands in the lower half: little-endian
    }
    byte_writer out;
};

void write_directory(std::byte* at, std::uint32_t width, std::uint32_t height, const strip_layout& layout,
                     std::uint32_t resolutionUnit)
{
    // A table of one number stands in the entry itself.
    const bool isSingle = layout.strips == 1;
    const std::uint32_t offsets = isSingle ? static_cast<std::uint32_t>(layout.pixelsAt) : stripTablesAt;
    const std::uint32_t counts = isSingle ? layout.bytesOf(0, height) : stripTablesAt + 4 * layout.strips;
    directory_writer directory(at);
    directory.out.u16(entryCount);
    directory.entry(256, typeLong, 1, width);
    directory.entry(257, typeLong, 1, height);
    directory.entry(258, typeShort, samples, bitsAt);
    directory.entry(259, typeShort, 1, 1); // not compressed
    directory.entry(262, typeShort, 1, 2); // red, green, blue
    directory.entry(273, typeLong, layout.strips, offsets);
    directory.entry(277, typeShort, 1, samples);
    directory.entry(278, typeLong, 1, layout.rows);
    directory.entry(279, typeLong, layout.strips, counts);
    directory.entry(282, typeRational, 1, resolutionAt);
    directory.entry(283, typeRational, 1, resolutionAt + 8);
    directory.entry(284, typeShort, 1, 1); // samples of a pixel side by side
    directory.entry(296, typeShort, 1, resolutionUnit);
    directory.out.u32(0); // no further directory
}

void write_values(std::byte* at, const tiff_resolution& resolution)
{
    byte_writer out(at);
    for (std::uint32_t i = 0; i < samples; ++i) out.u16(8); // bits a sample
    out.u16(0);
    for (const fraction& part : {resolution.x, resolution.y}) {
        out.u32(part.numerator);
        out.u32(part.denominator);
    }
}

void write_strip_tables(std::byte* at, const strip_layout& layout, std::uint32_t height)
{
    byte_writer offsets(at), counts(at + 4 * std::size_t{layout.strips});
    const std::uint64_t step = layout.rows * layout.rowBytes;
    for (std::uint32_t strip = 0; strip < layout.strips; ++strip) {
        offsets.u32(static_cast<std::uint32_t>(layout.pixelsAt + strip * step));
        counts.u32(layout.bytesOf(strip, height));
    }
}

void write_row(std::byte* out, const std::byte* pixels, int width, int bytesPerPixel)
{
    for (int x = 0; x < width; ++x, out += samples, pixels += bytesPerPixel) {
        out[0] = pixels[2];
        out[1] = pixels[1];
        out[2] = pixels[0];
    }
}

} // namespace

picture_bytes encode_tiff(const pixel_view& pixels, const picture_settings& settings)
{
    const auto width = static_cast<std::uint32_t>(pixels.width), height = static_cast<std::uint32_t>(pixels.height);
    const strip_layout layout = lay_out(width, height);
    if (layout.fileSize > std::numeric_limits<std::uint32_t>::max())
        return base::read_error{0, "the picture is too large for TIFF, which ends at 4 GiB"};
    std::vector<std::byte> bytes(layout.fileSize);
    const tiff_resolution resolution = resolution_of(settings);
    byte_writer header(bytes.data());
    header.text("II");
    header.u16(42);
    header.u32(headerSize); // the directory follows at once
    write_directory(bytes.data() + headerSize, width, height, layout, resolution.unit);
    write_values(bytes.data() + valuesAt, resolution);
    if (layout.strips > 1) write_strip_tables(bytes.data() + stripTablesAt, layout, height);
    std::byte* out = bytes.data() + layout.pixelsAt;
    for (int y = 0; y < pixels.height; ++y, out += layout.rowBytes)
        write_row(out, pixels.row(y), pixels.width, pixels.bytesPerPixel);
    return bytes;
}

} // namespace vldv::output
