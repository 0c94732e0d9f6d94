#include "formats/pictures/tiff_page.h"

#include "base/text.h"

#include <algorithm>
#include <cstring>

namespace vldv::formats {

namespace {

template <class T>
T tag(TIFF* tiff, std::uint32_t name)
{
    T value{};
    libtiff().getFieldDefaulted(tiff, name, &value);
    return value;
}

void set_kind(TIFF* tiff, tiff_page& page)
{
    const auto format = tag<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT);
    page.isKnownKind = format >= SAMPLEFORMAT_UINT && format <= SAMPLEFORMAT_VOID;
    page.kind = format == SAMPLEFORMAT_INT      ? sample_kind::integer
                : format == SAMPLEFORMAT_IEEEFP ? sample_kind::real
                                                : sample_kind::natural;
}

void set_alpha(TIFF* tiff, tiff_page& page)
{
    std::uint16_t count = 0;
    const std::uint16_t* meanings = nullptr;
    if (!libtiff().getField(tiff, TIFFTAG_EXTRASAMPLES, &count, &meanings) || count >= page.samples) return;
    const unsigned first = page.samples - count;
    for (unsigned i = 0; i < count && page.alphaAt == 0; ++i)
        if (meanings[i] == EXTRASAMPLE_ASSOCALPHA || meanings[i] == EXTRASAMPLE_UNASSALPHA) page.alphaAt = first + i;
}

void set_resolution(TIFF* tiff, tiff_page& page)
{
    constexpr double perInch = 1.0 / 0.0254, perCentimetre = 100.0;
    const auto unit = tag<std::uint16_t>(tiff, TIFFTAG_RESOLUTIONUNIT);
    const double factor = unit == RESUNIT_INCH ? perInch : unit == RESUNIT_CENTIMETER ? perCentimetre : 0.0;
    float x = 0.0f, y = 0.0f;
    if (libtiff().getField(tiff, TIFFTAG_XRESOLUTION, &x)) page.xResolution = static_cast<double>(x) * factor;
    page.yResolution = page.xResolution;
    if (libtiff().getField(tiff, TIFFTAG_YRESOLUTION, &y)) page.yResolution = static_cast<double>(y) * factor;
}

void set_photometric(TIFF* tiff, tiff_page& page)
{
    std::uint16_t photometric = 0;
    const bool isGiven = libtiff().getField(tiff, TIFFTAG_PHOTOMETRIC, &photometric) != 0;
    page.photometric = isGiven ? photometric : page.samples < 3 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB;
}

/// Takes `bytes` from what is left; false when that is too little.
bool spend(std::uint64_t& left, std::uint64_t bytes) noexcept
{
    if (bytes > left) return false;
    left -= bytes;
    return true;
}

/// Decoded bytes of the whole page, or of a row of tiles where that is more; nothing when 64 bits do not hold it.
std::uint64_t decoded_bytes(TIFF* tiff, const tiff_page& page)
{
    constexpr std::uint64_t most = std::uint64_t{1} << 48;
    const std::uint64_t planes = page.isSeparate ? page.samples : 1, rows = planes * page.height;
    if (page.rowBytes == 0 || page.rowBytes > most / rows) return most;
    if (!page.isTiled) return page.rowBytes * rows;
    const std::uint64_t tileBytes = libtiff().tileSize(tiff);
    if (tileBytes == 0 || tileBytes > most) return most;
    return std::max(page.rowBytes * rows, tileBytes);
}

} // namespace

bool tiff_page::isGrey() const noexcept
{
    return photometric == PHOTOMETRIC_MINISWHITE || photometric == PHOTOMETRIC_MINISBLACK ||
           photometric == PHOTOMETRIC_MASK;
}

bool tiff_page::isPalette() const noexcept { return photometric == PHOTOMETRIC_PALETTE; }

bool tiff_page::isRgb() const noexcept { return photometric == PHOTOMETRIC_RGB && samples >= 3; }

// Deflate makes at most 1,032 bytes of one, LZW some 2,700; fax codes of blank pages make more of little.
tiff_budget::tiff_budget(std::uint64_t fileBytes) noexcept
    : plain(fileBytes), coded((std::uint64_t{256} << 20) + 1032 * std::min(fileBytes, std::uint64_t{1} << 44))
{
}

