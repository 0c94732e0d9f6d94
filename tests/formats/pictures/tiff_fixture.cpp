#include "formats/pictures/tiff_fixture.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <unistd.h>

namespace test_support {

namespace {

constexpr unsigned rowsPerStrip = 5, tileSide = 16;

template <class T>
void append(std::vector<unsigned char>& row, double value)
{
    const T sample = static_cast<T>(value);
    unsigned char bytes[sizeof(T)];
    std::memcpy(bytes, &sample, sizeof sample);
    row.insert(row.end(), bytes, bytes + sizeof bytes);
}

/// Collects samples of any width.
class row_writer {
public:
    explicit row_writer(const tiff_options& page_) : page(page_) {}
    void add(double value)
    {
        const bool isSigned = page.format == SAMPLEFORMAT_INT;
        if (page.format == SAMPLEFORMAT_IEEEFP)
            return page.bits == 32 ? append<float>(row, value) : append<double>(row, value);
        if (page.bits == 64) return append<std::int64_t>(row, value);
        if (page.bits == 32) return isSigned ? append<std::int32_t>(row, value) : append<std::uint32_t>(row, value);
        if (page.bits == 16) return isSigned ? append<std::int16_t>(row, value) : append<std::uint16_t>(row, value);
        if (page.bits == 8) return isSigned ? append<std::int8_t>(row, value) : append<std::uint8_t>(row, value);
        const auto sample = static_cast<unsigned>(static_cast<int>(value));
        for (unsigned bit = page.bits; bit-- > 0; ++used) {
            if (used % 8 == 0) row.push_back(0);
            row.back() = static_cast<unsigned char>(row.back() | (sample >> bit & 1) << (7 - used % 8));
        }
    }
    std::vector<unsigned char> row;

private:
    const tiff_options& page;
    std::size_t used = 0;
};

/// Samples of columns [x0, x1) and rows [y0, y1) of a plane, beyond the page as zeros.
std::vector<unsigned char> block_of(const tiff_options& page, const sample_source& sample, unsigned plane, unsigned x0,
                                    unsigned x1, unsigned y0, unsigned y1)
{
    std::vector<unsigned char> block;
    for (unsigned y = y0; y < y1; ++y) {
        row_writer row(page);
        for (unsigned x = x0; x < x1; ++x)
            for (unsigned s = 0; s < (page.isSeparate ? 1 : page.samples); ++s)
                row.add(x < page.width && y < page.height ? sample(x, y, page.isSeparate ? plane : s) : 0.0);
        block.insert(block.end(), row.row.begin(), row.row.end());
    }
    return block;
}

void write_page(TIFF* tiff, const tiff_options& page, const sample_source& sample)
{
    unsigned number = 0;
    const auto store = [&](std::vector<unsigned char> block) {
        const auto size = static_cast<tmsize_t>(block.size());
        const auto written = page.isTiled ? TIFFWriteEncodedTile(tiff, number, block.data(), size)
                                          : TIFFWriteEncodedStrip(tiff, number, block.data(), size);
        EXPECT_EQ(written, size) << page.name;
        ++number;
    };
    for (unsigned plane = 0; plane < (page.isSeparate ? page.samples : 1); ++plane)
        if (page.isTiled) {
            for (unsigned y = 0; y < page.height; y += tileSide)
                for (unsigned x = 0; x < page.width; x += tileSide)
                    store(block_of(page, sample, plane, x, x + tileSide, y, y + tileSide));
        } else {
            for (unsigned y = 0; y < page.height; y += rowsPerStrip)
                store(block_of(page, sample, plane, 0, page.width, y, std::min(y + rowsPerStrip, page.height)));
        }
}

void set_tags(TIFF* tiff, const tiff_options& page)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, page.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, page.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, page.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, page.samples);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, page.photometric);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, page.format);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, page.compression);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, page.isSeparate ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, page.orientation);
    const std::uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
    if (page.hasAlpha) TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
    if (page.isTiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, tileSide);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, tileSide);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, rowsPerStrip);
    }
    if (page.photometric == PHOTOMETRIC_PALETTE) {
        std::vector<std::uint16_t> red, green, blue;
        for (unsigned i = 0; i < 1u << page.bits; ++i) {
            red.push_back(static_cast<std::uint16_t>(i * 257));
            green.push_back(static_cast<std::uint16_t>(65535 - i * 257));
            blue.push_back(static_cast<std::uint16_t>(257 * (i / 2)));
        }
        TIFFSetField(tiff, TIFFTAG_COLORMAP, red.data(), green.data(), blue.data());
    }
}

} // namespace

std::vector<std::byte> tiff_file_of(const std::vector<tiff_options>& pages, const sample_source& sample,
                                    const std::function<void(TIFF*)>& finish)
{
    std::FILE* file = std::tmpfile();
    if (!file) return {};
    TIFF* tiff = TIFFFdOpen(dup(fileno(file)), "written.tif", pages.front().mode);
    for (const tiff_options& page : pages) {
        set_tags(tiff, page);
        if (finish) finish(tiff);
        write_page(tiff, page, sample);
        TIFFWriteDirectory(tiff);
    }
    TIFFClose(tiff);
    std::vector<std::byte> bytes;
    std::fseek(file, 0, SEEK_END);
    bytes.resize(static_cast<std::size_t>(std::ftell(file)));
    std::rewind(file);
    EXPECT_EQ(std::fread(bytes.data(), 1, bytes.size(), file), bytes.size());
    std::fclose(file);
    return bytes;
}

} // namespace test_support
