#include "formats/pictures/bmp.h"

#include "formats/pictures/picture_fixture.h"

#include <gtest/gtest.h>

namespace {

using namespace test_support;

constexpr colour red{255, 0, 0}, green{0, 255, 0}, blue{0, 0, 255}, white{255, 255, 255}, black{0, 0, 0},
    orange{255, 128, 0};

/// The parts of a file; what stays empty is left out.
struct bmp_parts {
    unsigned headerBytes = 40;
    int width = 3, height = 2;
    unsigned bits = 24, compression = 0, coloursUsed = 0;
    std::vector<std::uint32_t> masks{};
    std::vector<colour> palette{};
    byte_writer pixels{};
};

std::vector<std::byte> file_of(const bmp_parts& parts)
{
    byte_writer head; // behind the file header
    head.u32(parts.headerBytes);
    if (parts.headerBytes == 12) {
        head.u16(static_cast<unsigned>(parts.width)).u16(static_cast<unsigned>(parts.height)).u16(1).u16(parts.bits);
    } else {
        head.u32(static_cast<std::uint32_t>(parts.width)).u32(static_cast<std::uint32_t>(parts.height));
        head.u16(1).u16(parts.bits).u32(parts.compression).u32(0).u32(3780).u32(1890).u32(parts.coloursUsed).u32(0);
    }
    for (const std::uint32_t mask : parts.masks) head.u32(mask);
    while (head.bytes.size() < parts.headerBytes) head.u8(0);
    for (const colour& entry : parts.palette) {
        head.add({unsigned(entry.blue), unsigned(entry.green), unsigned(entry.red)});
        if (parts.headerBytes != 12) head.u8(77); // reserved, not always 0
    }
    byte_writer file;
    file.add({'B', 'M'}).u32(0).u32(0).u32(static_cast<std::uint32_t>(14 + head.bytes.size()));
    return file.add(head.bytes).add(parts.pixels.bytes).bytes;
}

struct bmp_case {
    const char* name;
    bmp_parts parts;
    std::vector<colour> expected; ///< from the top left
    unsigned bits;                ///< of the picture that is read
};

const std::vector<colour> flag = {red, green, blue, white, black, orange};
const std::vector<colour> colours = {black, red, green, blue, white, orange};

const byte_writer upward24 =
    byte_writer().add({255, 255, 255, 0, 0,   0, 0,   128, 255, 9, 9, 9, // white, black, orange
                       0,   0,   255, 0, 255, 0, 255, 0,   0,   9, 9, 9});
const byte_writer downward24 = byte_writer().add({0,   0,   255, 0, 255, 0, 255, 0,   0,   9, 9, 9, //
                                                  255, 255, 255, 0, 0,   0, 0,   128, 255, 9, 9, 9});
const byte_writer upward32 = byte_writer()
                                 .u32(0x11ffffff)
                                 .u32(0x22000000)
                                 .u32(0x33ff8000) //
                                 .u32(0x44ff0000)
                                 .u32(0x5500ff00)
                                 .u32(0x660000ff);
const byte_writer redLowest =
    byte_writer().u32(0xffffff).u32(0).u32(0x0080ff).u32(0x0000ff).u32(0x00ff00).u32(0xff0000);
// Ten bits a channel: 514 of 1023 is 128.1 of 255.
const byte_writer tenBits =
    byte_writer().u32(0x3fffffff).u32(0).u32(1023u << 20 | 514u << 10).u32(1023u << 20).u32(1023u << 10).u32(1023);
const byte_writer upward565 =
    byte_writer().u16(0xffff).u16(0).u16(0xf800 | 32 << 5).u16(0).u16(0xf800).u16(0x07e0).u16(0x001f).u16(0);
const byte_writer upward555 =
    byte_writer().u16(0x7fff).u16(0).u16(0x7c00 | 16 << 5).u16(0).u16(0x7c00).u16(0x03e0).u16(0x001f).u16(0);
const byte_writer upward8 = byte_writer().add({4, 0, 5, 9, 1, 2, 3, 9});
const byte_writer upward4 = byte_writer().add({0x40, 0x50, 9, 9, 0x12, 0x30, 9, 9});
// A run, a literal of three with its filling byte, and the marks of row and picture.
const byte_writer rle8 = byte_writer().add({1, 4, 1, 0, 1, 5, 0, 0, 0, 3, 1, 2, 3, 0, 0, 1});
const byte_writer rle4 = byte_writer().add({3, 0x40, 0, 0, 0, 3, 0x12, 0x30, 0, 1}); // 4, 0, 4 in turn
// Skips two to the right and one up from the first pixel; what is not painted is entry 0.
const byte_writer rleSkip = byte_writer().add({1, 4, 0, 2, 1, 1, 1, 3, 0, 1});

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
     {.bits = 1, .palette = {blue, white}, .pixels = byte_writer().add({0x80, 9, 9, 9, 0x60, 9, 9, 9})},
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
        EXPECT_TRUE(formats::sniff_bmp(bytes));
        const auto picture = only_picture(read_bytes(formats::read_bmp, bytes));
        EXPECT_EQ(picture.header.biBitCount, test.bits);
        EXPECT_EQ(pixels_of(picture), test.expected);
        EXPECT_EQ(picture.header.biXPelsPerMeter, test.parts.headerBytes == 12 ? 0 : 3780);
        EXPECT_EQ(picture.header.biYPelsPerMeter, test.parts.headerBytes == 12 ? 0 : 1890);
    }
}

