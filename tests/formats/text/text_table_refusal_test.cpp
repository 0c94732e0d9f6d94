#include "text_table_fixture.h"

#include <gtest/gtest.h>

namespace {

using namespace formats;
using namespace instrument_fixture;
using namespace text_table_fixture;

TEST(TextTableRefuses, WithTheLineAndTheReason)
{
    const std::string wsxm = "WSxM file copyright UAM\n", interferometer = "\npixel size=1 m\n1 2\n3 4\n";
    const std::pair<std::string, const char*> rows[] = {
        {"", "the text holds no lines of numbers"},
        {"-\n***\n", "the text holds no lines of numbers"},
        {std::string("1 2 3\0 4\n", 9), "not a text: it holds NUL bytes"},
        {"1 2 3\x02 4\n", "not a text: it holds control characters"},
        {"1 2 3 4\n1 2 3\n1 2 3 4\n", "line 2 has 3 values where line 1 has 4"},
        {"1 2 3 4\n1 2 3 4 5\n", "line 2 has 5 values where line 1 has 4"},
        {"1 2 3 4\n1 2 x3 4\n", "line 2: \"x3\" is no number"},
        {"1 2 3 4\nx5 6 7 8\n1 2 3 4\n", "line 2: \"x5\" is no number"},
        {"42\n", "the text holds a single number"},
        {"NaN 1\nNaN 2\n", "a curve needs at least two points with x"},
        {"0 0 1\n1 0 2\n0 1 3\n1 1.2 4\n0 2 4\n",
         "three columns that are neither points on a regular grid nor curves over a rising or falling x"},
        {"x y z\n0 0 1\n1 0 2\n0 1 3\n", "the points x, y do not fill a regular grid"},
        {wsxmPoints + "0 0 1\n1 0 2\n0 1 3\n0 1 4\n", "the points x, y do not fill a regular grid"},
        {"h=3 w=2" + interferometer, "the header states 2 x 3 values, but 4 follow"},
        {"h=4294967297 w=4294967296" + interferometer,
         "the header states 4294967296 x 4294967297 values, but 4 follow"},
        {"um um\n3\n0.0, 1.0\n1.0, 2.0\n", "cut short: 2 of 3 points"},
        {wsxm + "IV curve file\n1 2 3 4\n", "a text export that is not a table: WSxM file copyright UAM"},
        {wyko(2, 3) + "OPD\n1 2\n3 4\n", "OPD: the header states 2 x 3 values, but 4 follow"},
        {wyko(2, 2) + "OPD\n1 2 3\n4\n", "OPD: line 5 has 3 values where the header states 2"},
        {wyko(2, 2) + "OPD\n1 2\n3 4\n5 6\n", "more lines of numbers than X Size states"},
        {wyko(2, 0) + "OPD\n1 2\n", "X Size or Y Size is missing or 0"},
        // A number that moved to another line of a broken row.
        {spip(4, 2) + "1 2 3\n4 5 6 7 8\n", "line 6 has 5 values where line 5 has 3"},
        {spip(4, 2) + "1 2 3 4 5\n6 7 8\n", "line 6 has 3 values where line 5 has 5"},
        {spip(4, 3) + "1 2 3\n4\n5 6\n7 8\n9 10 11\n12\n", "line 6 has 1 value where line 5 has 3"},
        {"1,23.5\t2,345.6\n3.5\t4.5\n", "line 1: \"1,23.5\" is no number"},
        {"1.234,5;2.345,6;3.456,7\n1.234,5;2.345,6;12.5\n", "line 1: \"1.234,5\" is no number"},
        {"1.234,5;2.345,6\n1.23,5;2.345,6\n", "line 1: \"1.234,5\" is no number"},
        {"1.234,5;2,345.6\n1.234,5;2,345.6\n", "line 1: \"1.234,5\" is no number"},
        {"1.5,2.5\t3.5\n4.5,5.5\t6.5\n", "line 1: \"1.5,2.5\" is no number"},
        {"1 000,5;2\n1 00O,5;3\n", "line 2: \"1 00O,5\" is no number"},
        {"1.0 abc 3.0 4\n0.5 1.5 2.5 3.5\n1.5 2.5 3.5 4.5\n", "the line before the numbers: \"abc\" is no number"},
        {"l.0 2.5\n2.0 3.5\n3.0 4.5\n", "the line before the numbers: \"l.0\" is no number"},
        {channelExport + "1.5 x2.5 3.5\n4.5 5.5 6.5\n7.5 8.5 9.5\n",
         "the line before the numbers: \"x2.5\" is no number"},
    };
    for (const auto& [text, reason] : rows) EXPECT_EQ(told(read(text)), reason);
}

TEST(TextTableRefuses, StrayMarksAmongDecimalCommas)
{
    for (const char* separator : {"\t", ";", " "})
        for (const char* damage : {"3,5,", ", 5", "-,-", "3.5"}) {
            std::string text;
            for (int i = 1; i <= 40; ++i)
                text += std::to_string(i) + ",25" + separator + (i == 20 ? damage : "1,5") + separator + "2,75\n";
            const std::string reason = told(read(text));
            EXPECT_TRUE(reason.starts_with("line 20: ") && reason.ends_with(" is no number")) << damage << reason;
        }
}

TEST(TextTableRefuses, LinesAndSidesBeyondTheLimits)
{
    std::string arrays = wyko(2, 1), line;
    for (int i = 0; i <= 256; ++i) arrays += "OPD\n1 2\n";
    EXPECT_EQ(told(read(arrays)), "more than 256 arrays");
    for (int i = 0; i <= 100'000; ++i) line += "1 ";
    EXPECT_EQ(told(read(line)), "line 1 has more than 100000 values");
    line.resize(2 * 70'000);
    EXPECT_EQ(told(read(line)), "an image of 70000 x 1 points is too large");
}

TEST(TextTable, IsRecognisedByItsFirstLines)
{
    const std::string wsxm = "WSxM file copyright UAM\n";
    const std::string certain[] = {channelExport + "1 2\n",
                                   utf16("# Channel: Z\n# Width: 1 um\n# Height: 1 um\n1 2\n", false),
                                   wsxm + "WSxM ASCII Matrix file\nX Amplitude: 1 um\n",
                                   wsxmPoints + "1",
                                   spip(256, 1),
                                   "h=305 w=75\npixel size=3.7e-7 m\n",
                                   "Experiment\tspectroscopy\t\n[DATA]\nBias (V)\tCurrent (A)\n1 2\n"},
                      possible[] = {"1 2 3\n4 5 6\n", "um um\n3\n", "# Name: a\n# Width: wide\n# Height: 2 m\n"},
                      none[] = {wsxm + "SxM Image file\nImage header size: 1\n", "no digits here\n",
                                std::string("1 2\0 3", 6), "\x01\x02 12", ""};
    const auto expect = [](std::span<const std::string> texts, bool isCertain, bool isPossible) {
        for (const std::string& text : texts) {
            EXPECT_EQ(sniff_text_table(std::as_bytes(std::span(text))), isCertain) << text;
            EXPECT_EQ(possible_text_table(std::as_bytes(std::span(text))), isPossible) << text;
        }
    };
    expect(certain, true, true);
    expect(possible, false, true);
    expect(none, false, false);
}

TEST(TextTable, CutAnywhereGivesAPartOrAReason)
{
    for (const std::string& whole :
         {channelExport + "1.5 2.5 3.5\n4.5 5.5 6.5\n", wsxmPoints + "0 0 1\n1 0 2\n0 1 3\n1 1 4\n",
          spip(2, 2) + "1 2\n3 4\n", std::string("Experiment\tx\n[DATA]\nBias (V)\tCurrent (A)\n0\t1\n1\t2\n"),
          utf16("um um\n2\n0.0, 1.0\n1.0, 2.0\n", true)}) {
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const auto result = read(whole.substr(0, length));
            EXPECT_TRUE(result ? image_at(result, 0).stream.array_length() > 0 : !result.error().reason.empty());
        }
        EXPECT_TRUE(read(whole)) << whole;
    }
}

} // namespace
