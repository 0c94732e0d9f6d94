#include "formats/pictures/tiff.h"

#include "formats/pictures/picture_fixture.h"
#include "formats/pictures/tiff_fixture.h"
#include "support/sample_checks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <span>

namespace {

using namespace test_support;

double top_of(const tiff_options& page) { return std::ldexp(1.0, static_cast<int>(page.bits)) - 1.0; }

/// Numbers that fill the range of the page's kind of samples, without symmetry.
double sample_of(const tiff_options& page, unsigned x, unsigned y, unsigned s)
{
    const double part = static_cast<double>((x * 7 + y * 31 + s * 101 + 3) % 256) / 255.0;
    if (page.format == SAMPLEFORMAT_IEEEFP) return static_cast<double>(static_cast<float>(-2.5e-9 + part * 7e-9));
    const double low = page.format == SAMPLEFORMAT_INT ? -(top_of(page) + 1.0) / 2.0 : 0.0;
    return std::floor(low + part * top_of(page));
}

sample_source samples_of(const tiff_options& page)
{
    return [page](unsigned x, unsigned y, unsigned s) { return sample_of(page, x, y, s); };
}

/// The stored row of what is shown `fromTop` rows below the top.
unsigned stored_row(const tiff_options& page, unsigned fromTop)
{
    return page.orientation == ORIENTATION_BOTLEFT ? page.height - 1 - fromTop : fromTop;
}

int rounded(double value) { return static_cast<int>(std::floor(value + 0.5)); }

colour expected_colour(const tiff_options& page, unsigned x, unsigned fromTop)
{
    const auto sample = [&](unsigned s) { return sample_of(page, x, stored_row(page, fromTop), s); };
    const auto level = [&](unsigned s) { return rounded(sample(s) * 255.0 / top_of(page)); };
    const int first = level(0), index = static_cast<int>(sample(0));
    switch (page.photometric) {
    case PHOTOMETRIC_MINISBLACK:
        return {first, first, first};
    case PHOTOMETRIC_MINISWHITE:
        return {255 - first, 255 - first, 255 - first};
    case PHOTOMETRIC_PALETTE:
        return {index, 255 - index, index / 2};
    case PHOTOMETRIC_SEPARATED:
        // Inks: what three of them leave, darkened by black. The library divides without rounding.
        return {(255 - first) * (255 - level(3)) / 255, (255 - level(1)) * (255 - level(3)) / 255,
                (255 - level(2)) * (255 - level(3)) / 255};
    default:
        return {first, level(1), level(2)};
    }
}

const tiff_options pictures[] = {
    {.name = "grey 8", .compression = COMPRESSION_LZW},
    {.name = "grey 8 tiled, Motorola", .compression = COMPRESSION_ADOBE_DEFLATE, .mode = "wb", .isTiled = true},
    {.name = "grey 4, white first",
     .bits = 4,
     .photometric = PHOTOMETRIC_MINISWHITE,
     .compression = COMPRESSION_PACKBITS},
    {.name = "grey 2", .bits = 2},
    {.name = "grey 1, fax", .bits = 1, .photometric = PHOTOMETRIC_MINISWHITE, .compression = COMPRESSION_CCITTFAX4},
    {.name = "grey and alpha", .samples = 2, .hasAlpha = true},
    {.name = "grey upside down", .orientation = ORIENTATION_BOTLEFT},
    {.name = "palette 8", .photometric = PHOTOMETRIC_PALETTE},
    {.name = "palette 4", .bits = 4, .photometric = PHOTOMETRIC_PALETTE, .mode = "wb"},
    {.name = "colours", .samples = 3, .photometric = PHOTOMETRIC_RGB},
    {.name = "colours tiled, BigTIFF",
     .samples = 3,
     .photometric = PHOTOMETRIC_RGB,
     .compression = COMPRESSION_LZW,
     .mode = "w8l",
     .isTiled = true},
    {.name = "colours in planes", .samples = 3, .photometric = PHOTOMETRIC_RGB, .isSeparate = true},
    {.name = "colours in tiled planes",
     .samples = 3,
     .photometric = PHOTOMETRIC_RGB,
     .isSeparate = true,
     .isTiled = true},
    {.name = "colours and alpha", .samples = 4, .photometric = PHOTOMETRIC_RGB, .hasAlpha = true},
    {.name = "colours 16, Motorola", .bits = 16, .samples = 3, .photometric = PHOTOMETRIC_RGB, .mode = "wb"},
    {.name = "colours upside down", .samples = 3, .photometric = PHOTOMETRIC_RGB, .orientation = ORIENTATION_BOTLEFT},
    {.name = "inks", .samples = 4, .photometric = PHOTOMETRIC_SEPARATED},
};

TEST(Tiff, GreyAndColoursBecomePictures)
{
    for (const tiff_options& page : pictures) {
        SCOPED_TRACE(page.name);
        const auto bytes = tiff_file_of({page}, samples_of(page));
        EXPECT_TRUE(formats::sniff_tiff(bytes));
        const auto picture = only_picture(read_bytes(formats::read_tiff, bytes));
        ASSERT_EQ(picture.header.biWidth, static_cast<int>(page.width));
        ASSERT_EQ(picture.header.biHeight, static_cast<int>(page.height));
        for (unsigned y = 0; y < page.height; ++y)
            for (unsigned x = 0; x < page.width; ++x)
                ASSERT_EQ(pixel_of(picture, static_cast<int>(x), static_cast<int>(y)), expected_colour(page, x, y))
                    << x << ", " << y;
    }
}

const tiff_options heights[] = {
    {.name = "signed 8", .format = SAMPLEFORMAT_INT},
    {.name = "unsigned 16", .bits = 16},
    {.name = "unsigned 16, Motorola", .bits = 16, .compression = COMPRESSION_LZW, .mode = "wb", .isTiled = true},
    {.name = "unsigned 16, white first", .bits = 16, .photometric = PHOTOMETRIC_MINISWHITE},
    {.name = "unsigned 12", .bits = 12},
    {.name = "signed 16", .bits = 16, .format = SAMPLEFORMAT_INT, .mode = "w8b"},
    {.name = "unsigned 16 upside down", .bits = 16, .orientation = ORIENTATION_BOTLEFT},
    {.name = "unsigned 32", .bits = 32},
    {.name = "signed 32", .bits = 32, .format = SAMPLEFORMAT_INT, .mode = "wb"},
    {.name = "float", .bits = 32, .format = SAMPLEFORMAT_IEEEFP, .compression = COMPRESSION_ADOBE_DEFLATE},
    {.name = "double", .bits = 64, .format = SAMPLEFORMAT_IEEEFP, .mode = "wb"},
    {.name = "float channels", .bits = 32, .samples = 3, .photometric = PHOTOMETRIC_RGB, .format = SAMPLEFORMAT_IEEEFP},
    {.name = "float planes",
     .bits = 32,
     .samples = 3,
     .photometric = PHOTOMETRIC_RGB,
     .format = SAMPLEFORMAT_IEEEFP,
     .isSeparate = true},
    {.name = "float and alpha", .bits = 32, .samples = 2, .format = SAMPLEFORMAT_IEEEFP, .hasAlpha = true},
};

TEST(Tiff, ValuesBecomeHeightsWithTheBottomRowFirst)
{
    for (const tiff_options& page : heights) {
        SCOPED_TRACE(page.name);
        const auto result = read_bytes(formats::read_tiff, tiff_file_of({page}, samples_of(page)));
        ASSERT_TRUE(result) << result.error().reason;
        const auto planes = planes_of(*result);
        ASSERT_EQ(planes.size(), page.samples - (page.hasAlpha ? 1 : 0));
        const bool isExact = page.format != SAMPLEFORMAT_IEEEFP && page.bits <= 16;
        for (unsigned s = 0; s < planes.size(); ++s) {
            ASSERT_EQ(planes[s].width(), page.width);
            ASSERT_EQ(planes[s].height(), page.height);
            EXPECT_EQ(isExact ? planes[s].step() : 1.0, 1.0);
            const double within = isExact ? 0.0 : planes[s].step() * 0.500001;
            for (unsigned y = 0; y < page.height; ++y)
                for (unsigned x = 0; x < page.width; ++x) {
                    const double value = sample_of(page, x, stored_row(page, page.height - 1 - y), s);
                    const bool isFlipped = page.photometric == PHOTOMETRIC_MINISWHITE;
                    ASSERT_NEAR(planes[s].at(x, y), isFlipped ? top_of(page) - value : value, within) << x << ", " << y;
                }
        }
    }
}

TEST(Tiff, AllPagesComeInTheirOrderWithTheirTexts)
{
    const tiff_options grey{.name = "grey"}, deep{.name = "deep", .bits = 16, .width = 5, .height = 4};
    int page = 0;
    const auto tag = [&](TIFF* tiff) {
        TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, page == 0 ? "the first \xff" : "a later one");
        if (page++ == 2) TIFFSetField(tiff, TIFFTAG_PAGENAME, "Topography");
    };
    const auto result = read_bytes(formats::read_tiff, tiff_file_of({grey, deep, deep, deep}, samples_of(grey), tag));
    ASSERT_TRUE(result) << result.error().reason;
    ASSERT_EQ(result->items.size(), 4u);
    EXPECT_TRUE(std::holds_alternative<formats::picture>(result->items[0]));
    EXPECT_EQ(result->strings.at("ImageDescription"), "the first \xef\xbf\xbd"); // no UTF-8
    const auto& image = [&](std::size_t i) -> const formats::recorded_image& {
        return std::get<formats::recorded_image>(result->items[i]);
    };
    EXPECT_EQ(image(1).strings.at("ImageDescription"), "a later one");
    EXPECT_EQ(image(1).stream.get_name(), std::string("Image"));
    EXPECT_EQ(image(2).stream.get_name(), std::string("Topography"));
    EXPECT_EQ(image(3).stream.get_name(), std::string("Image_2"));
}

