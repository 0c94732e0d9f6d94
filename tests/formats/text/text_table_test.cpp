#include "text_table_fixture.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <tuple>

namespace {

using namespace formats;
using namespace instrument_fixture;
using namespace text_table_fixture;

TEST(TextTable, NumbersAreReadInEverySpelling)
{
    for (const std::string& text : std::vector<std::string>{
             "1 2  3   4\n5 6 7 8\n",
             "   1 2 3 4\n   5 6 7 8   \n",
             "1\t2\t3\t4\t\n5\t6\t7\t8\t\n",
             "1\t\t2\t\t3\t\t4\n5\t\t6\t\t7\t\t8\n",
             "1.0,2.0,3.0,4.0\n5.0,6.0,7.0,8.0",
             "1, 2, 3, 4\n5, 6, 7, 8\n",
             "1,2,3,4\n5,6,7,8\n",
             "1;2;3;4;\n5;6;7;8;\n",
             "1,0;2,0;3,0;4,0\n5,0;6,0;7,0;8,0\n",
             "0,000,001.0\t2\t3.0\t4\n5\t6\t7\t0,008.0\n", // groups of thousands
             "1;2,0; 3;4\n5;6;7;0 008,0\n",
             "1 2\t3 4\n5 6\t7 8\n",
             "1 2 3 4\r5 6 7 8\r",
             "1 2 3 4\r\n\r\n5 6 7 8\r# end\n",
             "1 2 3 4\r\n5 6 7 8\r\n\x1A",
             "\xEF\xBB\xBF"
             "1 2 3 4\n5 6 7 8\n",
             utf16("1 2 3 4\r\n5 6 7 8", false),
             utf16("1;2;3;4\n5;6;7;8\n", true),
             "1.0e-000 .2E1 3D0 40d-1\n+5. 6e+000 0.07E+02 800000.0D-005\n",
             "# a\n% b\n; c\n// d\nprose\n1 2 3 4\n# between\n5 6 7 8\n",
             "1 2 3 4\n5 6 7 8\n9 10\n",         // a last line that is cut
             spip(4, 2) + "1 2 3\n4 5 6\n7 8\n", // lines that break the rows
             spip(4, 2) + "1 2 3\n4\n5 6 7\n8\n",
             spip(4, 2) + "1 2 3 4 5 6 7 8\n",
         })
        EXPECT_EQ(told(read(text)), "Z (4; 2): 5 6 7 8 1 2 3 4") << text;
}

TEST(TextTable, HeadersAndShapesTellWhatNumbersAre)
{
    const std::string wsxm = "WSxM file copyright UAM\n", rowOf3 = "Z (3; 2: 0 + 5): 1 2 3 4 5 6";
    const std::pair<std::string, std::string> rows[] = {
        {channelExport + "1 2\n5 6\n", "Topografie [m] (2: 0 + 6.17 \u00B5m; 2: 0 + 2839.45 nm): 5 6 1 2"},
        {"# Channel: Z\n# Width: 8 \xB5m\n# Height: 8 \xB5m\n# Value units: \xB5V\n1\n2\n",
         "Z [\u00B5V] (1: 0 + 8 \u00B5m; 2: 0 + 4 \u00B5m): 2 1"},
        {wsxm +
             "WSxM ASCII Matrix file\nX Amplitude: 1.5 um\nY Amplitude: 20 nm\nZ Amplitude: 7 \xC5\n\n1 2 3\n4 5 6\n",
         "Z [\u00C5] (3: 0 + 0.5 \u00B5m; 2: 0 + 10 nm): 3 2 1 6 5 4"}, // the lower right corner first
        {wsxmPoints + "10 0 1\n12 0 2\n14 0 3\n10 4 4\n12 4 5\n14 4 6\n",
         "Z [\u00C5] (3: 10 + 2 nm; 2: 0 + 4 nm): 1 2 3 4 5 6"},
        {"# File Format = ASCII\n# x-pixels = 3\n# y-pixels = 2\n# x-length = 300\n# y-length = 100\n"
         "# z-unit = nm\n# Start of Data:\n1 2\n3 4\n5 6\n",
         "Z [nm] (3: 0 + 100 nm; 2: 0 + 50 nm): 4 5 6 1 2 3"},
        {spip(4, 3) + "1 2 3 4 5 6\n7 8 9 10 11 12\n", "Z (4; 3): 9 10 11 12 5 6 7 8 1 2 3 4"},
        {"h=2 w=4\npixel size=3.7e-7 m\ndata unit=rad\nheight conversion factor (-> m)=0.5\n1 2 3 4\n5 6 7 8\n",
         "Z [m] (4: 0 + 3.7e-07 m; 2: 0 + 3.7e-07 m): 2.5 3 3.5 4 0.5 1 1.5 2"},
        {"h=1 w=4\npixel size=2 um\ndata unit=rad\n1 2 3 4\n", "Z [rad] (4: 0 + 2 \u00B5m; 1: 0 + 2 \u00B5m): 1 2 3 4"},
        {wyko(2, 3) + "Block Name\tType\tLength\tValue\nPixel_size\t7\t4\t0.5\nAspect\t7\t4\t2\n"
                      "Wavelength\t7\t4\t600\nRAW_DATA\t3\t24\n1\t2\t\n3\t4\t\n5\t6\t\n",
         "RAW_DATA [nm] (3: 0 + 0.5 mm; 2: 0 + 1 mm): 600 1800 3000 1200 2400 3600"}, // columns from the bottom up
        {"um nm\n3\n0.0, 5.0\n0.5, 6.0\n1.0, 9.0\n", "Y [nm] (3: 0 + 0.5 \u00B5m): 5 6 9"},
        {"um um\n2\n0,5\n1,6\n", "Y [\u00B5m] (2: 0 + 1 \u00B5m): 5 6"},
        {"X_(microns),y1\n0.0,1.5\n0.1,2.5\n", "y1 (2: 0 + 0.1 \u00B5m): 1.5 2.5"},
        {"index,x in \xC2\xB5m,y in \xC2\xB5m\n1,0.0,7\n2,0.5,8\n3,1.0,6\n", "y [\u00B5m] (3: 0 + 0.5 \u00B5m): 7 8 6"},
        {"Experiment\tbias spectroscopy\t\nComment\tsizes\n3 4\n\n[DATA]\n"
         "Bias calc (V)\tCurrent (A)\tX [bwd] (m) [filt]\n2\t7\t1\n1\t8\t2\n0\t9\t4\n",
         "Current [A] (3: 2 + -1 V): 7 8 9\nX [bwd] [filt] [m] (3: 2 + -1 V): 1 2 4"},
        {"\"Time, s\",\"Force, nN\"\n0.0,4.0\n0.5,3.0\n", "Force [nN] (2: 0 + 0.5 s): 4 3"},
        {"Time\tLevel (foo)\n0\t4\n1\t3\n", "Level (foo) (2): 4 3"}, // an unknown unit is part of the name
        {"0 0 1\n1 0 2\n2 0 3\n0 5 4\n1 5 5\n2 5 6\n", rowOf3},
        {"0 0 1\n0 5 4\n1 0 2\n1 5 5\n2 0 3\n2 5 6\n", rowOf3},
        {"2 5 6\n1 5 5\n0 5 4\n2 0 3\n1 0 2\n0 0 1\n", rowOf3},
        {"0 0 1\n1 0 2\n2 0 3\n\n2 5 6\n1 5 5\n0 5 4\n", rowOf3}, // to and fro
        {"0 0 1\n0.333 0 2\n0.667 0 3\n1 0 4\n0 1 5\n0.333 1 6\n0.667 1 7\n1 1 8\n",
         "Z (4: 0 + 0.333333; 2): 1 2 3 4 5 6 7 8"},
        {"x,y,Height (nm),Phase (deg)\n0,0,1,9\n1,0,2,8\n0,1,3,7\n1,1,4,6\n",
         "Height [nm] (2; 2): 1 2 3 4\nPhase [\u00B0] (2; 2): 9 8 7 6"},
        {"10 1\n8 3\n6 2\n", "Y (3: 10 + -2): 1 3 2"},
        {"-1,5\t1,25\t4\n-1,0\t1,5\t6\n-0,5\t1,0\t5\n", "Y1 (3: -1.5 + 0.5): 1.25 1.5 1\nY2 (3: -1.5 + 0.5): 4 6 5"},
        {"0 1 5 1\n1 3 2 0\n2 2 2 1\n3 7 2 0\n4 1 2 1\n5 1 1 0\n6 2 2 1\n7 0 0 0\n",
         "Y1 (8): 1 3 2 7 1 1 2 0\nY2 (8): 5 2 2 2 2 1 2 0\nY3 (8): 1 0 1 0 1 0 1 0"},
        {"0 1 2 3\n1 2 3 4\n2 3 4 5\n3 4 5 6\n4 5 6 7\n5 6 7 8\n6 7 8 9\n7 8 9 10\n", // a tilted surface
         "Z (4; 8): 7 8 9 10 6 7 8 9 5 6 7 8 4 5 6 7 3 4 5 6 2 3 4 5 1 2 3 4 0 1 2 3"},
        {"1.10123e-6\n1.10123e-6\n", "Y (2): 1.10123e-06 1.10123e-06"},
        {"1,5\n2\n3,25\n", "Y (3): 1.5 2 3.25"},
        {"1,5\n2,0\n3,2\n", "Y (3: 1 + 1): 5 0 2"}, // a comma parts columns when all lines agree
    };
    for (const auto& [text, line] : rows) EXPECT_EQ(told(read(text)), line) << text;
}

TEST(TextTable, AProfilersArraysAreImagesOfTheirOwn)
{
    const std::string header = wyko(2, 3) + "Block Name\tType\tLength\tValue\nPixel_size\t7\t4\t0.5\n"
                                            "Wavelength\t7\t4\t600\nTitle\t5\t4\tStep\nNote\t5\t0\t\n"
                                            "Date\t5\t10\t11/06/2020\nTime\t5\t5\t20:12\n";
    const auto result = read(header + "RAW_DATA\t3\t24\n1\tBad\n3\t4\n5\t6\n\nIntensity\t3\t24\n9\t8\n7\t6\n5\t4\n"
                                      "OPD\t3\t24\n1\t1\n1\t1\n1\t3\n");
    EXPECT_EQ(told(result), "Step [nm] (3: 0 + 0.5 mm; 2: 0 + 0.5 mm): 600 1800 3000 600 2400 3600\n"
                            "Intensity (3: 0 + 0.5 mm; 2: 0 + 0.5 mm): 9 7 5 8 6 4\n"
                            "Step [nm] (3: 0 + 0.5 mm; 2: 0 + 0.5 mm): 600 600 600 600 600 1800");
    EXPECT_STRNE(image_at(result, 0).stream.get_name(), image_at(result, 2).stream.get_name());
    EXPECT_EQ(image_at(result, 0).strings.at("\\Void points"), "1");
    EXPECT_EQ(result->strings.at("\\Date"), "11/06/2020 20:12");
    EXPECT_FALSE(result->strings.contains("Note")) << "it is empty";
    const auto bare = read(wyko(2, 1) + "Sample\n1\t2\n");
    EXPECT_EQ(bare->strings.at("\\Reader note"), "no Pixel_size in the file: sides are counted in points");
}

TEST(TextTable, AHighTableOverARisingColumnIsNoImage)
{
    const auto items = [](int lines) {
        std::string text;
        for (int i = 0; i < lines; ++i) {
            for (int column = 0; column < 4; ++column) text += std::to_string(i + 3 * column) + " ";
            text += "\n";
        }
        return read(text)->items.size();
    };
    EXPECT_EQ(items(31), 1u); // 4 x 31 could be a tilted surface
    EXPECT_EQ(items(100), 3u);
}

TEST(TextTable, UnevenXBecomesTheParameterOfItsCurves)
{
    const auto result = read("x [nm]\tForce [nN]\tX [V]\n0\t5\t1\n1\t6\t2\n3\t8\t3\n");
    const std::string x = image_at(result, 0).stream.get_name();
    EXPECT_EQ(told(result), "x [nm] (3): 0 1 3\nForce [nN] (3) over " + x + ": 5 6 8\nX [V] (3) over " + x + ": 1 2 3");
}

TEST(TextTable, WhatWasNotMeasuredIsCountedAndNeverAHeight)
{
    const auto surface = read("1;NaN;-;4\n***;;Bad;-nan(ind)\n7;inf;1.#QNAN;1e999\n9;1e-999;3;2\n");
    const recorded_image& image = image_at(surface, 0);
    EXPECT_EQ(image.strings.at("\\Void points"), "9");
    EXPECT_NEAR(std::ranges::max(physical_of(image)), 9.0, 1e-3);
    EXPECT_NEAR(std::ranges::min(physical_of(image)), 0.0, 1e-3);

    const auto curve = read("0 5\nNaN 6\n2 7\n4 NaN\n");
    EXPECT_EQ(image_at(curve, 0).stream.get_dimension(0).length, 3u);
    EXPECT_EQ(curve->strings.at("\\Reader note"), "Points left out because they have no x: 1");
    EXPECT_TRUE(image_at(curve, 0).strings.at("\\Void points").starts_with("1 "));
}

TEST(TextTable, KeepsHeaderCommentsAndNotesAsStrings)
{
    const auto result =
        read("A report\n# Tip: \"new\" \xB5\nDate\t07.07.2020 15:01\n# Tip: old\n1 2 3 4\n# lost line\n5 6 7 8\n9\n");
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(result->strings.at("Header"), "A report");
    EXPECT_EQ(result->strings.at("Tip"), "\"new\" \xC2\xB5\nold");
    EXPECT_EQ(result->strings.at("Date"), "07.07.2020 15:01");
    EXPECT_EQ(result->strings.at("\\Comments"), "# lost line");
    EXPECT_EQ(result->strings.at("\\Reader note"), "The last line, 8, was left out: it has 1 value of 4");
}

TEST(TextTable, ACutImageHasItsWholeLinesAtTheirPlaces)
{
    const auto matrix = read("# Channel: Z\n# Width: 8 um\n# Height: 8 um\n# Value units: m\n1 2 3 4\n5 6 7 8\n9 1");
    EXPECT_EQ(told(matrix), "Z [m] (4: 0 + 2 \u00B5m; 2: 0 + 2 \u00B5m): 5 6 7 8 1 2 3 4"); // not stretched
    EXPECT_NE(matrix->strings.at("\\Reader note").find("the step along y is that along x"), std::string::npos);
    const auto grid = read("0 0 1\n0 1 2\n0 2 3\n1 0 4\n1 1 5\n1 2 6\n2 0 7\n2 1 8\n");
    EXPECT_EQ(told(grid), "Z (2; 3): 1 4 2 5 3 6");
    EXPECT_EQ(grid->warnings.at(0), "The last line of the grid was left out: it has 2 of its points");
}

TEST(TextTable, FindsACommaThatTurnsUpLate)
{
    std::string text;
    for (int i = 0; i < 1500; ++i) text += std::to_string(i) + "\t" + std::to_string(i % 7) + "\n";
    EXPECT_NEAR(physical_of(image_at(read(text + "1500\t2,5\n"), 0)).back(), 2.5, 1e-3);
}

TEST(TextTable, TellsOfCommasThatCouldPartThousands)
{
    const auto tells = [](const char* row) {
        const auto result = read("1,234\t2,345\n3,456\t4,567\n" + std::string(row) + "\t5,678\n");
        return first_note(result).find("part thousands") != std::string::npos;
    };
    for (const char* row : {"7,890", "7800", "-999,001"}) EXPECT_TRUE(tells(row)) << row;
    for (const char* row : {"0,125", "12,5", "1234,567", "1,2345", "1,234.5", "1,234,567"})
        EXPECT_FALSE(tells(row)) << row;
}

/// Rows under "x y", a part of the first note, which may be none, and the last curve they hold.
using noted_rows = std::tuple<std::string, const char*, std::vector<double>>;

void expect_notes(const std::vector<noted_rows>& cases)
{
    for (const auto& [rows, part, last] : cases) {
        SCOPED_TRACE(rows);
        const auto result = read("x\ty\n" + rows);
        ASSERT_TRUE(result && result->items.size() == 1);
        const std::vector<double> values = physical_of(image_at(result, 0));
        const double error = 1e-5 * (std::ranges::max(values) - std::ranges::min(values));
        EXPECT_THAT(values, testing::Pointwise(testing::DoubleNear(error), last));
        const std::string note = first_note(result);
        EXPECT_TRUE(*part ? note.find(part) != std::string::npos : note.empty()) << note;
    }
}

TEST(TextTable, MarksOfThousandsNeverSplitNumbers)
{
    expect_notes({
        {"10;1 000,5\n11;1 100,5\n12;-12 200,5\n", "", {1000.5, 1100.5, -12200.5}},
        {"10\t2 370\n11\t2 407\n12\t1 002 500\n", "", {2370, 2407, 1002500}},
        {"10\t370 237\n11\t407 238\n12\t408 239\n", "blanks within the fields", {370237, 407238, 408239}},
        {"10\t900\n11\t1,000\n12\t1,100\n", "", {900, 1000, 1100}},
        {"900\t1,000\n901\t1,007\n902\t1,014\n", "read as parting thousands", {1000, 1007, 1014}},
        {"9001\t1,000\n9002\t1,007\n9003\t1,014\n", "read as decimal marks", {1, 1.007, 1.014}},
        {"1,234\t21,500\n1,345\t-\n1,456\t22,000\n", "read as decimal marks", {21.5, 21.75, 22}},
        {"10;1,234\n11;1,345\n12;0\n", "read as decimal marks", {1.234, 1.345, 0}},
        {"10;1,234\n11;1,345\n12;1,234,567\n", "", {1234, 1345, 1234567}},
        {"10;1,234\n11;1,345\n12;900.5\n", "", {1234, 1345, 900.5}},
        {"10;900\n11;1.000\n12;1.105\n", "", {900, 1000, 1105}},
        {"10;900\n11;1.234\n12;1.105\n", "every point could part thousands", {900, 1.234, 1.105}},
        {"10\t1.234,5\n11\t-2.345,25\n12\t0,5\n", "", {1234.5, -2345.25, 0.5}},
        {"10;1.234.567,5\n11;1.234\n12;900,25\n", "", {1234567.5, 1234, 900.25}},
        {"10 1.234,5\n11 12.345,25\n12 900\n", "", {1234.5, 12345.25, 900}},
        {"10;900\n11;1.234\n12;1.5\n", "", {900, 1.234, 1.5}},
    });
}

TEST(TextTable, TellsOfANumberThatIsCutAtTheEnd)
{
    const std::string small = "0 1.8e-008\n1 1.9e-008\n2 1.7e-008\n", cut = small + "3 1.5e-0", torn = small + "3 1.5e";
    expect_notes({
        {"0,1\t-7999,9\n0,2\t-7991,9\n0,3\t-7983,9\n0,4\t-7975,",
         "\"-7975,\", which",
         {-7999.9, -7991.9, -7983.9, -7975}},
        {"0 0.003581\n1 0.003584\n2 0.003585\n3 -0", "\"-0\", which is shorter", {3.581e-3, 3.584e-3, 3.585e-3, 0}},
        {"0 0.003581\n1 0.003584\n2 0.003585\n3 -0\n", "", {3.581e-3, 3.584e-3, 3.585e-3, 0}}, // the line is whole
        {cut, "\"1.5e-0\", which is shorter", {1.8e-8, 1.9e-8, 1.7e-8, 1.5}},
        {torn, "The last line, 5, was left out: its last number, \"1.5e\"", {1.8e-8, 1.9e-8, 1.7e-8}},
        {"0 1.25\n1 2.5\n2 3.75\n3 1.2", "", {1.25, 2.5, 3.75, 1.2}},
        {"0 125\n1 130\n2 20\n3 20", "", {125, 130, 20, 20}},
    });
}

TEST(TextTable, ALineWithDigitsMayHeadColumns)
{
    for (const char* heading : {"100 100 nm", "256 256 10um", "5 5 [V]", "0\tT1\tT2"}) {
        const auto result = read(std::string(heading) + "\n1\t2\t3\n2\t4\t5\n3\t5\t9\n");
        ASSERT_TRUE(result) << heading << result.error().reason;
        EXPECT_EQ(result->items.size(), 2u) << heading;
    }
}

TEST(TextTable, ADamagedSizeIsNotPassedOver)
{
    for (const std::string damaged : {"1x.00 um", "abc um", "um", "10.00 5m", "wide", ""})
        for (const std::string sides : {"the stated width", "the stated height"}) {
            const bool isWidth = sides.ends_with("width");
            const std::string header = "# Channel: Z\n# Width: " + (isWidth ? damaged : "8 um") +
                                       "\n# Height: " + (isWidth ? "8 um" : damaged) + "\n# Value units: m\n";
            expect_refused(read_text_table,
                           {{header + "1 2\n3 4\n", "no number: " + sides + " is \"" + damaged + "\""}});
        }
    expect_refused(read_text_table, {{"# Channel: Z\n# Width: abc um\n# Height: 8y um\n# Value units: m\n1 2\n3 4\n",
                                      "no number: the stated width is \"abc um\""}});
}

TEST(TextTable, TellsOfUnitsThatAreNone)
{
    const auto one = read("# Channel: T\n# Width: 8 umm\n# Height: 4\n# Value units: m\n1 2\n3 4\n");
    EXPECT_EQ(told(one), "T [m] (2: 0 + 4 umm; 2: 0 + 2): 3 4 1 2");
    EXPECT_THAT(one->warnings, testing::ElementsAre("the unit of the stated width, \"8 umm\", is not known",
                                                    "the unit of the stated height, \"4\", is not known"));
    const auto values = read("# Channel: T\n# Width: 8 um\n# Height: 4 um\n# Value units: 5m\n1 2\n3 4\n");
    EXPECT_THAT(values->warnings, testing::ElementsAre("the unit of the values, \"5m\", is not known"));
}

TEST(TextTable, TwoDamagedRowsKeepTheirPlacesAndAWordInTheFirstIsRefused)
{
    EXPECT_EQ(image_at(read(channelExport + "a 2 3 4\nb 6 7 8\n9 10 11 12\n"), 0).stream.get_dimension(1).length, 3u);
    EXPECT_EQ(told(read(channelExport + "1\t2\t3\tabc\t\n5\t6\t7\t8\t9\n1\t2\t3\t4\t5\n")),
              "the line before the numbers: \"abc\" is no number");
}

TEST(TextTable, TellsOfCommentsThatMayBeDamagedRows)
{
    const auto result = read("y x1 2 3\n1 2 3 4\nfoo 2 3 4\n# 1 2 3\n5 6 7 8\nrow 2 of 3\nl 2 3 4\n");
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(told(result), "Z (4; 3): 5 6 7 8 1 2 3 4 1 2 3 4"); // between rows it is one, whose first is not measured
    EXPECT_EQ(result->strings.at("\\Reader note"),
              "rows with words or nothing where numbers belong, which count as not measured: 1 line, the first is "
              "line 3\ntaken for comments although they hold numbers for most columns: 1 line, the first is line 7");
    for (const std::string heading : {"512 x 512 y\n", "Z 1 2 3\n", "4 rows of data\n"})
        EXPECT_TRUE(read(heading + "1 2 3 4\n5 6 7 8\n")->warnings.empty()) << heading;
}

class cancelled_source : public memory_source {
public:
    using memory_source::memory_source;
    bool progress(double done) override
    {
        timesRead += done > 0.0;
        return false;
    }
    int timesRead = 0; ///< how often reading told a progress, although it was cancelled the first time
};

TEST(TextTable, StopsWhenCancelled)
{
    std::string text;
    while (text.size() < (3u << 20)) text += "1 2 3 4 5 6 7 8 9\n";
    cancelled_source file(std::as_bytes(std::span(text)));
    EXPECT_EQ(told(read_text_table(file)), "cancelled");
    // A comma far down is another layout: that the first try failed by it is not looked into after a cancel.
    cancelled_source late(std::as_bytes(std::span(text += "1 2 3 4 5 6 7 8 9,5\n")));
    EXPECT_FALSE(read_text_table(late));
    EXPECT_EQ(late.timesRead, 1);
}

} // namespace
