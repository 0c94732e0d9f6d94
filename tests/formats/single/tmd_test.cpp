#include "formats/instrument_fixture.h"
#include "formats/single/tlk.h"
#include "formats/single/tmd.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace instrument_fixture;

std::string build(float width = 4.0f, unsigned columns = 2, const char* version = "2.0")
{
    bytes_builder out;
    out.text("Binary TrueMap Data File v").text(version).text(29, std::string("\r\n\0", 3));
    out.text(32, "Created by hand\r\n").put(56, std::uint32_t(columns)).put(60, std::uint32_t{2});
    out.put(64, width).put(68, 6.0f).put(72, 10.0f).put(76, -1.0f);
    for (const float height : {1.0f, 2.0f, std::numeric_limits<float>::quiet_NaN(), -1.0f}) out.add(height);
    return out.content;
}

TEST(Tmd, HeightsStandUprightInMicrometres)
{
    const auto result = read(formats::read_tmd, build());
    const auto& image = image_at(result, 0);
    EXPECT_EQ(axis_text(image, 0), "10 2 \u00B5m");
    EXPECT_EQ(axis_text(image, 1), "-1 3 \u00B5m");
    const double expected[] = {-1, -1, 1, 2}; // what was not measured is as low as the lowest
    for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(physical_of(image).at(i), expected[i], 3 / 65535.0) << i;
    EXPECT_EQ(image.strings.at("\\Void points"), "1");
    EXPECT_EQ(image.strings.at("Comment"), "Created by hand");
}

TEST(Tmd, RefusesWhatCannotBe)
{
    expect_refused(formats::read_tmd,
                   {
                       {build(std::numeric_limits<float>::infinity()), "the scale of axis 1 is infinite"},
                       {build(0.0f), "the scale of axis 1 is 0"},
                       {build(-2.0f), "the scale of axis 1 is below 0: the width in the header is -2"},
                       {"something of another program", "Scan 8 files have no public layout"},
                       {build(4, 2, "1.0"), "only version 2.0"},
                       {build(4, 0), "0 or above 65536"},
                       {build(4, 65537), "0 or above 65536"},
                       {build(4, 3), "beyond the end of the file"},
                   });
    expect_cuts_refused(formats::read_tmd, build());
    EXPECT_EQ(type_of("anything", "a.tmd"), FILE_TMD);
}

TEST(Tlk, OnlyWhatIsATextTableOpens)
{
    const std::string binary("\1\2\3\0\4", 5);
    EXPECT_EQ(type_of(binary, "a.tlk"), FILE_TLK);
    for (const std::string& bytes : {binary, std::string("spoken words, 1 2 three"), std::string()}) {
        const auto refused = read(formats::read_tlk, bytes);
        ASSERT_FALSE(refused);
        EXPECT_EQ(refused.error().reason, "TLK files have no public layout and are not supported");
    }
    EXPECT_EQ(raw_of(image_at(read(formats::read_tlk, "1 2 3 4\n5 6 7 8\n"), 0)).size(), 8u);
}

} // namespace
