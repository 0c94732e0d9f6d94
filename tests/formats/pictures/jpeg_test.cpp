#include "formats/pictures/jpeg.h"

#include "formats/pictures/picture_fixture.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <jpeglib.h>

namespace {

using namespace test_support;

struct jpeg_options {
    const char* name;
    J_COLOR_SPACE given;  ///< of the levels handed to the encoder
    J_COLOR_SPACE stored; ///< of the file
    bool isProgressive = false;
    int densityUnit = 0;
    bool hasAdobeMarker = true; ///< for inks: an encoder always writes it, a file may lack it
};

constexpr int width = 40, height = 24;

/// Smooth, so that compression keeps it, and different in every corner and channel.
int level(int x, int y, int channel)
{
    return channel == 0 ? 40 + 4 * x : channel == 1 ? 30 + 5 * y : 220 - 2 * x - 3 * y;
}

/// As the library's encoder writes it: an independent source of files.
std::vector<std::byte> encode(const jpeg_options& options)
{
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* data = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &data, &size);
    info.image_width = width, info.image_height = height;
    info.in_color_space = options.given;
    info.input_components = options.given == JCS_GRAYSCALE ? 1 : options.given == JCS_CMYK ? 4 : 3;
    jpeg_set_defaults(&info);
    jpeg_set_colorspace(&info, options.stored);
    jpeg_set_quality(&info, 98, TRUE);
    if (options.isProgressive) jpeg_simple_progression(&info);
    if (options.densityUnit != 0) {
        info.density_unit = static_cast<UINT8>(options.densityUnit);
        info.X_density = 300, info.Y_density = 150;
    }
    if (!options.hasAdobeMarker) info.write_Adobe_marker = FALSE;
    jpeg_start_compress(&info, TRUE);
    std::vector<unsigned char> row(width * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            for (int c = 0; c < info.input_components; ++c) {
                // Black ink is even; Adobe's files hold 255 less the ink.
                const int value = c == 3 ? 200 : level(x, y, c);
                row[static_cast<std::size_t>(x * info.input_components + c)] = static_cast<unsigned char>(value);
            }
        unsigned char* pointer = row.data();
        jpeg_write_scanlines(&info, &pointer, 1);
    }
    jpeg_finish_compress(&info);
    const auto* first = reinterpret_cast<const std::byte*>(data);
    std::vector<std::byte> bytes(first, first + size);
    jpeg_destroy_compress(&info);
    std::free(data);
    return bytes;
}

constexpr jpeg_options files[] = {
    {"Grey", JCS_GRAYSCALE, JCS_GRAYSCALE, false, 1},
    {"Colour", JCS_RGB, JCS_YCbCr, false, 2},
    {"Rgb", JCS_RGB, JCS_RGB},
    {"Progressive", JCS_RGB, JCS_YCbCr, true},
    {"Inks", JCS_CMYK, JCS_CMYK},
    {"InksWithoutMarker", JCS_CMYK, JCS_CMYK, false, 0, false},
    {"CodedInks", JCS_CMYK, JCS_YCCK},
};

colour expected(const jpeg_options& file, int x, int y)
{
    if (file.given == JCS_GRAYSCALE) return {level(x, y, 0), level(x, y, 0), level(x, y, 0)};
    const auto shown = [&](int channel) {
        const int value = level(x, y, channel);
        if (file.given != JCS_CMYK) return value;
        return file.hasAdobeMarker ? value * 200 / 255 : (255 - value) * 55 / 255;
    };
    return {shown(0), shown(1), shown(2)};
}

TEST(Jpeg, ShowsEveryKindOfColours)
{
    for (const jpeg_options& file : files) {
        const auto bytes = encode(file);
        EXPECT_TRUE(formats::sniff_jpeg(bytes));
        const auto picture = only_picture(read_bytes(formats::read_jpeg, bytes));
        ASSERT_EQ(picture.header.biWidth, width) << file.name;
        ASSERT_EQ(picture.header.biHeight, height) << file.name;
        EXPECT_EQ(picture.header.biBitCount, file.given == JCS_GRAYSCALE ? 8 : 24) << file.name;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const colour actual = pixel_of(picture, x, y), wanted = expected(file, x, y);
                ASSERT_NEAR(actual.red, wanted.red, 8) << file.name << " at " << x << ", " << y;
                ASSERT_NEAR(actual.green, wanted.green, 8) << file.name << " at " << x << ", " << y;
                ASSERT_NEAR(actual.blue, wanted.blue, 8) << file.name << " at " << x << ", " << y;
            }
        // 300 an inch are 11811 a metre.
        const int perMetre = file.densityUnit == 1 ? 11811 : file.densityUnit == 2 ? 30000 : 0;
        EXPECT_EQ(picture.header.biXPelsPerMeter, perMetre) << file.name;
        EXPECT_EQ(picture.header.biYPelsPerMeter, (perMetre + 1) / 2) << file.name;
    }
}

TEST(Jpeg, CutFilesAreRefused)
{
    for (const jpeg_options& file : files) {
        SCOPED_TRACE(file.name);
        const auto bytes = encode(file);
        // Pictures of one scan are whole without the mark of their end.
        expect_cuts_refused(formats::read_jpeg, bytes, bytes.size() - (file.isProgressive ? 0 : 2));
    }
}

TEST(Jpeg, AHugeSizeIsRefusedBeforeMemoryIsAskedFor)
{
    auto bytes = encode(files[0]);
    for (std::size_t i = 0; i + 8 < bytes.size(); ++i) {
        if (bytes[i] != std::byte{0xff} || bytes[i + 1] != std::byte{0xc0}) continue;
        for (std::size_t k = 5; k < 9; ++k) bytes[i + k] = std::byte{0xf0}; // 61680 x 61680
        break;
    }
    const auto result = read_bytes(formats::read_jpeg, bytes);
    ASSERT_FALSE(result);
    EXPECT_NE(result.error().reason.find("61680 x 61680"), std::string::npos) << result.error().reason;
}

} // namespace
