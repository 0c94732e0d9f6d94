#include "formats/pictures/png.h"

#include "formats/pictures/picture_fixture.h"

#include <csetjmp>
#include <gtest/gtest.h>
#include <png.h>

namespace {

using namespace test_support;

struct png_options {
    const char* name;
    int colours, bits;
    bool isInterlaced = false;
    bool hasResolution = false;
};

constexpr int width = 21, height = 13; // no whole bytes at any depth, more than one block of eight

/// Different in every corner and channel; of `bits` bits.
unsigned level(int x, int y, int channel, int bits)
{
    const auto wide = static_cast<unsigned>(x * 2957 + y * 733 + channel * 21001 + x * y * 31);
    return wide & ((1u << bits) - 1);
}

png_color palette_color(unsigned index)
{
    return {static_cast<png_byte>(index * 7 + 3), static_cast<png_byte>(255 - index), static_cast<png_byte>(index * 3)};
}

int channels_of(const png_options& file)
{
    return file.colours == PNG_COLOR_TYPE_PALETTE
               ? 1
               : ((file.colours & PNG_COLOR_MASK_COLOR) ? 3 : 1) + ((file.colours & PNG_COLOR_MASK_ALPHA) ? 1 : 0);
}

/// Samples from the most significant bit on, as the standard orders them.
std::vector<unsigned char> packed_row(const png_options& file, int y)
{
    const int channels = channels_of(file);
    std::vector<unsigned char> row(static_cast<std::size_t>((width * channels * file.bits + 7) / 8));
    std::size_t bit = 0;
    for (int x = 0; x < width; ++x)
        for (int c = 0; c < channels; ++c)
            for (int b = file.bits - 1; b >= 0; --b, ++bit)
                if (level(x, y, c, file.bits) >> b & 1u)
                    row[bit / 8] = static_cast<unsigned char>(row[bit / 8] | 0x80u >> bit % 8);
    return row;
}

/// As the library's encoder writes it: an independent source of files.
std::vector<std::byte> encode(const png_options& file)
{
    std::vector<std::byte> bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    const auto keep = [](png_structp from, png_bytep data, std::size_t size) {
        auto& out = *static_cast<std::vector<std::byte>*>(png_get_io_ptr(from));
        out.insert(out.end(), reinterpret_cast<std::byte*>(data), reinterpret_cast<std::byte*>(data) + size);
    };
    png_set_write_fn(png, &bytes, keep, nullptr);
    png_set_IHDR(png, info, width, height, file.bits, file.colours,
                 file.isInterlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_BASE,
                 PNG_FILTER_TYPE_BASE);
    std::vector<png_color> palette;
    for (unsigned i = 0; i < 1u << std::min(file.bits, 8); ++i) palette.push_back(palette_color(i));
    if (file.colours == PNG_COLOR_TYPE_PALETTE)
        png_set_PLTE(png, info, palette.data(), static_cast<int>(palette.size()));
    if (file.hasResolution) png_set_pHYs(png, info, 11811, 5906, PNG_RESOLUTION_METER);
    char title[] = "Title",
         latin[] = "Gr\xf6\xdf"
                   "e",
         comment[] = "Comment",
         utf8[] = "Gr\xc3\xb6\xc3\x9f"
                  "e \xce\xbcm";
    png_text texts[2]{};
    texts[0].compression = PNG_TEXT_COMPRESSION_NONE;
    texts[0].key = title, texts[0].text = latin;
    texts[1].compression = PNG_ITXT_COMPRESSION_zTXt;
    texts[1].key = comment, texts[1].text = utf8;
    png_set_text(png, info, texts, 2);
    std::vector<std::vector<unsigned char>> rows;
    std::vector<png_bytep> pointers;
    for (int y = 0; y < height; ++y) rows.push_back(packed_row(file, y));
    for (auto& row : rows) pointers.push_back(row.data());
    png_set_rows(png, info, pointers.data());
    png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    png_destroy_write_struct(&png, &info);
    return bytes;
}

constexpr png_options pictures[] = {
    {"Grey1", PNG_COLOR_TYPE_GRAY, 1},
    {"Grey2", PNG_COLOR_TYPE_GRAY, 2},
    {"Grey4", PNG_COLOR_TYPE_GRAY, 4, true},
    {"Grey8", PNG_COLOR_TYPE_GRAY, 8, false, true},
    {"GreyAlpha8", PNG_COLOR_TYPE_GRAY_ALPHA, 8},
    {"Palette1", PNG_COLOR_TYPE_PALETTE, 1, true},
    {"Palette2", PNG_COLOR_TYPE_PALETTE, 2, true},
    {"Palette4", PNG_COLOR_TYPE_PALETTE, 4},
    {"Palette8", PNG_COLOR_TYPE_PALETTE, 8},
    {"Rgb8", PNG_COLOR_TYPE_RGB, 8, true},
    {"Rgba8", PNG_COLOR_TYPE_RGB_ALPHA, 8},
    {"Rgb16", PNG_COLOR_TYPE_RGB, 16},
    {"Rgba16", PNG_COLOR_TYPE_RGB_ALPHA, 16, true},
};

constexpr png_options heights[] = {
    {"Grey16", PNG_COLOR_TYPE_GRAY, 16},
    {"Interlaced16", PNG_COLOR_TYPE_GRAY, 16, true, true},
    {"GreyAlpha16", PNG_COLOR_TYPE_GRAY_ALPHA, 16},
};

/// `value` of `bits` bits as one of 8, nearest.
int byte_of(unsigned value, int bits)
{
    const unsigned top = (1u << bits) - 1;
    return static_cast<int>((value * 255u + top / 2) / top);
}

colour expected(const png_options& file, int x, int y)
{
    const auto shown = [&](int channel) { return byte_of(level(x, y, channel, file.bits), file.bits); };
    if (file.colours == PNG_COLOR_TYPE_PALETTE) {
        const png_color entry = palette_color(level(x, y, 0, file.bits));
        return {entry.red, entry.green, entry.blue};
    }
    if (file.colours & PNG_COLOR_MASK_COLOR) return {shown(0), shown(1), shown(2)};
    return {shown(0), shown(0), shown(0)};
}

TEST(Png, ShowsEveryKindOfColours)
{
    for (const png_options& file : pictures) {
        SCOPED_TRACE(file.name);
        const auto bytes = encode(file);
        EXPECT_TRUE(formats::sniff_png(bytes));
        const auto result = read_bytes(formats::read_png, bytes);
        const auto picture = only_picture(result);
        ASSERT_EQ(picture.header.biWidth, width);
        ASSERT_EQ(picture.header.biHeight, height);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(pixel_of(picture, x, y), expected(file, x, y)) << "at " << x << ", " << y;
        EXPECT_EQ(picture.header.biXPelsPerMeter, file.hasResolution ? 11811 : 0);
        EXPECT_EQ(picture.header.biYPelsPerMeter, file.hasResolution ? 5906 : 0);
        EXPECT_EQ(result->strings.at("Title"), "Größe") << "Latin-1 in the file";
        EXPECT_EQ(result->strings.at("Comment"), "Größe μm");
    }
}

TEST(Png, SixteenBitGreysAreHeights)
{
    for (const png_options& file : heights) {
        SCOPED_TRACE(file.name);
        const auto result = read_bytes(formats::read_png, encode(file));
        ASSERT_TRUE(result) << result.error().reason;
        ASSERT_EQ(result->items.size(), 1u);
        const auto* image = std::get_if<formats::recorded_image>(&result->items[0]);
        ASSERT_TRUE(image);
        const SPMDataStream& stream = image->stream;
        const VLAxis& values = stream.values.get_axis(0);
        const auto* raw = static_cast<const short*>(stream.array_data());
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(raw[(height - 1 - y) * width + x] * values.scale + values.start, level(x, y, 0, 16));
        // 11811 pixels a metre are 84.7 µm a pixel.
        const VLAxis& across = stream.get_dimension(0).get_axis(0);
        EXPECT_NEAR(across.scale, file.hasResolution ? 84.6668 : 1.0, 1e-3);
        EXPECT_STREQ(across.get_units(), file.hasResolution ? "µm" : "px");
    }
}

TEST(Png, CutFilesAreRefused)
{
    for (const png_options& file : pictures) {
        SCOPED_TRACE(file.name);
        const auto bytes = encode(file);
        expect_cuts_refused(formats::read_png, bytes, bytes.size());
    }
}

TEST(Png, DamageIsRefusedOrHarmless)
{
    const auto bytes = encode(pictures[3]);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        auto damaged = bytes;
        damaged[i] ^= std::byte{0xff};
        const auto result = read_bytes(formats::read_png, damaged);
        if (!result) {
            EXPECT_FALSE(result.error().reason.empty()) << i;
            continue;
        }
        // Only chunks without pixels have checksums that a reader may pass over.
        EXPECT_EQ(pixels_of(only_picture(result)), pixels_of(only_picture(read_bytes(formats::read_png, bytes)))) << i;
    }
}

