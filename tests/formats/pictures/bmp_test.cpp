#include "formats/pictures/bmp.h"

#include "formats/instrument_fixture.h"
#include "formats/pictures/picture_fixture.h"
#include "formats/shared/bytes.h"

#include <gtest/gtest.h>

namespace {

using namespace formats;
using namespace instrument_fixture;
using namespace test_support;

constexpr colour red{255, 0, 0}, green{0, 255, 0}, blue{0, 0, 255}, white{255, 255, 255}, black{0, 0, 0},
    orange{255, 128, 0};

/// The parts of a file; what stays empty is left out.
struct bmp_parts {
    unsigned headerBytes = 40;
    int width = 3, height = 2;
    unsigned bits = 24, compression = 0, coloursUsed = 0;
    std::vector<unsigned> masks{};
    std::vector<colour> palette{};
    std::string pixels{};
};

std::string bytes_of(const std::vector<unsigned>& values, unsigned each = 1)
{
    std::string bytes;
    for (const unsigned value : values) bytes += little_endian(value, each);
    return bytes;
}

std::string file_of(const bmp_parts& parts)
{
    const unsigned width = static_cast<unsigned>(parts.width), height = static_cast<unsigned>(parts.height);
    std::string head = le32(parts.headerBytes); // behind the file header
    if (parts.headerBytes == 12)
        head += bytes_of({width, height, 1, parts.bits}, 2);
    else
        head += le32(width) + le32(height) + le16(1) + le16(parts.bits) +
                bytes_of({parts.compression, 0, 3780, 1890, parts.coloursUsed, 0}, 4);
    head += bytes_of(parts.masks, 4);
    head.resize(std::max<std::size_t>(head.size(), parts.headerBytes));
    for (const colour& each : parts.palette) {
        head += bytes_of({unsigned(each.blue), unsigned(each.green), unsigned(each.red)});
        if (parts.headerBytes != 12) head += '\x4D'; // reserved, not always 0
    }
    return "BM" + bytes_of({0, 0, static_cast<unsigned>(14 + head.size())}, 4) + head + parts.pixels;
}

struct bmp_case {
    const char* name;
    bmp_parts parts;
    std::vector<colour> expected; ///< from the top left
    unsigned bits;                ///< of the picture that is read
};

const std::vector<colour> flag = {red, green, blue, white, black, orange};
const std::vector<colour> colours = {black, red, green, blue, white, orange};

const std::vector<unsigned> lower24 = {255, 255, 255, 0, 0, 0, 0, 128, 255, 9, 9, 9}, // white, black, orange
    upper24 = {0, 0, 255, 0, 255, 0, 255, 0, 0, 9, 9, 9};
const std::string upward24 = bytes_of(lower24) + bytes_of(upper24), downward24 = bytes_of(upper24) + bytes_of(lower24);
const std::string upward32 = bytes_of({0x11ffffff, 0x22000000, 0x33ff8000, 0x44ff0000, 0x5500ff00, 0x660000ff}, 4);
const std::string redLowest = bytes_of({0xffffff, 0, 0x0080ff, 0x0000ff, 0x00ff00, 0xff0000}, 4);
// Ten bits a channel: 514 of 1023 is 128.1 of 255.
const std::string tenBits = bytes_of({0x3fffffff, 0, 1023u << 20 | 514u << 10, 1023u << 20, 1023u << 10, 1023}, 4);
const std::string upward565 = bytes_of({0xffff, 0, 0xf800 | 32 << 5, 0, 0xf800, 0x07e0, 0x001f, 0}, 2);
const std::string upward555 = bytes_of({0x7fff, 0, 0x7c00 | 16 << 5, 0, 0x7c00, 0x03e0, 0x001f, 0}, 2);
const std::string upward8 = bytes_of({4, 0, 5, 9, 1, 2, 3, 9});
const std::string upward4 = bytes_of({0x40, 0x50, 9, 9, 0x12, 0x30, 9, 9});
// A run, a literal of three with its filling byte, and the marks of row and picture.
const std::string rle8 = bytes_of({1, 4, 1, 0, 1, 5, 0, 0, 0, 3, 1, 2, 3, 0, 0, 1});
const std::string rle4 = bytes_of({3, 0x40, 0, 0, 0, 3, 0x12, 0x30, 0, 1}); // 4, 0, 4 in turn
// Skips two to the right and one up from the first pixel; what is not painted is entry 0.
const std::string rleSkip = bytes_of({1, 4, 0, 2, 1, 1, 1, 3, 0, 1});

const bmp_case cases[] = {
    {"Plain24", {.pixels = upward24}, flag, 24},
    {"TopDown", {.height = -2, .pixels = downward24}, flag, 24},
    {"Core", {.headerBytes = 12, .pixels = upward24}, flag, 24},
    {"Version5", {.headerBytes = 124, .pixels = upward24}, flag, 24},
    {"Plain32", {.bits = 32, .pixels = upward32}, flag, 32},
    {"Fields32", {.bits = 32, .compression = 3, .masks = {0xff, 0xff00, 0xff0000}, .pixels = redLowest}, flag, 24},
    {"Fields10Bits",
     {.headerBytes = 56, .bits = 32, .compression = 3, .masks = {1023u << 20, 1023u << 10, 1023}, .pixels = tenBits},
     flag,
     24},
    {"Fields565",
     {.bits = 16, .compression = 3, .masks = {0xf800, 0x07e0, 0x1f}, .pixels = upward565},
     {red, green, blue, white, black, {255, 130, 0}}, // 32 of 63 is 129.5 of 255
     24},
    {"Plain555",
     {.bits = 16, .pixels = upward555},
     {{248, 0, 0}, {0, 248, 0}, {0, 0, 248}, {248, 248, 248}, black, {248, 128, 0}},
     16},
    {"Palette8", {.bits = 8, .coloursUsed = 6, .palette = colours, .pixels = upward8}, flag, 8},
    {"CorePalette8", {.headerBytes = 12, .bits = 8, .palette = colours, .pixels = upward8}, flag, 8},
    {"Palette4", {.bits = 4, .coloursUsed = 6, .palette = colours, .pixels = upward4}, flag, 4},
    {"Palette1",
     {.bits = 1, .palette = {blue, white}, .pixels = bytes_of({0x80, 9, 9, 9, 0x60, 9, 9, 9})},
     {blue, white, white, white, blue, blue},
     1},
    {"TooManyColoursUsed", {.bits = 4, .coloursUsed = 1u << 31, .palette = colours, .pixels = upward4}, flag, 4},
    {"Rle8", {.bits = 8, .compression = 1, .coloursUsed = 6, .palette = colours, .pixels = rle8}, flag, 8},
    {"Rle4",
     {.bits = 4, .compression = 2, .coloursUsed = 6, .palette = colours, .pixels = rle4},
     {red, green, blue, white, black, white},
     4},
    {"Skips",
     {.bits = 8, .compression = 1, .coloursUsed = 6, .palette = colours, .pixels = rleSkip},
     {black, black, blue, white, black, black},
     8},
};

TEST(Bmp, EveryLayoutGivesThePictureTheRightWayUp)
{
    for (const bmp_case& test : cases) {
        SCOPED_TRACE(test.name);
        const auto bytes = file_of(test.parts);
        const auto picture = only_picture(read(read_bmp, bytes));
        EXPECT_EQ(picture.header.biBitCount, test.bits);
        EXPECT_EQ(pixels_of(picture), test.expected);
        EXPECT_EQ(picture.header.biXPelsPerMeter, test.parts.headerBytes == 12 ? 0 : 3780);
        EXPECT_EQ(picture.header.biYPelsPerMeter, test.parts.headerBytes == 12 ? 0 : 1890);
        // Codes may miss their mark of the end once all rows are there.
        const std::size_t spare = test.parts.compression == 1 || test.parts.compression == 2 ? 2 : 0;
        expect_cuts_refused(read_bmp, bytes, spare);
    }
}

TEST(Bmp, WrongHeadersAreRefusedWithTheFieldsName)
{
    const std::string overrun = bytes_of({4, 1, 0, 1}), upAndAway = bytes_of({0, 2, 0, 3, 0, 1}),
                      literal = bytes_of({0, 4, 1, 2, 3, 4, 0, 1});
    const std::pair<std::string, bmp_parts> files[] = {
        {"header size", {.headerBytes = 41, .pixels = upward24}},
        {"width", {.width = 0, .pixels = upward24}},
        {"width", {.width = -3, .pixels = upward24}},
        {"width", {.width = 0x7fffffff, .height = 0x7fffffff, .pixels = upward24}},
        {"pixels cut short", {.width = 20000, .height = 20000, .pixels = upward24}},
        {"height", {.height = INT32_MIN, .pixels = upward24}},
        {"coded bytes", {.width = 20000, .height = 20000, .bits = 8, .compression = 1, .palette = colours}},
        {"bit count", {.bits = 2, .pixels = upward24}},
        {"compression", {.bits = 24, .compression = 1, .pixels = upward24}},
        {"compression", {.bits = 24, .compression = 4, .pixels = upward24}},
        {"mask", {.bits = 32, .compression = 3, .masks = {0xff, 0xf0f, 0xff0000}, .pixels = upward32}},
        {"mask", {.bits = 16, .compression = 3, .masks = {0xff, 0xff00, 0xff0000}, .pixels = upward32}},
        {"mask", {.bits = 32, .compression = 3, .masks = {0, 0, 0}, .pixels = upward32}},
        {"palette", {.bits = 8, .pixels = upward8}},
        {"height", {.height = -2, .bits = 8, .compression = 1, .palette = colours, .pixels = rle8}},
        {"row 0", {.bits = 8, .compression = 1, .palette = colours, .pixels = overrun}},
        {"row 0", {.bits = 8, .compression = 1, .palette = colours, .pixels = upAndAway}},
        {"row 0", {.bits = 8, .compression = 1, .palette = colours, .pixels = literal}},
    };
    for (const auto& [reason, parts] : files) expect_refused(read_bmp, {{file_of(parts), reason}});
}

} // namespace
