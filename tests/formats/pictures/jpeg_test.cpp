#include "formats/pictures/jpeg.h"

#include "formats/instrument_fixture.h"
#include "formats/pictures/picture_fixture.h"

#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;
using namespace test_support;

enum colour_kind { grey, colours, inks, plainInks };

/// A file of data/jpeg, as the library's encoder wrote it: an independent source. Its samples are `level`.
struct jpeg_page {
    std::string file;
    colour_kind colour;
    int pixelsPerMetre = 0;
};

constexpr int width = 20, height = 12;

/// Smooth, so that compression keeps it, and different in every corner and channel.
int level(int x, int y, int channel)
{
    return channel == 0 ? 40 + 4 * x : channel == 1 ? 30 + 5 * y : 220 - 2 * x - 3 * y;
}

colour expected(const jpeg_page& file, int x, int y)
{
    const auto shown = [&](int channel) {
        const int value = level(x, y, file.colour == grey ? 0 : channel);
        // Black ink is 200 throughout; files of Adobe's hold 255 less the ink.
        return file.colour == inks ? value * 200 / 255 : file.colour == plainInks ? (255 - value) * 55 / 255 : value;
    };
    return {shown(0), shown(1), shown(2)};
}

TEST(Jpeg, ShowsEveryKindOfColoursWhenItIsWhole)
{
    const jpeg_page files[] = {
        {"Grey", grey, 11811}, // 300 an inch
        {"Colour", colours, 30000}, {"Progressive", colours}, {"Inks", inks}, {"InksWithoutMarker", plainInks},
        {"CodedInks", inks}};
    for (const jpeg_page& file : files) {
        SCOPED_TRACE(file.file);
        const std::string bytes = seed("jpeg/" + file.file + ".jpg").content;
        const auto shown = only_picture(read(formats::read_jpeg, bytes));
        EXPECT_EQ(shown.header.biBitCount, file.colour == grey ? 8 : 24);
        expect_pixels(shown, width, height, [&](int x, int y) { return expected(file, x, y); }, 8);
        EXPECT_EQ(shown.header.biXPelsPerMeter, file.pixelsPerMetre);
        EXPECT_EQ(shown.header.biYPelsPerMeter, (file.pixelsPerMetre + 1) / 2);
        // Pictures of one scan are whole without the mark of their end.
        expect_cuts_refused(formats::read_jpeg, bytes, file.file == "Progressive" ? 0 : 2);
    }
}

TEST(Jpeg, AHugeSizeIsRefusedBeforeMemoryIsAskedFor)
{
    bytes_builder file = seed("jpeg/Grey.jpg");
    const std::size_t frame = file.content.find("\xff\xc0"); // its height and width stand behind five bytes
    file.put(frame + 5, 61680u * 65537u);
    expect_refused(formats::read_jpeg, {{file.content, "61680 x 61680"}});
}

} // namespace
