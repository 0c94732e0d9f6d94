#include "formats/instrument_fixture.h"
#include "formats/single/tlk.h"
#include "formats/single/tmd.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;

/// 2 by 2 heights over 4 by 6 µm; the third, which is the first of the bottom row, was not measured.
const char* const heights = "tmd/heights.tmd";
constexpr std::size_t version = 26, columns = 56, width = 64;

TEST(Tmd, HeightsStandUprightInMicrometres)
{
    const auto result = read(formats::read_tmd, seed(heights).content);
    EXPECT_EQ(told(image_at(result, 0)), "Height [\u00B5m] (2: 10 + 2 \u00B5m; 2: -1 + 3 \u00B5m): -1 -1 1 2");
    expect_image(image_at(result, 0), {.strings = {{"\\Void points", "1"}, {"Comment", "Created by hand"}}});
}

TEST(Tmd, RefusesWhatCannotBe)
{
    const auto with = [](std::size_t at, auto number) { return seed(heights).put(at, number).content; };
    expect_refused(formats::read_tmd,
                   {
                       {with(width, HUGE_VALF), "the scale of axis 1 is infinite"},
                       {with(width, 0.0f), "the scale of axis 1 is 0"},
                       {with(width, -2.0f), "the scale of axis 1 is below 0: the width in the header is -2"},
                       {"something of another program", "Scan 8 files have no public layout"},
                       {with(version, '1'), "only version 2.0"},
                       {with(columns, 0u), "0 or above 65536"},
                       {with(columns, 65537u), "0 or above 65536"},
                       {with(columns, 3u), "beyond the end of the file"},
                   });
    expect_cuts_refused(formats::read_tmd, seed(heights).content);
    EXPECT_EQ(type_of("anything", "a.tmd"), FILE_TMD);
}

TEST(Tlk, OnlyWhatIsATextTableOpens)
{
    const std::string binary("\1\2\3\0\4", 5);
    EXPECT_EQ(type_of(binary, "a.tlk"), FILE_TLK);
    for (const std::string& bytes : {binary, std::string("spoken words, 1 2 three"), std::string()})
        expect_refused(formats::read_tlk, {{bytes, "TLK files have no public layout and are not supported"}});
    EXPECT_EQ(told(read(formats::read_tlk, "1 2 3 4\n5 6 7 8\n")), "Z (4; 2): 5 6 7 8 1 2 3 4");
}

} // namespace
