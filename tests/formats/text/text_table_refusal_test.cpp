#include "formats/instrument_fixture.h"
#include "text_table_fixture.h"

#include <gtest/gtest.h>
#include <ostream>

namespace {

using namespace formats;
using namespace instrument_fixture;
using namespace text_table_fixture;

struct bad_table {
    const char* name;
    std::string text;
    const char* reason;
};

void PrintTo(const bad_table& each, std::ostream* out) { *out << each.name; }

class TextTableRefuses : public testing::TestWithParam<bad_table> {};

TEST_P(TextTableRefuses, WithTheReason) { EXPECT_EQ(reason(GetParam().text), GetParam().reason); }

INSTANTIATE_TEST_SUITE_P(
    Malformed, TextTableRefuses,
    testing::Values(
        bad_table{"Empty", "", "the text holds no lines of numbers"},
        bad_table{"Prose", "This is nonsense.\n", "the text holds no lines of numbers"},
        bad_table{"Rules", "-\n***\n", "the text holds no lines of numbers"},
        bad_table{"Nul", std::string("1 2 3\0 4\n", 9), "not a text: it holds NUL bytes"},
        bad_table{"Control", "1 2 3\x02 4\n", "not a text: it holds control characters"},
        bad_table{"Ragged", "1 2 3 4\n1 2 3\n1 2 3 4\n", "line 2 has 3 values where line 1 has 4"},
        bad_table{"TooLong", "1 2 3 4\n1 2 3 4 5\n", "line 2 has 5 values where line 1 has 4"},
        bad_table{"NoNumber", "1 2 3 4\n1 2 x3 4\n", "line 2: \"x3\" is no number"},
        bad_table{"Single", "42\n", "the text holds a single number"},
        bad_table{"NotOnAGrid", "0 0 1\n1 0 2\n0 1 3\n1 1.2 4\n0 2 4\n",
                  "three columns that are neither points on a regular grid nor curves over a rising or falling x"},
        bad_table{"NamedPointsNotOnAGrid", "x y z\n0 0 1\n1 0 2\n0 1 3\n",
                  "the points x, y do not fill a regular grid"},
        bad_table{"PointTwice",
                  "WSxM file copyright UAM\nWSxM ASCII XYZ file\nX[nm] Y[nm] Z[nm]\n0 0 1\n1 0 2\n0 1 3\n0 1 4\n",
                  "the points x, y do not fill a regular grid"},
        bad_table{"FewerThanStated", "h=3 w=2\npixel size=1 m\n1 2\n3 4\n",
                  "the header states 2 x 3 values, but 4 follow"},
        bad_table{"HugeStatement", "h=4294967297 w=4294967296\npixel size=1 m\n1 2\n3 4\n",
                  "the header states 4294967296 x 4294967297 values, but 4 follow"},
        bad_table{"FewerPoints", "um um\n3\n0.0, 1.0\n1.0, 2.0\n", "cut short: 2 of 3 points"},
        bad_table{"OtherExport", "WSxM file copyright UAM\nIV curve file\n1 2 3 4\n",
                  "a text export that is not a table: WSxM file copyright UAM"},
        bad_table{"FewerColumns", wyko(2, 3) + "OPD\n1 2\n3 4\n", "OPD: the header states 2 x 3 values, but 4 follow"},
        bad_table{"MovedColumns", wyko(2, 2) + "OPD\n1 2 3\n4\n", "OPD: line 5 has 3 values where the header states 2"},
        bad_table{"MoreColumns", wyko(2, 2) + "OPD\n1 2\n3 4\n5 6\n", "more lines of numbers than X Size states"},
        bad_table{"ArraysWithoutSize", wyko(2, 0) + "OPD\n1 2\n", "X Size or Y Size is missing or 0"},
        bad_table{"MovedNumber", spip(4, 2) + "1 2 3\n4 5 6 7 8\n", "line 6 has 5 values where line 5 has 3"},
        bad_table{"MovedNumberBack", spip(4, 2) + "1 2 3 4 5\n6 7 8\n", "line 6 has 3 values where line 5 has 5"},
        bad_table{"RowsBrokenUnlike", spip(4, 3) + "1 2 3\n4\n5 6\n7 8\n9 10 11\n12\n",
                  "line 6 has 1 value where line 5 has 3"},
        bad_table{"UnevenGroups", "1,23.5\t2,345.6\n3.5\t4.5\n", "line 1: \"1,23.5\" is no number"},
        bad_table{"GroupsOfPoints", "1.234,5;2.345,6;3.456,7\n1.234,5;2.345,6;3.456,7\n",
                  "line 1: \"1.234,5\" is no number"},
        bad_table{"CommasWithinTabs", "1.5,2.5\t3.5\n4.5,5.5\t6.5\n", "line 1: \"1.5,2.5\" is no number"},
        bad_table{"DamagedFirstRow", "1.0\tx2.5\t3.0\n4\t5\t6\n7\t8\t9\n",
                  "the line before the numbers: \"x2.5\" is no number"},
        bad_table{"FirstRowWithAWord", "1.0 abc 3.0 4\n0.5 1.5 2.5 3.5\n1.5 2.5 3.5 4.5\n",
                  "the line before the numbers: \"abc\" is no number"},
        bad_table{"BlanksThatPartOtherwise", "1 000,5;2\n1 00O,5;3\n", "line 2: \"1 00O,5\" is no number"},
        bad_table{"FirstRowThatBeginsDamaged", "l.0 2.5\n2.0 3.5\n3.0 4.5\n",
                  "the line before the numbers: \"l.0\" is no number"},
        bad_table{"RowThatBeginsDamaged", "1 2 3 4\nx5 6 7 8\n1 2 3 4\n", "line 2: \"x5\" is no number"},
        bad_table{"DamagedFirstRowBehindAKnownHeader", channelExport + "1.5 x2.5 3.5\n4.5 5.5 6.5\n7.5 8.5 9.5\n",
                  "the line before the numbers: \"x2.5\" is no number"},
        bad_table{"NoX", "NaN 1\nNaN 2\n", "a curve needs at least two points with x"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(TextTableRefuses, StrayMarksAmongDecimalCommas)
{
    for (const char* separator : {"\t", ";", " "})
        for (const char* damage : {"3,5,", ", 5", "-,-", "3.5"}) {
            std::string text;
            for (int i = 1; i <= 40; ++i)
                text += std::to_string(i) + ",25" + separator + (i == 20 ? damage : "1,5") + separator + "2,75\n";
            const std::string told = reason(text);
            EXPECT_TRUE(told.starts_with("line 20: ") && told.ends_with(" is no number")) << damage << told;
        }
}

TEST(TextTableRefuses, LinesAndSidesBeyondTheLimits)
{
    std::string arrays = wyko(2, 1);
    for (int i = 0; i <= 256; ++i) arrays += "OPD\n1 2\n";
    EXPECT_EQ(reason(arrays), "more than 256 arrays");
    std::string line;
    for (int i = 0; i <= 100'000; ++i) line += "1 ";
    EXPECT_EQ(reason(line), "line 1 has more than 100000 values");
    line.resize(2 * 70'000);
    EXPECT_EQ(reason(line), "an image of 70000 x 1 points is too large");
}

struct sniff_case {
    const char* name;
    std::string text;
    bool certain, possible;
};

TEST(TextTable, IsRecognisedByItsFirstLines)
{
    const std::string wsxm = "WSxM file copyright UAM\n";
    const sniff_case cases[] = {
        {"channel export", channelExport + "1 2\n", true, true},
        {"channel export, UTF-16", utf16("# Channel: Z\n# Width: 1 um\n# Height: 1 um\n1 2\n", false), true, true},
        {"WSxM matrix", wsxm + "WSxM ASCII Matrix file\nX Amplitude: 1 um\n", true, true},
        {"WSxM points", wsxm + "WSxM ASCII XYZ file\nX[nm] Y[nm] Z[nm]\n1", true, true},
        {"WSxM image", wsxm + "SxM Image file\nImage header size: 1\n", false, false},
        {"SPIP", "# File Format = ASCII\n# x-pixels = 256\n", true, true},
        {"interferometer", "h=305 w=75\npixel size=3.7e-7 m\n", true, true},
        {"Nanonis", "Experiment\tspectroscopy\t\n[DATA]\nBias (V)\tCurrent (A)\n1 2\n", true, true},
        {"other writer", "WSxM file copyright UAM\nIV curve file\n", false, false},
        {"plain numbers", "1 2 3\n4 5 6\n", false, true},
        {"profiler", "um um\n3\n", false, true},
        {"three notes", "# Name: a\n# Width: wide\n# Height: 2 m\n", false, true},
        {"prose", "no digits here\n", false, false},
        {"NUL bytes", std::string("1 2\0 3", 6), false, false},
        {"control characters", "\x01\x02 12", false, false},
        {"nothing", "", false, false},
    };
    for (const sniff_case& each : cases) {
        EXPECT_EQ(sniff_text_table(bytes_of(each.text)), each.certain) << each.name;
        EXPECT_EQ(possible_text_table(bytes_of(each.text)), each.possible) << each.name;
    }
}

TEST(TextTable, CutAnywhereGivesAPartOrAReason)
{
    const std::string fixtures[] = {
        channelExport + "1.5 2.5 3.5\n4.5 5.5 6.5\n",
        "WSxM file copyright UAM\nWSxM ASCII XYZ file\nX[nm] Y[nm] Z[nm]\n0 0 1\n1 0 2\n0 1 3\n1 1 4\n",
        "# File Format = ASCII\n# x-pixels = 2\n# y-pixels = 2\n# Start of Data:\n1 2\n3 4\n",
        "Experiment\tx\n[DATA]\nBias (V)\tCurrent (A)\n0\t1\n1\t2\n",
        utf16("um um\n2\n0.0, 1.0\n1.0, 2.0\n", true),
    };
    for (const std::string& whole : fixtures) {
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const auto result = read(whole.substr(0, length));
            if (result)
                for (std::size_t i = 0; i < result->items.size(); ++i)
                    EXPECT_GT(image_at(result, i).stream.array_length(), 0u);
            else
                EXPECT_NE(result.error().reason, "") << "cut at " << length;
        }
        EXPECT_TRUE(read(whole)) << whole;
    }
}

} // namespace
