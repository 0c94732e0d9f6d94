#include "formats/pictures/dib.h"
#include "formats/pictures/tiff_pixels.h"
#include "formats/pictures/tiff_samples.h"

#include <algorithm>

namespace vldv::formats {

namespace {

const char* const tooLarge = "ImageWidth and ImageLength: too many pixels";

picture page_picture(const tiff_page& page, unsigned bitCount, std::vector<RGBQUAD> palette = {})
{
    picture image = make_picture(page.width, page.height, bitCount, std::move(palette));
    image.header.biXPelsPerMeter = header_resolution(page.xResolution);
    image.header.biYPelsPerMeter = header_resolution(page.yResolution);
    return image;
}

/// The colour map, whose levels have 16 bits; some programs fill only the lower 8.
std::vector<RGBQUAD> colour_map(TIFF* tiff, unsigned entries)
{
    std::uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
    if (!libtiff().getField(tiff, TIFFTAG_COLORMAP, &red, &green, &blue)) return {};
    unsigned brightest = 0;
    for (unsigned i = 0; i < entries; ++i) brightest = std::max<unsigned>({brightest, red[i], green[i], blue[i]});
    const auto level = [&](unsigned value) {
        return static_cast<std::uint8_t>(brightest < 256 ? value : (value * 255 + 32767) / 65535);
    };
    std::vector<RGBQUAD> palette(entries);
    for (unsigned i = 0; i < entries; ++i) palette[i] = {level(blue[i]), level(green[i]), level(red[i]), 0};
    return palette;
}

} // namespace

std::string append_indexed(tiff_file& file, const tiff_page& page, recording& out)
{
    const unsigned entries = 1u << page.bits;
    std::vector<RGBQUAD> palette = page.isPalette() ? colour_map(file.handle(), entries)
                                                    : grey_palette(entries, page.photometric == PHOTOMETRIC_MINISWHITE);
    if (palette.empty()) return "ColorMap: there is none";
    const bool isCopied =
        (page.bits == 1 || page.bits == 4 || page.bits == 8) && (page.samples == 1 || page.isSeparate);
    const unsigned bitCount = isCopied ? page.bits : 8;
    if (!is_dib_size(page.width, page.height, bitCount)) return tooLarge;
    picture image = page_picture(page, bitCount, std::move(palette));
    tiff_rows rows(file, page, 0);
    std::vector<std::uint32_t> samples(page.width);
    for (std::uint32_t y = 0; y < page.height; ++y) {
        const auto row = rows.row(y);
        if (row.empty()) return rows.reason();
        const auto target = row_from_top(image, page.fromTop(y));
        if (isCopied) {
            std::copy_n(row.begin(), std::min(row.size(), target.size()), target.begin());
            continue;
        }
        read_natural(row, layout_of(page, 0), samples);
        for (std::size_t x = 0; x < samples.size(); ++x) target[x] = static_cast<std::byte>(samples[x]);
    }
    out.items.emplace_back(std::move(image));
    return {};
}

std::string append_colours(tiff_file& file, const tiff_page& page, recording& out)
{
    if (!is_dib_size(page.width, page.height, 24)) return tooLarge;
    picture image = page_picture(page, 24);
    std::vector<tiff_rows> planes;
    for (unsigned plane = 0; plane < (page.isSeparate ? 3u : 1u); ++plane) planes.emplace_back(file, page, plane);
    const std::uint32_t top = (1u << page.bits) - 1;
    std::vector<std::uint32_t> samples(page.width);
    for (std::uint32_t y = 0; y < page.height; ++y) {
        const auto target = row_from_top(image, page.fromTop(y));
        for (unsigned channel = 0; channel < 3; ++channel) {
            tiff_rows& rows = planes[page.isSeparate ? channel : 0];
            const auto row = rows.row(y);
            if (row.empty()) return rows.reason();
            read_natural(row, layout_of(page, channel), samples);
            std::byte* pixel = target.data() + (2 - channel);
            for (std::size_t x = 0; x < samples.size(); ++x, pixel += 3)
                *pixel = static_cast<std::byte>(top == 255 ? samples[x] : (samples[x] * 255 + top / 2) / top);
        }
    }
    out.items.emplace_back(std::move(image));
    return {};
}

std::string append_converted(tiff_file& file, const tiff_page& page, recording& out)
{
    if (!is_dib_size(page.width, page.height, 32)) return tooLarge;
    char why[1024] = "";
    if (!libtiff().isRgbaReadable(file.handle(), why)) return why;
    if (!file.bytes().progress(page.progressStart)) return readingCancelled;
    std::vector<std::uint32_t> pixels(std::size_t{page.width} * page.height);
    file.forget();
    file.setStrict(true);
    const int isRead =
        libtiff().readRgbaOriented(file.handle(), page.width, page.height, pixels.data(), ORIENTATION_TOPLEFT, 1);
    file.setStrict(false);
    if (!isRead || !file.complaint().empty())
        return file.complaint().empty() ? "the pixels cannot be decoded" : file.complaint();
    picture image = page_picture(page, 24);
    for (std::uint32_t y = 0; y < page.height; ++y) {
        const std::uint32_t* pixel = pixels.data() + std::size_t{y} * page.width;
        const auto target = row_from_top(image, y);
        for (std::size_t x = 0; x < page.width; ++x, ++pixel) {
            target[3 * x] = static_cast<std::byte>(TIFFGetB(*pixel));
            target[3 * x + 1] = static_cast<std::byte>(TIFFGetG(*pixel));
            target[3 * x + 2] = static_cast<std::byte>(TIFFGetR(*pixel));
        }
    }
    out.items.emplace_back(std::move(image));
    return {};
}

} // namespace vldv::formats
