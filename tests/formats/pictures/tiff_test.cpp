#include "formats/pictures/tiff.h"

#include "formats/instrument_fixture.h"
#include "formats/pictures/picture_fixture.h"
#include "formats/shared/tiff_builder.h"
#include "support/sample_checks.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

namespace {

using namespace formats;
using namespace instrument_fixture;
using namespace test_support;
using testing::ElementsAre;
using testing::HasSubstr;
using tiff_builder::tag, tiff_builder::file_of, tiff_builder::words, tiff_builder::fraction;

constexpr unsigned width = 18, height = 7; // more than one tile of 16 and one strip of 5 rows

enum level_kind { grey, whiteFirst, palette, colours, inks };
enum number_kind { natural, whole, floating };

/// A file of data/tiff, as the library's encoder wrote it: an independent source. Its samples are `sample_of`.
struct tiff_page {
    std::string file;
    unsigned bits = 8, samples = 1;
    level_kind levels = grey;
    number_kind numbers = natural;
    bool isUpsideDown = false, hasAlpha = false;
};

double top_of(const tiff_page& page) { return std::ldexp(1.0, static_cast<int>(page.bits)) - 1.0; }

/// Numbers that fill the range of the page's kind of samples, without symmetry; y counts stored rows.
double sample_of(const tiff_page& page, unsigned x, unsigned y, unsigned s)
{
    const double part = static_cast<double>((x * 7 + y * 31 + s * 101 + 3) % 256) / 255.0;
    if (page.numbers == floating) return static_cast<double>(static_cast<float>(-2.5e-9 + part * 7e-9));
    const double low = page.numbers == whole ? -(top_of(page) + 1.0) / 2.0 : 0.0;
    return std::floor(low + part * top_of(page));
}

/// The stored row of what is shown `fromTop` rows below the top.
unsigned stored_row(const tiff_page& page, unsigned fromTop)
{
    return page.isUpsideDown ? height - 1 - fromTop : fromTop;
}

colour expected_colour(const tiff_page& page, unsigned x, unsigned fromTop)
{
    const auto sample = [&](unsigned s) { return sample_of(page, x, stored_row(page, fromTop), s); };
    const auto level = [&](unsigned s) { return static_cast<int>(std::floor(sample(s) * 255.0 / top_of(page) + 0.5)); };
    const auto left = [&](unsigned ink) { return (255 - level(ink)) * (255 - level(3)) / 255; }; // darkened by black
    const int first = level(0), index = static_cast<int>(sample(0));
    if (page.levels == grey) return {first, first, first};
    if (page.levels == whiteFirst) return {255 - first, 255 - first, 255 - first};
    if (page.levels == palette) return {index, 255 - index, index / 2};
    if (page.levels == inks) return {left(0), left(1), left(2)}; // divided without rounding
    return {first, level(1), level(2)};
}

base::read_result<recording> read(const std::string& bytes) { return instrument_fixture::read(read_tiff, bytes); }

const tiff_page pictures[] = {
    {"grey-8"},
    {"grey-8-tiled-Motorola"},
    {"grey-4-white-first", 4, 1, whiteFirst},
    {"grey-1-fax", 1, 1, whiteFirst},
    {"grey-and-alpha", 8, 2, grey, natural, false, true},
    {"grey-upside-down", 8, 1, grey, natural, true},
    {"palette-8", 8, 1, palette},
    {"palette-4", 4, 1, palette},
    {"colours-tiled-BigTIFF", 8, 3, colours},
    {"colours-in-planes", 8, 3, colours},
    {"colours-in-tiled-planes", 8, 3, colours},
    {"colours-and-alpha", 8, 4, colours, natural, true, true},
    {"colours-16-Motorola", 16, 3, colours},
    {"inks", 8, 4, inks},
};

TEST(Tiff, GreyAndColoursBecomePictures)
{
    for (const tiff_page& page : pictures) {
        SCOPED_TRACE(page.file);
        const auto shown = only_picture(read(seed("tiff/" + page.file + ".tif").content));
        expect_pixels(shown, width, height, [&](int x, int y) {
            return expected_colour(page, static_cast<unsigned>(x), static_cast<unsigned>(y));
        });
    }
}

const tiff_page heights[] = {
    {"signed-8", 8, 1, grey, whole},
    {"unsigned-16-Motorola", 16},
    {"unsigned-16-white-first", 16, 1, whiteFirst},
    {"unsigned-12", 12},
    {"signed-16", 16, 1, grey, whole},
    {"unsigned-16-upside-down", 16, 1, grey, natural, true},
    {"unsigned-32", 32},
    {"signed-32", 32, 1, grey, whole},
    {"double", 64, 1, grey, floating},
    {"float-channels", 32, 3, colours, floating},
    {"float-planes", 32, 3, colours, floating},
    {"float-and-alpha", 32, 2, grey, floating, false, true},
};

TEST(Tiff, ValuesBecomeHeightsWithTheBottomRowFirst)
{
    for (const tiff_page& page : heights) {
        SCOPED_TRACE(page.file);
        const auto result = read(seed("tiff/" + page.file + ".tif").content);
        ASSERT_TRUE(result) << result.error().reason;
        const auto planes = planes_of(*result);
        ASSERT_EQ(planes.size(), page.samples - (page.hasAlpha ? 1 : 0));
        const bool isExact = page.numbers != floating && page.bits <= 16;
        for (unsigned s = 0; s < planes.size(); ++s) {
            ASSERT_EQ(planes[s].width(), width);
            ASSERT_EQ(planes[s].height(), height);
            EXPECT_EQ(isExact ? planes[s].step() : 1.0, 1.0);
            for (unsigned y = 0; y < height; ++y)
                for (unsigned x = 0; x < width; ++x) {
                    const double value = sample_of(page, x, stored_row(page, height - 1 - y), s);
                    ASSERT_NEAR(planes[s].at(x, y), page.levels == whiteFirst ? top_of(page) - value : value,
                                isExact ? 0.0 : planes[s].step() * 0.500001)
                        << x << ", " << y;
                }
        }
    }
}

const std::string body = "\1\2\3\4\5\6\7\x8"; // stands at byte 8

/// A page of 2 by 2 grey samples, the first ones of `body`, with these tags instead or besides.
tiff_builder::directory page_with(const tiff_builder::directory& tags, unsigned bits = 8)
{
    std::map<unsigned, tag> all;
    for (const tag& each : {tiff_builder::whole(256, 2), tiff_builder::whole(257, 2), tiff_builder::whole(258, bits),
                            tiff_builder::whole(262, 1), tiff_builder::whole(273, 8), tiff_builder::whole(278, 2),
                            tiff_builder::whole(279, bits / 2)})
        all[each.number] = each;
    for (const tag& each : tags) all[each.number] = each;
    tiff_builder::directory page;
    for (const auto& [number, each] : all) page.push_back(each);
    return page;
}

TEST(Tiff, AllPagesComeInTheirOrderWithTheirTexts)
{
    const tag later = words(270, "a later one");
    const auto result = read(file_of(body, {page_with({words(270, "the first \xff")}), page_with({later}, 16),
                                            page_with({later, words(285, "Topography")}, 16), page_with({later}, 16)}));
    ASSERT_TRUE(result) << result.error().reason;
    ASSERT_EQ(result->items.size(), 4u);
    EXPECT_EQ(result->strings.at("ImageDescription"), "the first \xef\xbf\xbd"); // no UTF-8
    EXPECT_EQ(image_at(result, 1).strings.at("ImageDescription"), "a later one");
    const char* const names[] = {"Image", "Topography", "Image_2"};
    for (std::size_t i = 0; i < 3; ++i) EXPECT_STREQ(image_at(result, i + 1).stream.get_name(), names[i]);
}

TEST(Tiff, ResolutionBecomesAxesAndHeaderFields)
{
    constexpr unsigned none = 1, inch = 2, centimetre = 3;
    const struct {
        unsigned unit, x, y;
        std::string axes; ///< of a height image
        int headerX;
    } rows[] = {
        {inch, 254, 508, "(2: 0 + 100 \u00B5m; 2: 0 + 50 \u00B5m)", 10000},
        {centimetre, 5'000'000, 1, "(2: 0 + 2 nm; 2: 0 + 10 mm)", 500000000},
        {centimetre, 100'000'000, 100'000'000, "(2: 0 + 0.1 nm; 2: 0 + 0.1 nm)", 0}, // too fine for the header
        {none, 72, 72, "(2: 0 + 1 px; 2: 0 + 1 px)", 0},
        {inch, 0, 0, "(2: 0 + 1 px; 2: 0 + 1 px)", 0},
    };
    for (const auto& row : rows) {
        const tiff_builder::directory tags = {fraction(282, row.x, 1), fraction(283, row.y, 1),
                                              tiff_builder::whole(296, row.unit)};
        const auto result = read(file_of(body, {page_with(tags, 16), page_with(tags)}));
        ASSERT_TRUE(result) << result.error().reason;
        EXPECT_THAT(told(image_at(result, 0)), HasSubstr(row.axes));
        EXPECT_EQ(std::get<picture>(result->items[1]).header.biXPelsPerMeter, row.headerX);
    }
}

TEST(Tiff, AResolutionThatLiesBeyondTheFileIsTold)
{
    std::string bytes = file_of(body, {page_with({fraction(282, 254, 1), fraction(283, 254, 1)}, 16)});
    const std::string entry("\x1A\1\5\0\1\0\0\0", 8); // XResolution: one fraction
    bytes.replace(bytes.find(entry) + entry.size(), 4, "\x7F\x7F\x7F\x7F");
    const auto result = read(bytes);
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_THAT(told(image_at(result, 0)), HasSubstr("(2: 0 + 1 px; 2: 0 + 100 \u00B5m)"));
    EXPECT_THAT(result->warnings, ElementsAre(HasSubstr("XResolution")));
}

TEST(Tiff, CutFilesAreRefusedOrSayWhatIsMissing)
{
    expect_cuts_refused(read_tiff, file_of(body, {page_with({}), page_with({}, 16)}));
    for (const char* file : {"grey-8", "grey-8-tiled-Motorola", "colours-tiled-BigTIFF", "float-channels"})
        expect_cuts_refused(read_tiff, seed("tiff/" + std::string(file) + ".tif").content);
}

TEST(Tiff, WhatLiesAboutItsSizeIsRefusedBeforeMemoryIsAskedFor)
{
    const auto with = [](std::initializer_list<std::pair<unsigned, unsigned>> values) {
        tiff_builder::directory tags;
        for (const auto& [number, value] : values) tags.push_back(tiff_builder::whole(number, value));
        return file_of(body, {page_with(tags)});
    };
    constexpr unsigned columns = 256, rows = 257, bits = 258, compression = 259, offset = 273, stripRows = 278;
    const std::pair<std::string, const char*> files[] = {
        {with({{offset, 5000}}), "cut short|Read error"},
        {with({{columns, 0}}), "size is zero"},
        {with({{columns, 60000}, {rows, 60000}, {stripRows, 60000}}), "too large"},
        {with({{columns, 60000}, {rows, 60000}, {stripRows, 60000}, {compression, 5}}), "too large"},
        {with({{columns, 2'000'000'000},
               {rows, 2'000'000'000},
               {bits, 64},
               {compression, 8},
               {stripRows, 2'000'000'000}}),
         "overflow"},
        {with({{compression, 8}, {322, 1u << 20}, {323, 1u << 20}, {324, 8}, {325, 4}}), "too large"}, // tiles
        {with({{bits, 99}}), "BitsPerSample"},
        {with({{compression, 4711}}), "Compression"},
    };
    for (const auto& [file, reason] : files) EXPECT_THAT(told(read(file)), testing::ContainsRegex(reason));
}

TEST(Tiff, PagesInFrontOfADamagedOneAreShown)
{
    const auto result = read(file_of(body, {page_with({})}, 8 + body.size())); // the list of pages runs in a circle
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(result->items.size(), 1u);
    EXPECT_THAT(result->warnings, ElementsAre(HasSubstr("page 2")));
}

} // namespace
