#include "surface/views/stored_palette.h"
#include "view/Scale.h"

#include "support/HeadlessHost.h"

#include <gtest/gtest.h>

namespace {

using namespace surface;

TEST(StoredPalette, IsWrittenSizeFirst)
{
    EXPECT_EQ(compose_palette({3, false, 1000.5, -500.25, "nm", {}}), "3,0,1000.5,-500.25,nm");
    EXPECT_EQ(compose_palette({6, true, 0.1, 1e-9, "V", {}}), "6,1,0.1,1e-09,V");
    // little-endian entries; an inverted scale draws them from the last to the first
    EXPECT_EQ(compose_palette({0, false, 1, 2, "nm", {0x010203, 0xFF}}), "0,0,1,2,nm,03020100ff000000");
    EXPECT_EQ(compose_palette({0, true, 1, 2, "nm", {0x010203, 0xFF}}), "0,1,1,2,nm,ff00000003020100");
}

TEST(StoredPalette, ComesBackAsItWas)
{
    color_table colors;
    for (unsigned i = 0; i < 255; ++i) colors.push_back(view::color_of(i, 255 - i, i / 2));
    for (const stored_palette& palette :
         {stored_palette{3, true, 1000.5, -1.0 / 3.0, "~m", {}}, stored_palette{0, false, 1e-12, 0, "nm", colors},
          stored_palette{0, true, 2, 1, "nm", colors}, // reversed, and back
          stored_palette{0, true, 2, 1, "nm", {0x123456}}})
        EXPECT_EQ(parse_palette(compose_palette(palette)), palette) << compose_palette(palette);
}

TEST(StoredPalette, RefusesWhatIsIncomplete)
{
    for (const std::string text :
         {"", "3", "3,0,1000,-500", "3,0,1000,-500,", "x,0,1,2,nm", "3,0,wide,2,nm", "3,0,inf,2,nm", "0,0,1,2,nm",
          "0,0,1,2,nm,", "0,0,1,2,nm,0102030", "0,0,1,2,nm,zz020300"})
        EXPECT_FALSE(parse_palette(text)) << text;
    EXPECT_TRUE(parse_palette("3,0,1,2," + std::string(100, 'u')));
    EXPECT_FALSE(parse_palette("3,0,1,2," + std::string(101, 'u')));
}

TEST(StoredPalette, IsGivenToBothScales)
{
    CHeadlessHost host;
    CWinApp app(host);
    CScale followed, own;
    const stored_palette palette{0, true, 12.5, -3, "V", {1, 2, 3}};
    ASSERT_TRUE(apply_palette(compose_palette(palette), own, &followed));
    for (const CScale* scale : {&own, &followed}) EXPECT_EQ(palette_of(*scale, *CScale::getPalette(0)), palette);
    EXPECT_FALSE(apply_palette("3,0", own, &followed));
    EXPECT_EQ(palette_of(own, *CScale::getPalette(0)), palette) << "a bad text changes nothing";
    ASSERT_TRUE(apply_palette("2,0,1,2,nm", own, nullptr));
    EXPECT_EQ(own.GetPaletteId(), 2);
    EXPECT_EQ(followed.GetPaletteId(), 0);
}

} // namespace
