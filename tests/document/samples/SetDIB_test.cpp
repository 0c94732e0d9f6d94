#include "document/fixtures.h"

#include <cstring>

namespace {

BITMAPINFOHEADER header_of(int width, int height, std::uint16_t bits, std::uint32_t colours = 0)
{
    BITMAPINFOHEADER header;
    header.biWidth = width;
    header.biHeight = height;
    header.biBitCount = bits;
    header.biClrUsed = colours;
    return header;
}

const RGBQUAD colours[] = {{1, 2, 4, 0}, {8, 16, 32, 0}, {100, 100, 100, 0}, {255, 255, 255, 0}}; // blue, green, red

struct bitmap_case {
    const char* name;
    std::uint16_t bits;
    std::vector<std::uint8_t> row; // of three pixels, padded to 4 bytes
    bool hasPalette;
    std::vector<short> samples;
};

TEST_F(DocumentTest, ManyBitmapsTakeNoLongerThanTheyAreMany)
{
    const BITMAPINFOHEADER header = header_of(1, 1, 24);
    constexpr unsigned many = 6000; // cubic: minutes
    const std::uint8_t pixel[4] = {};
    for (unsigned i = 0; i < many; ++i) ASSERT_TRUE(document.SetDIB(&header, pixel, nullptr, -1));
    EXPECT_STREQ(document.getImage(many - 1).get_name(), ("img" + std::to_string(many - 1)).c_str());
    document.getImage(7).set_name("img07");
    ASSERT_TRUE(document.SetDIB(&header, pixel, nullptr, -1));
    EXPECT_STREQ(document.getImage(many).get_name(), "img7") << "the first number that is free";
}

TEST_F(DocumentTest, BitmapsOfEveryDepthBecomeSumsOfChannels)
{
    const bitmap_case cases[] = {
        {"1 bit, high bit first", 1, {0b01000000, 0, 0, 0}, true, {7, 56, 7}},
        {"4 bits, high nibble first", 4, {0x23, 0x10, 0, 0}, true, {300, 765, 56}},
        {"8 bits", 8, {3, 0, 2, 0}, true, {765, 7, 300}},
        {"8 bits without palette", 8, {3, 0, 200, 0}, false, {3, 0, 200}},
        // 5-5-5: 31 in each field is 3 * 31 * 8; red only 1 is 8
        {"16 bits", 16, {0xff, 0x7f, 0x00, 0x04, 0xff, 0xff, 0, 0}, false, {744, 8, 744}},
        {"24 bits", 24, {1, 2, 3, 0, 0, 0, 255, 255, 255, 0, 0, 0}, false, {6, 0, 765}},
        // byte 0 is raised by one and byte 1 left out
        {"32 bits", 32, {0, 0, 0, 0, 10, 99, 20, 30, 255, 255, 255, 255}, false, {1, 61, 766}},
    };
    for (const bitmap_case& each : cases) {
        CStorageDoc target;
        const BITMAPINFOHEADER header = header_of(3, 1, each.bits, each.hasPalette ? 4 : 0);
        // With as many palette entries as the pixels can name; biClrUsed tells fewer.
        std::vector<RGBQUAD> palette(256);
        std::copy(std::begin(colours), std::end(colours), palette.begin());
        ASSERT_TRUE(target.SetDIB(&header, each.row.data(), each.hasPalette ? palette.data() : nullptr, -1))
            << each.name;
        const short* samples = static_cast<const short*>(target.getImageDataS(0, 0));
        EXPECT_EQ(std::vector<short>(samples, samples + 3), each.samples) << each.name;
    }
}

TEST_F(DocumentTest, BitmapsKeepTheirRowsAndComeAsOverlay)
{
    const BITMAPINFOHEADER header = header_of(1, 2, 24);
    const std::uint8_t bits[] = {1, 0, 0, 0, 2, 0, 0, 0};
    ASSERT_TRUE(document.SetDIB(&header, bits, nullptr, -1));
    EXPECT_STREQ(document.getImage(0).get_name(), "img0");
    EXPECT_STREQ(document.getImage(0).get_description(), "Bitmap");
    EXPECT_EQ(document.getDataPoint2S(0, 0, 1, 0), 2);
    EXPECT_STREQ(document.getAxis(0, 0, unsigned(-1)).get_units(), "RGB");
    EXPECT_DOUBLE_EQ(document.getAxis(0, 0, unsigned(-1)).scale, 1.0 / 3.0);
    const BITMAPINFOHEADER* overlay = document.getImageOverlay(0);
    ASSERT_NE(overlay, nullptr);
    EXPECT_EQ(overlay->biSizeImage, 8u);
    EXPECT_EQ(std::memcmp(overlay + 1, bits, 8), 0);

    document.getImage(0).get_dimension(0).length = 2;
    document.getImage(0).get_dimension(1).length = 1;
    document.revalidateImage(0);
    EXPECT_EQ(document.getImageOverlay(0), nullptr) << "other lengths, the same product";
}

TEST_F(DocumentTest, ReplacingABitmapLeavesTheOverlayOnTheLastImage)
{
    const BITMAPINFOHEADER header = header_of(1, 1, 24), larger = header_of(2, 1, 24);
    const std::uint8_t bits[] = {9, 0, 0, 0, 0, 0, 0, 0};
    ASSERT_TRUE(document.SetDIB(&header, bits, nullptr, -1));
    ASSERT_TRUE(document.SetDIB(&header, bits, nullptr, -1));
    EXPECT_STREQ(document.getImage(1).get_name(), "img1") << "ids stay unique";
    ASSERT_TRUE(document.SetDIB(&larger, bits, nullptr, 0));
    EXPECT_EQ(document.getImagesNumber(), 2u);
    EXPECT_EQ(document.getSubImageLength(0), 2u);
    EXPECT_EQ(document.getImageOverlay(0), nullptr);
    EXPECT_EQ(document.getImageOverlay(1)->biWidth, 2);
}

TEST_F(DocumentTest, UnusableBitmapsChangeNothing)
{
    const std::uint8_t bits[16] = {};
    BITMAPINFOHEADER packed = header_of(2, 2, 8);
    packed.biCompression = 1;
    for (const BITMAPINFOHEADER& header : {packed, header_of(2, 2, 7), header_of(0, 2, 24), header_of(2, -2, 24),
                                           header_of(2'000'000'000, 2'000'000'000, 24)})
        EXPECT_FALSE(document.SetDIB(&header, bits, nullptr, -1));
    EXPECT_EQ(document.getImagesNumber(), 0u);
}

TEST_F(DocumentTest, ResolutionsGiveReadableUnits)
{
    struct resolution {
        int pixelsPerMetre;
        double scale;
        const char* units;
    };
    for (const resolution& each :
         {resolution{500, 2.0, "mm"}, resolution{1000, 1.0, "mm"}, resolution{2000, 500, "µm"},
          resolution{1000000, 1.0, "µm"}, resolution{2000000, 500, "nm"}, resolution{0, 1, "px"}}) {
        CStorageDoc target;
        BITMAPINFOHEADER header = header_of(1, 1, 24);
        header.biXPelsPerMeter = each.pixelsPerMetre;
        const std::uint8_t bits[4] = {};
        ASSERT_TRUE(target.SetDIB(&header, bits, nullptr, -1));
        EXPECT_DOUBLE_EQ(target.getAxis(0, 0, 0).scale, each.scale) << each.pixelsPerMetre;
        EXPECT_STREQ(target.getAxis(0, 0, 0).get_units(), each.units) << each.pixelsPerMetre;
    }
}

TEST_F(DocumentTest, IdsOfPicturesAndImagesOfOneFileStayApart)
{
    formats::recording recording;
    formats::picture picture;
    picture.header = header_of(1, 1, 24);
    picture.bits.resize(4);
    recording.items.emplace_back(picture);
    recording.items.emplace_back(formats::recorded_image{heights("img0", {2}), {{"k", "v"}}});
    recording.items.emplace_back(picture);
    ASSERT_TRUE(document.addRecording(recording));
    EXPECT_STREQ(document.getImage(1).get_name(), "img1");
    EXPECT_STREQ(document.getString("k", 1), "v");
    EXPECT_STREQ(document.getImage(2).get_name(), "img2");
}

TEST_F(DocumentTest, ABitmapComesBackFromItsBytesAndOnlyFromAllOfThem)
{
    const BITMAPINFOHEADER header = header_of(3, 2, 8, 4);
    const std::uint8_t bits[8] = {1, 2, 3, 0, 4, 5, 6, 0};
    const RGBQUAD palette[4] = {{1, 2, 3, 0}};
    const document::packed_bitmap packed = document::pack_bitmap(header, bits, palette);
    const auto whole = document::bytes_of(*packed);
    ASSERT_EQ(whole.size(), 40u + 4 * 4 + 2 * 4);
    const document::packed_bitmap back = document::packed_bitmap_of(whole);
    ASSERT_TRUE(back);
    EXPECT_TRUE(std::ranges::equal(document::bytes_of(*back), whole));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(document::packed_bitmap_of(whole.first(length))) << length;
    // Fields of the header: size, width, height, bit count, compression, bytes of the pixels, colours.
    const std::pair<std::size_t, int> flips[] = {{0, 0},  {4, 7},  {4 + 3, 7}, {8, 0},  {8 + 3, 7}, {14, 0},
                                                 {14, 4}, {16, 0}, {20, 0},    {32, 0}, {32 + 3, 7}};
    for (const auto& [byte, bit] : flips) {
        std::vector<std::byte> wrong(whole.begin(), whole.end());
        wrong[byte] ^= static_cast<std::byte>(1 << bit);
        EXPECT_FALSE(document::packed_bitmap_of(wrong)) << byte << ", " << bit;
    }
}

} // namespace
