#include "formats/pictures/png.h"

#include "formats/instrument_fixture.h"
#include "formats/pictures/picture_fixture.h"
#include "formats/recorded_values.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace {

using namespace formats;
using namespace instrument_fixture;
using namespace test_support;

enum colour_kind { grey, palette, colours };

/// A file of data/png, as the library's encoder wrote it: an independent source. Its samples are `level`.
struct png_page {
    std::string file;
    int bits = 8;
    colour_kind colour = grey;
    bool hasResolution = false;
};

constexpr int width = 11, height = 9; // no whole bytes at any depth, more than one block of eight

/// Different in every corner and channel; of `bits` bits.
unsigned level(int x, int y, int channel, int bits)
{
    const auto wide = static_cast<unsigned>(x * 2957 + y * 733 + channel * 21001 + x * y * 31);
    return wide & ((1u << bits) - 1);
}

colour expected(const png_page& file, int x, int y)
{
    const auto shown = [&](int channel) { // of 8 bits, the nearest
        const unsigned top = (1u << file.bits) - 1;
        return static_cast<int>((level(x, y, channel, file.bits) * 255u + top / 2) / top);
    };
    const int index = static_cast<int>(level(x, y, 0, file.bits));
    if (file.colour == palette) return {(index * 7 + 3) % 256, 255 - index, index * 3 % 256};
    if (file.colour == colours) return {shown(0), shown(1), shown(2)};
    return {shown(0), shown(0), shown(0)};
}

std::string bytes_of(const std::string& file) { return seed("png/" + file + ".png").content; }

TEST(Png, ShowsEveryKindOfColours)
{
    const png_page pictures[] = {{"Grey1", 1},
                                 {"Grey4", 4},
                                 {"Grey8", 8, grey, true},
                                 {"GreyAlpha8"},
                                 {"Palette2", 2, palette},
                                 {"Palette8", 8, palette},
                                 {"Rgb8", 8, colours},
                                 {"Rgba8", 8, colours},
                                 {"Rgb16", 16, colours}};
    for (const png_page& file : pictures) {
        SCOPED_TRACE(file.file);
        const auto result = read(read_png, bytes_of(file.file));
        const auto shown = only_picture(result);
        expect_pixels(shown, width, height, [&](int x, int y) { return expected(file, x, y); });
        EXPECT_EQ(shown.header.biXPelsPerMeter, file.hasResolution ? 11811 : 0);
        EXPECT_EQ(shown.header.biYPelsPerMeter, file.hasResolution ? 5906 : 0);
        EXPECT_EQ(result->strings.at("Title"), "Größ") << "Latin-1 in the file";
        EXPECT_EQ(result->strings.at("Comment"), "Größ μm");
        expect_cuts_refused(read_png, bytes_of(file.file));
    }
}

TEST(Png, SixteenBitGreysAreHeights)
{
    // 11811 pixels a metre are 84.7 µm a pixel.
    for (const auto& [file, step] : {std::pair("Interlaced16", 84.6668), std::pair("GreyAlpha16", 1.0)}) {
        const auto result = read(read_png, bytes_of(file));
        const recorded_image& image = image_at(result, 0);
        const std::vector<double> values = physical_of(image);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(values.at(static_cast<std::size_t>((height - 1 - y) * width + x)), level(x, y, 0, 16))
                    << file;
        EXPECT_NEAR(image.stream.get_dimension(0).get_axis(0).scale, step, 1e-3);
        EXPECT_STREQ(image.stream.get_dimension(0).get_axis(0).get_units(), step > 1.0 ? "µm" : "px");
    }
}

TEST(Png, DamageIsRefusedOrHarmless)
{
    const std::string bytes = bytes_of("Grey8");
    const auto whole = pixels_of(only_picture(read(read_png, bytes)));
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::string damaged = bytes;
        damaged[i] = static_cast<char>(damaged[i] ^ 0xff);
        const auto result = read(read_png, damaged);
        // Only chunks without pixels have checksums that a reader may pass over.
        EXPECT_TRUE(result ? pixels_of(only_picture(result)) == whole : !result.error().reason.empty()) << i;
    }
}

TEST(Png, AHugeSizeIsRefusedBeforeMemoryIsAskedFor)
{
    bytes_builder file = seed("png/Grey8.png");
    constexpr std::size_t type = 12, sizes = 16, sum = 29; // of the header, which ends before its checksum
    file.put(sizes, 61680u, std::endian::big).put(sizes + 4, 61680u, std::endian::big);
    const auto crc = crc32(0, reinterpret_cast<const Bytef*>(file.content.data() + type), sum - type);
    file.put(sum, static_cast<std::uint32_t>(crc), std::endian::big);
    expect_refused(read_png, {{file.content, "61680 x 61680"}});
}

} // namespace