TEST(Tiff, ResolutionBecomesAxesAndHeaderFields)
{
    struct {
        unsigned unit;
        float x, y;
        double scaleX, scaleY; ///< of a height image
        const char *unitsX, *unitsY;
        int headerX;
    } const cases[] = {
        {RESUNIT_INCH, 254.0f, 508.0f, 100.0, 50.0, "µm", "µm", 10000},
        {RESUNIT_CENTIMETER, 5e6f, 1.0f, 2.0, 10.0, "nm", "mm", 500000000},
        {RESUNIT_CENTIMETER, 1e8f, 1e8f, 0.1, 0.1, "nm", "nm", 0}, // too fine for the header
        {RESUNIT_NONE, 72.0f, 72.0f, 1.0, 1.0, "px", "px", 0},
        {RESUNIT_INCH, 0.0f, 0.0f, 1.0, 1.0, "px", "px", 0},
    };
    const tiff_options deep{.name = "deep", .bits = 16}, grey{.name = "grey"};
    for (const auto& test : cases) {
        const auto tag = [&](TIFF* tiff) {
            TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, test.unit);
            TIFFSetField(tiff, TIFFTAG_XRESOLUTION, test.x);
            TIFFSetField(tiff, TIFFTAG_YRESOLUTION, test.y);
        };
        const auto result = read_bytes(formats::read_tiff, tiff_file_of({deep, grey}, samples_of(grey), tag));
        ASSERT_TRUE(result) << result.error().reason;
        const auto& stream = std::get<formats::recorded_image>(result->items[0]).stream;
        const VLAxis x = stream.get_dimension(0).get_axis(0), y = stream.get_dimension(1).get_axis(0);
        EXPECT_NEAR(x.scale, test.scaleX, 1e-6 * test.scaleX);
        EXPECT_NEAR(y.scale, test.scaleY, 1e-6 * test.scaleY);
        EXPECT_EQ(std::string(x.get_units()), test.unitsX);
        EXPECT_EQ(std::string(y.get_units()), test.unitsY);
        EXPECT_EQ(std::get<formats::picture>(result->items[1]).header.biXPelsPerMeter, test.headerX);
    }
}