TEST(Bmp, CutFilesAreRefused)
{
    for (const bmp_case& test : cases) {
        SCOPED_TRACE(test.name);
        const auto bytes = file_of(test.parts);
        // Codes may miss their mark of the end once all rows are there.
        const std::size_t spare = test.parts.compression == 1 || test.parts.compression == 2 ? 2 : 0;
        expect_cuts_refused(formats::read_bmp, bytes, bytes.size() - spare);
    }
}

struct bad_bmp {
    const char* reason;
    bmp_parts parts;
};

TEST(Bmp, WrongHeadersAreRefusedWithTheFieldsName)
{
    const byte_writer overrun = byte_writer().add({4, 1, 0, 1}), upAndAway = byte_writer().add({0, 2, 0, 3, 0, 1}),
                      literal = byte_writer().add({0, 4, 1, 2, 3, 4, 0, 1});
    const bad_bmp files[] = {
        {"header size", {.headerBytes = 41, .pixels = upward24}},
        {"width", {.width = 0, .pixels = upward24}},
        {"width", {.width = -3, .pixels = upward24}},
        {"height", {.height = 0, .pixels = upward24}},
        {"width", {.width = 0x7fffffff, .height = 0x7fffffff, .pixels = upward24}},
        {"pixels cut short", {.width = 20000, .height = 20000, .pixels = upward24}},
        {"height", {.height = INT32_MIN, .pixels = upward24}},
        {"coded bytes", {.width = 20000, .height = 20000, .bits = 8, .compression = 1, .palette = colours}},
        {"bit count", {.bits = 2, .pixels = upward24}},
        {"compression", {.bits = 24, .compression = 1, .pixels = upward24}},
        {"compression", {.bits = 24, .compression = 4, .pixels = upward24}},
        {"compression", {.headerBytes = 64, .bits = 24, .compression = 4, .pixels = upward24}},
        {"mask", {.bits = 32, .compression = 3, .masks = {0xff, 0xf0f, 0xff0000}, .pixels = upward32}},
        {"mask", {.bits = 16, .compression = 3, .masks = {0xff, 0xff00, 0xff0000}, .pixels = upward32}},
        {"mask", {.bits = 32, .compression = 3, .masks = {0, 0, 0}, .pixels = upward32}},
        {"palette", {.bits = 8, .pixels = upward8}},
        {"height", {.height = -2, .bits = 8, .compression = 1, .palette = colours, .pixels = rle8}},
        {"row 0", {.bits = 8, .compression = 1, .palette = colours, .pixels = overrun}},
        {"row 0", {.bits = 8, .compression = 1, .palette = colours, .pixels = upAndAway}},
        {"row 0", {.bits = 8, .compression = 1, .palette = colours, .pixels = literal}},
    };
    for (const bad_bmp& file : files) {
        const auto result = read_bytes(formats::read_bmp, file_of(file.parts));
        ASSERT_FALSE(result) << file.reason;
        EXPECT_NE(result.error().reason.find(file.reason), std::string::npos) << result.error().reason;
    }
}

} // namespace