std::string read_tiff_page(tiff_file& file, tiff_budget& budget, tiff_page& page)
{
    TIFF* tiff = file.handle();
    page.width = tag<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH);
    page.height = tag<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH);
    page.bits = tag<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE);
    page.samples = tag<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL);
    if (page.width == 0 || page.height == 0)
        return base::formatted("ImageWidth and ImageLength: %u x %u is no size", page.width, page.height);
    if (page.bits == 0 || page.bits > 64 || page.samples == 0)
        return base::formatted("BitsPerSample and SamplesPerPixel: %u x %u is unknown", page.samples, page.bits);
    page.isSeparate = page.samples > 1 && tag<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE;
    page.isTiled = libtiff().isTiled(tiff) != 0;
    const auto orientation = tag<std::uint16_t>(tiff, TIFFTAG_ORIENTATION);
    page.isBottomUp = orientation == ORIENTATION_BOTLEFT || orientation == ORIENTATION_BOTRIGHT;
    set_photometric(tiff, page);
    set_kind(tiff, page);
    set_alpha(tiff, page);
    set_resolution(tiff, page);
    page.rowBytes = libtiff().scanlineSize(tiff);
    const bool isPlain = tag<std::uint16_t>(tiff, TIFFTAG_COMPRESSION) == COMPRESSION_NONE;
    if (!spend(isPlain ? budget.plain : budget.coded, decoded_bytes(tiff, page)))
        return base::formatted("ImageWidth and ImageLength: %u x %u is too large for a file of this size", page.width,
                               page.height);
    return {};
}

tiff_rows::tiff_rows(tiff_file& file_, const tiff_page& page_, unsigned plane_)
    : file(file_), page(page_), plane(static_cast<std::uint16_t>(plane_))
{
    const auto rows = tag<std::uint32_t>(file.handle(), page.isTiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP);
    bandRows = std::max(rows, 1u);
    if (!page.isTiled) bandRows = std::min(bandRows, page.height);
    band.resize(static_cast<std::size_t>(page.rowBytes) * std::min(bandRows, page.height));
    if (page.isTiled) tile.resize(static_cast<std::size_t>(libtiff().tileSize(file.handle())));
}

std::span<const std::byte> tiff_rows::row(std::uint32_t y)
{
    if ((y < bandStart || y >= bandEnd) && !load(y)) return {};
    const auto rowBytes = static_cast<std::size_t>(page.rowBytes);
    return std::span(band).subspan((y - bandStart) * rowBytes, rowBytes);
}

std::string tiff_rows::reason() const
{
    if (isCancelled) return readingCancelled;
    return file.complaint().empty() ? "the pixels are cut short" : file.complaint();
}

bool tiff_rows::load(std::uint32_t y)
{
    const double done = static_cast<double>(y) / page.height;
    isCancelled = !file.bytes().progress(page.progressStart + done * page.progressShare);
    if (isCancelled) return false;
    bandStart = y - y % bandRows;
    bandEnd = bandStart + std::min(bandRows, page.height - bandStart);
    file.forget();
    file.setStrict(true);
    const bool isRead = page.isTiled ? loadTiles() : loadStrip();
    file.setStrict(false);
    if (isRead && file.complaint().empty()) return true;
    bandEnd = bandStart;
    return false;
}

bool tiff_rows::loadStrip()
{
    const auto bytes = static_cast<tmsize_t>((bandEnd - bandStart) * page.rowBytes);
    const auto strip = libtiff().computeStrip(file.handle(), bandStart, plane);
    return libtiff().readEncodedStrip(file.handle(), strip, band.data(), bytes) == bytes;
}

bool tiff_rows::loadTiles()
{
    TIFF* tiff = file.handle();
    const auto tileWidth = tag<std::uint32_t>(tiff, TIFFTAG_TILEWIDTH);
    const auto rowBytes = static_cast<std::size_t>(page.rowBytes);
    const auto tileRowBytes = static_cast<std::size_t>(libtiff().tileRowSize(tiff));
    const auto size = static_cast<tmsize_t>(tile.size());
    std::size_t at = 0;
    for (std::uint64_t x = 0; x < page.width && at < rowBytes; x += tileWidth, at += tileRowBytes) {
        const auto number = libtiff().computeTile(tiff, static_cast<std::uint32_t>(x), bandStart, 0, plane);
        if (libtiff().readEncodedTile(tiff, number, tile.data(), size) != size) return false;
        const std::size_t count = std::min(tileRowBytes, rowBytes - at);
        for (std::size_t y = 0; y < bandEnd - bandStart; ++y)
            std::memcpy(band.data() + y * rowBytes + at, tile.data() + y * tileRowBytes, count);
    }
    return true;
}

} // namespace vldv::formats