TEST(Tiff, AResolutionThatLiesBeyondTheFileIsTold)
{
    auto bytes = tiff_file_of({{.name = "deep", .bits = 16}}, samples_of({.name = "deep"}), [](TIFF* tiff) {
        TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 254.0f);
        TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 254.0f);
    });
    constexpr unsigned char entry[] = {0x1A, 1, 5, 0, 1, 0, 0, 0}; // XResolution: one fraction
    const auto found = std::ranges::search(bytes, std::as_bytes(std::span(entry)));
    ASSERT_FALSE(found.empty());
    const auto place = static_cast<std::size_t>(found.end() - bytes.begin());
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(place), 4, std::byte{0x7F});
    const auto result = read_bytes(formats::read_tiff, bytes);
    ASSERT_TRUE(result) << result.error().reason;
    const auto& stream = std::get<formats::recorded_image>(result->items[0]).stream;
    EXPECT_STREQ(stream.get_dimension(0).get_axis(0).get_units(), "px");
    EXPECT_STREQ(stream.get_dimension(1).get_axis(0).get_units(), "\u00B5m");
    ASSERT_EQ(result->warnings.size(), 1u);
    EXPECT_NE(result->warnings[0].find("XResolution"), std::string::npos) << result->warnings[0];
}

TEST(Tiff, CutFilesAreRefusedOrSayWhatIsMissing)
{
    for (tiff_options page : {pictures[0], pictures[1], pictures[9], heights[1], heights[9]}) {
        SCOPED_TRACE(page.name);
        page.width = 9, page.height = 7;
        const auto bytes = tiff_file_of({page, page}, samples_of(page));
        expect_cuts_refused(formats::read_tiff, bytes, bytes.size());
    }
}