TEST(Png, AHugeSizeIsRefusedBeforeMemoryIsAskedFor)
{
    // Signature, IHDR of 61680 x 61680 grey pixels with its checksum, and an empty IDAT.
    byte_writer file;
    file.add({0x89, 'P', 'N', 'G', 13, 10, 26, 10, 0, 0, 0, 13, 'I', 'H', 'D', 'R'});
    const std::vector<unsigned> header = {0, 0, 0xf0, 0xf0, 0, 0, 0xf0, 0xf0, 8, 0, 0, 0, 0};
    for (const unsigned each : header) file.u8(each);
    std::uint32_t crc = ~0u; // CRC-32 of the type and the data
    for (std::size_t i = 12; i < file.bytes.size(); ++i) {
        crc ^= std::to_integer<std::uint32_t>(file.bytes[i]);
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1u ? 0xedb88320u : 0u);
    }
    for (int shift = 24; shift >= 0; shift -= 8) file.u8(~crc >> shift & 255u);
    file.add({0, 0, 0, 0, 'I', 'D', 'A', 'T', 0x35, 0xaf, 0x06, 0x1e});
    const auto result = read_bytes(formats::read_png, file.bytes);
    ASSERT_FALSE(result);
    EXPECT_NE(result.error().reason.find("61680 x 61680"), std::string::npos) << result.error().reason;
}

} // namespace
