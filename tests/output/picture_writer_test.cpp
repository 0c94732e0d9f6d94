#include "output/picture_writer.h"

#include "output/picture_decoders.h"
#include "support/temporary_folder.h"

#include <algorithm>
#include <cstdlib>
#include <gmock/gmock.h>

namespace {

using output::picture_format, output::pixel_view;
using test_support::decoded_picture;

/// Colours that differ between neighbours, corners and channels.
std::uint8_t level(int x, int y, int channel) { return static_cast<std::uint8_t>(x * 7 + y * 13 + channel * 90); }
/// Colours that change slowly, as a lossy format likes them.
std::uint8_t smooth_level(int x, int y, int channel)
{
    return static_cast<std::uint8_t>(10 + 2 * x + y + 30 * channel);
}

using level_function = std::uint8_t (*)(int x, int y, int channel);

/// How the pixels lie in memory.
struct memory_layout {
    int width, height, bytesPerPixel;
    bool bottomUp;
    int padding; ///< bytes behind each row

    friend std::ostream& operator<<(std::ostream& out, const memory_layout& shape)
    {
        return out << shape.width << "x" << shape.height << "x" << shape.bytesPerPixel
                   << (shape.bottomUp ? " bottom-up" : " top-down");
    }
};

/// Owns pixels of the given colours; every byte that no encoder may use is 0xEE.
class painted {
public:
    painted(const memory_layout& shape, level_function colour)
    {
        const std::size_t rowBytes = static_cast<std::size_t>(shape.width * shape.bytesPerPixel + shape.padding);
        memory.assign(rowBytes * static_cast<std::size_t>(shape.height), std::byte{0xEE});
        for (int y = 0; y < shape.height; ++y) {
            const int rowInMemory = shape.bottomUp ? shape.height - 1 - y : y;
            for (int x = 0; x < shape.width; ++x)
                for (int channel = 0; channel < 3; ++channel) // blue comes first
                    memory[rowBytes * static_cast<std::size_t>(rowInMemory) +
                           static_cast<std::size_t>(x * shape.bytesPerPixel + 2 - channel)] =
                        std::byte{colour(x, y, channel)};
        }
        const auto stride = static_cast<std::ptrdiff_t>(rowBytes);
        view = {memory.data() + (shape.bottomUp ? stride * (shape.height - 1) : 0), shape.width, shape.height,
                shape.bottomUp ? -stride : stride, shape.bytesPerPixel};
    }
    pixel_view view;

private:
    std::vector<std::byte> memory;
};

struct codec {
    picture_format format;
    decoded_picture (*decode)(std::span<const std::byte>);
};

constexpr codec exactCodecs[] = {{picture_format::png, test_support::decode_png},
                                 {picture_format::bmp, test_support::decode_bmp},
                                 {picture_format::tiff, test_support::decode_tiff}};

class PictureWriter : public testing::TestWithParam<memory_layout> {};

int largest_difference(const decoded_picture& picture, level_function expected)
{
    int largest = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            for (int channel = 0; channel < 3; ++channel)
                largest = std::max(largest, std::abs(picture.pixel(x, y)[channel] - expected(x, y, channel)));
    return largest;
}

TEST_P(PictureWriter, GivesEveryPixelBackInItsPlace)
{
    const painted source(GetParam(), level);
    for (const codec& tried : exactCodecs) {
        SCOPED_TRACE(static_cast<int>(tried.format));
        const auto bytes = output::encode_picture(tried.format, source.view);
        ASSERT_TRUE(bytes) << bytes.error().reason;
        const decoded_picture picture = tried.decode(*bytes);
        ASSERT_EQ(picture.width, GetParam().width);
        ASSERT_EQ(picture.height, GetParam().height);
        EXPECT_EQ(largest_difference(picture, level), 0);
    }
}

TEST_P(PictureWriter, LosesLittleInJpeg)
{
    const painted source(GetParam(), smooth_level);
    const auto bytes = output::encode_picture(picture_format::jpeg, source.view);
    ASSERT_TRUE(bytes) << bytes.error().reason;
    const decoded_picture picture = test_support::decode_jpeg(*bytes);
    ASSERT_EQ(picture.width, GetParam().width);
    ASSERT_EQ(picture.height, GetParam().height);
    // The quantisation steps of quality 92 are a few levels; a flipped or swapped picture is off by 30 and more.
    EXPECT_LE(largest_difference(picture, smooth_level), 6);
}

INSTANTIATE_TEST_SUITE_P(Layouts, PictureWriter,
                         testing::Values(memory_layout{1, 1, 3, false, 0}, memory_layout{3, 2, 3, true, 3},
                                         memory_layout{5, 67, 4, false, 8}, memory_layout{64, 33, 4, true, 0},
                                         memory_layout{61, 40, 3, true, 1}, memory_layout{1, 90, 4, true, 4}));

TEST(PictureWriterSettings, ResolutionIsKept)
{
    const painted source({4, 4, 3, false, 0}, level);
    output::picture_settings settings;
    settings.xPixelsPerMetre = 4000.0;
    settings.yPixelsPerMetre = 8000.0;
    constexpr codec codecs[] = {
        exactCodecs[0], exactCodecs[1], exactCodecs[2], {picture_format::jpeg, test_support::decode_jpeg}};
    for (const codec& tried : codecs) {
        const decoded_picture picture = tried.decode(*output::encode_picture(tried.format, source.view, settings));
        EXPECT_NEAR(picture.xPixelsPerMetre, 4000.0, 1e-3);
        EXPECT_NEAR(picture.yPixelsPerMetre, 8000.0, 1e-3);
        // A sample every 0.1 nm does not fit most fields: better none than a wrong one.
        settings.xPixelsPerMetre = 1e10;
        const decoded_picture fine = tried.decode(*output::encode_picture(tried.format, source.view, settings));
        EXPECT_THAT(fine.xPixelsPerMetre, testing::AnyOf(0.0, testing::DoubleNear(1e10, 1e3)));
        settings.xPixelsPerMetre = 4000.0;
    }
}

TEST(PictureWriterSettings, QualityDecidesTheSizeOfJpeg)
{
    const painted source({64, 64, 4, false, 0}, level);
    output::picture_settings rough, fine;
    rough.jpegQuality = 30;
    fine.jpegQuality = 95;
    EXPECT_LT(2 * output::encode_picture(picture_format::jpeg, source.view, rough)->size(),
              output::encode_picture(picture_format::jpeg, source.view, fine)->size());
}

TEST(PictureWriterRefuses, WhatAFormatCannotHold)
{
    const std::byte pixel[4] = {};
    // A stride of 0 makes a picture of any height out of one row: the sizes are refused before a pixel is read.
    const pixel_view none{pixel, 0, 5, 0, 3}, nowhere{nullptr, 2, 2, 0, 3};
    const pixel_view wide{pixel, 65501, 1, 0, 3}, large{pixel, 40000, 40000, 0, 3};
    struct refusal {
        picture_format format;
        pixel_view view;
        const char* reason;
    };
    const refusal cases[] = {
        {picture_format::png, none, "no pixels"}, {picture_format::tiff, nowhere, "no pixels"},
        {picture_format::jpeg, wide, "65500"},    {picture_format::bmp, large, "4 GiB"},
        {picture_format::tiff, large, "4 GiB"},
    };
    for (const refusal& tried : cases) {
        const auto bytes = output::encode_picture(tried.format, tried.view);
        ASSERT_FALSE(bytes);
        EXPECT_THAT(bytes.error().reason, testing::HasSubstr(tried.reason));
    }
}

TEST(SaveFileAtomically, ReplacesAFileByTheseBytes)
{
    const temporary_folder folder;
    write_file(folder / "a.png", "an older and longer content");
    const std::string content("new\0bytes", 9);
    output::save_file_atomically(folder / "a.png", std::as_bytes(std::span(content)));
    EXPECT_EQ(file_content(folder / "a.png"), content);
    EXPECT_EQ(folder.files(), 1u);
}

TEST(PictureFormatOf, LooksAtTheExtensionAlone)
{
    EXPECT_EQ(output::picture_format_of("a/b.c/surface.PNG"), picture_format::png);
    EXPECT_EQ(output::picture_format_of("x.bmp"), picture_format::bmp);
    EXPECT_EQ(output::picture_format_of("x.jpg"), picture_format::jpeg);
    EXPECT_EQ(output::picture_format_of("x.Jpeg"), picture_format::jpeg);
    EXPECT_EQ(output::picture_format_of("x.tif"), picture_format::tiff);
    EXPECT_EQ(output::picture_format_of("x.tiff"), picture_format::tiff);
    for (const char* none : {"", "png", "x.", "x.png.gz", "x.spm"})
        EXPECT_EQ(output::picture_format_of(none), std::nullopt) << none;
}

} // namespace