/// A little-endian file of a directory alone: tag, type (3 short, 4 long), value.
std::vector<std::byte> directory(std::initializer_list<std::array<std::uint32_t, 3>> entries, std::uint32_t next = 0)
{
    byte_writer file;
    file.add({'I', 'I', 42, 0}).u32(8).u16(static_cast<unsigned>(entries.size()));
    for (const auto& [tag, type, value] : entries) file.u16(tag).u16(type).u32(1).u32(value);
    return file.u32(next).add({1, 2, 3, 4}).bytes;
}

TEST(Tiff, WhatLiesAboutItsSizeIsRefusedBeforeMemoryIsAskedFor)
{
    struct {
        const char* reason;
        std::vector<std::byte> file;
    } const files[] = {
        {"cut short|Read error",
         directory({{256, 4, 2}, {257, 4, 2}, {258, 3, 8}, {262, 3, 1}, {273, 4, 5000}, {278, 4, 2}, {279, 4, 4}})},
        {"size is zero",
         directory({{256, 4, 0}, {257, 4, 2}, {258, 3, 8}, {262, 3, 1}, {273, 4, 8}, {278, 4, 2}, {279, 4, 4}})},
        {"too large",
         directory(
             {{256, 4, 60000}, {257, 4, 60000}, {258, 3, 8}, {262, 3, 1}, {273, 4, 8}, {278, 4, 60000}, {279, 4, 4}})},
        {"too large", directory({{256, 4, 60000},
                                 {257, 4, 60000},
                                 {258, 3, 8},
                                 {259, 3, 5},
                                 {262, 3, 1},
                                 {273, 4, 8},
                                 {278, 4, 60000},
                                 {279, 4, 4}})},
        {"overflow", directory({{256, 4, 2000000000},
                                {257, 4, 2000000000},
                                {258, 3, 64},
                                {259, 3, 8},
                                {262, 3, 1},
                                {273, 4, 8},
                                {278, 4, 2000000000},
                                {279, 4, 4}})},
        {"too large", directory({{256, 4, 4},
                                 {257, 4, 4},
                                 {258, 3, 8},
                                 {259, 3, 8},
                                 {262, 3, 1},
                                 {322, 4, 1u << 20},
                                 {323, 4, 1u << 20},
                                 {324, 4, 8},
                                 {325, 4, 4}})},
        {"BitsPerSample",
         directory({{256, 4, 2}, {257, 4, 2}, {258, 3, 99}, {262, 3, 1}, {273, 4, 8}, {278, 4, 2}, {279, 4, 4}})},
        {"Compression", directory({{256, 4, 2},
                                   {257, 4, 2},
                                   {258, 3, 8},
                                   {259, 3, 4711},
                                   {262, 3, 1},
                                   {273, 4, 8},
                                   {278, 4, 2},
                                   {279, 4, 4}})},
    };
    for (const auto& [reason, file] : files) {
        const auto result = read_bytes(formats::read_tiff, file);
        ASSERT_FALSE(result) << reason;
        EXPECT_THAT(result.error().reason, testing::ContainsRegex(reason));
    }
}

TEST(Tiff, PagesInFrontOfADamagedOneAreShown)
{
    const auto file =
        directory({{256, 4, 2}, {257, 4, 2}, {258, 3, 8}, {262, 3, 1}, {273, 4, 98}, {278, 4, 2}, {279, 4, 4}}, 8);
    const auto result = read_bytes(formats::read_tiff, file); // the list of pages runs in a circle
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(result->items.size(), 1u);
    ASSERT_EQ(result->warnings.size(), 1u);
    EXPECT_THAT(result->warnings[0], testing::HasSubstr("page 2"));
}

} // namespace
