#include "formats/instrument_fixture.h"
#include "text_table_fixture.h"

#include "base/text.h"
#include "formats/shared/finish_recording.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <ostream>

namespace {

using namespace formats;
using namespace instrument_fixture;
using namespace text_table_fixture;

constexpr const char* um = "\xC2\xB5m";

/// Half a step of 65,536 levels over the range, and what six digits of the axis may cost.
double allowed_error(const std::vector<double>& expected)
{
    const auto [lo, hi] = std::minmax_element(expected.begin(), expected.end());
    return (*hi - *lo) / 131070 * 1.02 + 1e-5 * std::max(std::fabs(*lo), std::fabs(*hi)) * (*hi == *lo);
}

void expect_values(const SPMDataStream& stream, const std::vector<double>& expected)
{
    const std::vector<double> values = physical_of(stream);
    ASSERT_EQ(values.size(), expected.size());
    const double allowed = allowed_error(expected);
    for (std::size_t i = 0; i < values.size(); ++i) EXPECT_NEAR(values[i], expected[i], allowed) << "at " << i;
}

std::string axis_text(const VLAxis& axis)
{
    return base::general(axis.start) + " + i * " + base::general(axis.scale) + " [" + axis.get_units() + "]";
}

/// One table and the image or curves it stands for.
struct table_case {
    const char* name;
    std::string text;
    std::vector<unsigned> shape;             ///< lengths of the dimensions
    std::vector<std::string> axes;           ///< of the dimensions
    std::vector<std::vector<double>> values; ///< one row an item
    std::string labels;                      ///< of the items, "Name [unit]" with blanks between
};

void PrintTo(const table_case& each, std::ostream* out) { *out << each.name; }

class TextTableReads : public testing::TestWithParam<table_case> {};

TEST_P(TextTableReads, ShapeAxesAndValues)
{
    const table_case& each = GetParam();
    const auto result = read(each.text);
    ASSERT_EQ(result->items.size(), each.values.size());
    std::string labels;
    for (std::size_t i = 0; i < each.values.size(); ++i) {
        const SPMDataStream& stream = image_at(result, i).stream;
        ASSERT_EQ(stream.get_dimensions_number(), each.shape.size());
        for (unsigned d = 0; d < each.shape.size(); ++d) {
            EXPECT_EQ(stream.get_dimension(d).length, each.shape[d]);
            EXPECT_EQ(axis_text(stream.get_dimension(d).get_axis(0)), each.axes[d]);
        }
        expect_values(stream, each.values[i]);
        labels += labels.empty() ? "" : " ";
        labels += std::string(stream.get_description()) + "[" + stream.values.get_axis(0).get_units() + "]";
    }
    EXPECT_EQ(labels, each.labels);
}

const std::string perPoint = "0 + i * 1 []";
// Rows "1 2 3 4" over "5 6 7 8", the top one first.
const std::vector<double> twoRows = {5, 6, 7, 8, 1, 2, 3, 4};

table_case matrix_case(const char* name, std::string text)
{
    return {name, std::move(text), {4, 2}, {perPoint, perPoint}, {twoRows}, "Z[]"};
}

INSTANTIATE_TEST_SUITE_P(
    Spellings, TextTableReads,
    testing::Values(
        matrix_case("Blanks", "1 2  3   4\n5 6 7 8\n"), matrix_case("Indented", "   1 2 3 4\n   5 6 7 8   \n"),
        matrix_case("Tabs", "1\t2\t3\t4\n5\t6\t7\t8"), matrix_case("TrailingTab", "1\t2\t3\t4\t\n5\t6\t7\t8\t\n"),
        matrix_case("DoubleTabs", "1\t\t2\t\t3\t\t4\n5\t\t6\t\t7\t\t8\n"),
        matrix_case("Commas", "1.0,2.0,3.0,4.0\n5.0,6.0,7.0,8.0\n"),
        matrix_case("CommaBlank", "1, 2, 3, 4\n5, 6, 7, 8\n"), matrix_case("IntegerCommas", "1,2,3,4\n5,6,7,8\n"),
        matrix_case("Semicolons", "1;2;3;4;\n5;6;7;8;\n"),
        matrix_case("GroupsWithinTabs", "0,000,001.0\t2\t3.0\t4\n5\t6\t7\t0,008.0\n"),
        matrix_case("BlanksWithinSemicolons", "1;2,0; 3;4\n5;6;7;0 008,0\n"),
        matrix_case("ColumnsWithinTabs", "1 2\t3 4\n5 6\t7 8\n"),
        matrix_case("DecimalCommas", "1,0;2,0;3,0;4,0\n5,0;6,0;7,0;8,0\n"),
        matrix_case("CarriageReturns", "1 2 3 4\r5 6 7 8\r"), matrix_case("DosLines", "1 2 3 4\r\n5 6 7 8\r\n\x1A"),
        matrix_case("MixedLines", "1 2 3 4\r\n\r\n5 6 7 8\r# end\n"),
        matrix_case("Utf8Mark", "\xEF\xBB\xBF"
                                "1 2 3 4\n5 6 7 8\n"),
        matrix_case("Utf16Little", utf16("1 2 3 4\r\n5 6 7 8", false)),
        matrix_case("Utf16Big", utf16("1;2;3;4\n5;6;7;8\n", true)),
        matrix_case("Exponents", "1.0e-000 .2E1 3D0 40d-1\n+5. 6e+000 0.07E+02 800000.0D-005\n"),
        matrix_case("Comments", "# a\n% b\n; c\n// d\nprose\n1 2 3 4\n# between\n5 6 7 8\n"),
        matrix_case("ShortLastLine", "1 2 3 4\n5 6 7 8\n9 10\n"),
        matrix_case("LinesOfThree", spip(4, 2) + "1 2 3\n4 5 6\n7 8\n"),
        matrix_case("RowsBrokenAlike", spip(4, 2) + "1 2 3\n4\n5 6 7\n8\n"),
        table_case{"LinesOfSix",
                   spip(4, 3) + "1 2 3 4 5 6\n7 8 9 10 11 12\n",
                   {4, 3},
                   {perPoint, perPoint},
                   {{9, 10, 11, 12, 5, 6, 7, 8, 1, 2, 3, 4}},
                   "Z[]"},
        matrix_case("RowsOnALine", spip(4, 2) + "1 2 3 4 5 6 7 8\n")),
    [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Headers, TextTableReads,
    testing::Values(
        table_case{"TranslatedExport",
                   channelExport + "1 2\n5 6\n",
                   {2, 2},
                   {std::string("0 + i * 6.17 [") + um + "]", "0 + i * 2839.45 [nm]"},
                   {{5, 6, 1, 2}},
                   "Topografie[m]"},
        table_case{"Latin1Export",
                   "# Channel: Z\n# Width: 8 \xB5m\n# Height: 8 \xB5m\n# Value units: \xB5V\n1\n2\n",
                   {1, 2},
                   {std::string("0 + i * 8 [") + um + "]", std::string("0 + i * 4 [") + um + "]"},
                   {{2, 1}},
                   "Z[\xC2\xB5V]"},
        table_case{"LowerRightFirst",
                   "WSxM file copyright UAM\nWSxM ASCII Matrix file\nX Amplitude: 1.5 um\nY Amplitude: 20 nm\n"
                   "Z Amplitude: 7 \xC5\n\n1 2 3\n4 5 6\n",
                   {3, 2},
                   {std::string("0 + i * 0.5 [") + um + "]", "0 + i * 10 [nm]"},
                   {{3, 2, 1, 6, 5, 4}},
                   "Z[\xC3\x85]"},
        table_case{"BracketedPoints",
                   "WSxM file copyright UAM\nWSxM ASCII XYZ file\nX[nm]\tY[nm]\tZ[\xC5]\n\n"
                   "10 0 1\n12 0 2\n14 0 3\n10 4 4\n12 4 5\n14 4 6\n",
                   {3, 2},
                   {"10 + i * 2 [nm]", "0 + i * 4 [nm]"},
                   {{1, 2, 3, 4, 5, 6}},
                   "Z[\xC3\x85]"},
        table_case{"StatedPixels", // the lines may break anywhere
                   "# File Format = ASCII\n# x-pixels = 3\n# y-pixels = 2\n# x-length = 300\n# y-length = 100\n"
                   "# z-unit = nm\n# Start of Data:\n1 2\n3 4\n5 6\n",
                   {3, 2},
                   {"0 + i * 100 [nm]", "0 + i * 50 [nm]"},
                   {{4, 5, 6, 1, 2, 3}},
                   "Z[nm]"},
        table_case{
            "ConversionFactor",
            "h=2 w=4\npixel size=3.7e-7 m\ndata unit=rad\nheight conversion factor (-> m)=0.5\n1 2 3 4\n5 6 7 8\n",
            {4, 2},
            {"0 + i * 3.7e-07 [m]", "0 + i * 3.7e-07 [m]"},
            {{2.5, 3, 3.5, 4, 0.5, 1, 1.5, 2}},
            "Z[m]"},
        table_case{"NoFactor",
                   "h=1 w=4\npixel size=2 um\ndata unit=rad\n1 2 3 4\n",
                   {4, 1},
                   {std::string("0 + i * 2 [") + um + "]", std::string("0 + i * 2 [") + um + "]"},
                   {{1, 2, 3, 4}},
                   "Z[rad]"},
        table_case{"ColumnsFromTheBottomUp",
                   "Wyko ASCII Data File Format\t0\t0\t1\nX Size\t3\nY Size\t2\nBlock Name\tType\tLength\tValue\n"
                   "Pixel_size\t7\t4\t0.5\nAspect\t7\t4\t2\nWavelength\t7\t4\t600\nRAW_DATA\t3\t24\n"
                   "1\t2\t\n3\t4\t\n5\t6\t\n",
                   {3, 2},
                   {"0 + i * 0.5 [mm]", "0 + i * 1 [mm]"},
                   {{600, 1800, 3000, 1200, 2400, 3600}},
                   "RAW_DATA[nm]"},
        table_case{"Profiler",
                   "um nm\n3\n0.0, 5.0\n0.5, 6.0\n1.0, 9.0\n",
                   {3},
                   {std::string("0 + i * 0.5 [") + um + "]"},
                   {{5, 6, 9}},
                   "Y[nm]"},
        table_case{"ProfilerWithoutPoints",
                   "um um\n2\n0,5\n1,6\n",
                   {2},
                   {std::string("0 + i * 1 [") + um + "]"},
                   {{5, 6}},
                   std::string("Y[") + um + "]"},
        table_case{"Microns",
                   "X_(microns),y1\n0.0,1.5\n0.1,2.5\n",
                   {2},
                   {std::string("0 + i * 0.1 [") + um + "]"},
                   {{1.5, 2.5}},
                   "y1[]"},
        table_case{"IndexColumn",
                   "index,x in \xC2\xB5m,y in \xC2\xB5m\n1,0.0,7\n2,0.5,8\n3,1.0,6\n",
                   {3},
                   {std::string("0 + i * 0.5 [") + um + "]"},
                   {{7, 8, 6}},
                   std::string("y[") + um + "]"},
        table_case{"DataMark",
                   "Experiment\tbias spectroscopy\t\nComment\tsizes\n3 4\n\n[DATA]\nBias calc (V)\tCurrent (A)\tX "
                   "[bwd] (m) [filt]\n"
                   "2\t7\t1\n1\t8\t2\n0\t9\t4\n",
                   {3},
                   {"2 + i * -1 [V]"},
                   {{7, 8, 9}, {1, 2, 4}},
                   "Current[A] X [bwd] [filt][m]"},
        table_case{"QuotedNames",
                   "\"Time, s\",\"Force, nN\"\n0.0,4.0\n0.5,3.0\n",
                   {2},
                   {"0 + i * 0.5 [s]"},
                   {{4, 3}},
                   "Force[nN]"},
        table_case{"UnknownUnitIsPartOfTheName",
                   "Time\tLevel (foo)\n0\t4\n1\t3\n",
                   {2},
                   {perPoint},
                   {{4, 3}},
                   "Level (foo)[]"}),
    [](const auto& each) { return std::string(each.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Shapes, TextTableReads,
    testing::Values(
        table_case{"FastX",
                   "0 0 1\n1 0 2\n2 0 3\n0 5 4\n1 5 5\n2 5 6\n",
                   {3, 2},
                   {perPoint, "0 + i * 5 []"},
                   {{1, 2, 3, 4, 5, 6}},
                   "Z[]"},
        table_case{"FastY",
                   "0 0 1\n0 5 4\n1 0 2\n1 5 5\n2 0 3\n2 5 6\n",
                   {3, 2},
                   {perPoint, "0 + i * 5 []"},
                   {{1, 2, 3, 4, 5, 6}},
                   "Z[]"},
        table_case{"Downwards",
                   "2 5 6\n1 5 5\n0 5 4\n2 0 3\n1 0 2\n0 0 1\n",
                   {3, 2},
                   {perPoint, "0 + i * 5 []"},
                   {{1, 2, 3, 4, 5, 6}},
                   "Z[]"},
        table_case{"ToAndFro",
                   "0 0 1\n1 0 2\n2 0 3\n2 5 6\n1 5 5\n0 5 4\n",
                   {3, 2},
                   {perPoint, "0 + i * 5 []"},
                   {{1, 2, 3, 4, 5, 6}},
                   "Z[]"},
        table_case{"RoundedGrid",
                   "0 0 1\n0.333 0 2\n0.667 0 3\n1 0 4\n0 1 5\n0.333 1 6\n0.667 1 7\n1 1 8\n",
                   {4, 2},
                   {"0 + i * 0.333333 []", perPoint},
                   {{1, 2, 3, 4, 5, 6, 7, 8}},
                   "Z[]"},
        table_case{"BlankLinesBetweenRows",
                   "0 0 1\n1 0 2\n\n0 1 3\n1 1 4\n",
                   {2, 2},
                   {perPoint, perPoint},
                   {{1, 2, 3, 4}},
                   "Z[]"},
        table_case{"TwoValuesAPoint",
                   "x,y,Height (nm),Phase (deg)\n0,0,1,9\n1,0,2,8\n0,1,3,7\n1,1,4,6\n",
                   {2, 2},
                   {perPoint, perPoint},
                   {{1, 2, 3, 4}, {9, 8, 7, 6}},
                   "Height[nm] Phase[\xC2\xB0]"},
        table_case{"TwoColumns", "10 1\n8 3\n6 2\n", {3}, {"10 + i * -2 []"}, {{1, 3, 2}}, "Y[]"},
        table_case{"CurvesSharingX",
                   "-1,5\t1,25\t4\n-1,0\t1,5\t6\n-0,5\t1,0\t5\n",
                   {3},
                   {"-1.5 + i * 0.5 []"},
                   {{1.25, 1.5, 1}, {4, 6, 5}},
                   "Y1[] Y2[]"},
        table_case{"ManyCurves",
                   "0 1 5 1\n1 3 2 0\n2 2 2 1\n3 7 2 0\n4 1 2 1\n5 1 1 0\n6 2 2 1\n7 0 0 0\n",
                   {8},
                   {perPoint},
                   {{1, 3, 2, 7, 1, 1, 2, 0}, {5, 2, 2, 2, 2, 1, 2, 0}, {1, 0, 1, 0, 1, 0, 1, 0}},
                   "Y1[] Y2[] Y3[]"},
        table_case{"TiltedMatrix",
                   "0 1 2 3\n1 2 3 4\n2 3 4 5\n3 4 5 6\n4 5 6 7\n5 6 7 8\n6 7 8 9\n7 8 9 10\n",
                   {4, 8},
                   {perPoint, perPoint},
                   {{7, 8, 9, 10, 6, 7, 8, 9, 5, 6, 7, 8, 4, 5, 6, 7, 3, 4, 5, 6, 2, 3, 4, 5, 1, 2, 3, 4, 0, 1, 2, 3}},
                   "Z[]"},
        table_case{"ConstantColumn", "1.10123e-6\n1.10123e-6\n", {2}, {perPoint}, {{1.10123e-6, 1.10123e-6}}, "Y[]"},
        table_case{"OneColumn", "3\n1\n2\n", {3}, {perPoint}, {{3, 1, 2}}, "Y[]"},
        table_case{"OneColumnOfDecimalCommas", "1,5\n2\n3,25\n", {3}, {perPoint}, {{1.5, 2, 3.25}}, "Y[]"},
        table_case{"CommaSeparatesWhenAllLinesAgree", "1,5\n2,0\n3,2\n", {3}, {"1 + i * 1 []"}, {{5, 0, 2}}, "Y[]"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(TextTable, AProfilersArraysAreImagesOfTheirOwn)
{
    const std::string header = wyko(2, 3) + "Block Name\tType\tLength\tValue\nPixel_size\t7\t4\t0.5\n"
                                            "Wavelength\t7\t4\t600\nTitle\t5\t4\tStep\nNote\t5\t0\t\n"
                                            "Date\t5\t10\t11/06/2020\nTime\t5\t5\t20:12\n";
    const auto result = read(header + "RAW_DATA\t3\t24\n1\tBad\n3\t4\n5\t6\n\nIntensity\t3\t24\n9\t8\n7\t6\n5\t4\n"
                                      "OPD\t3\t24\n1\t1\n1\t1\n1\t3\n");
    ASSERT_TRUE(result) << result.error().reason;
    ASSERT_EQ(result->items.size(), 3u);
    const struct {
        const char *label, *units;
        std::vector<double> values; ///< lines are columns; in wavelengths where they are heights
    } rows[] = {{"Step", "nm", {600, 1800, 3000, 600, 2400, 3600}},
                {"Intensity", "", {9, 7, 5, 8, 6, 4}},
                {"Step", "nm", {600, 600, 600, 600, 600, 1800}}};
    for (std::size_t i = 0; i < 3; ++i) {
        const SPMDataStream& stream = image_at(result, i).stream;
        EXPECT_STREQ(stream.get_description(), rows[i].label);
        EXPECT_STREQ(stream.values.get_axis(0).get_units(), rows[i].units);
        expect_values(stream, rows[i].values);
    }
    EXPECT_STRNE(image_at(result, 0).stream.get_name(), image_at(result, 2).stream.get_name());
    EXPECT_EQ(image_at(result, 0).strings.at("\\Void points"), "1");
    const std::map<std::string, std::string> expected{{"X Size", "3"},
                                                      {"Y Size", "2"},
                                                      {"Pixel_size", "0.5"},
                                                      {"Wavelength", "600"},
                                                      {"Title", "Step"},
                                                      {"Date", "11/06/2020"},
                                                      {"Time", "20:12"},
                                                      {"\\Date", "11/06/2020 20:12"},
                                                      {"\\Text format", "Wyko ASCII"}};
    EXPECT_EQ(result->strings, expected);

    const auto bare = read(wyko(2, 1) + "Sample\n1\t2\n");
    ASSERT_TRUE(bare) << bare.error().reason;
    EXPECT_EQ(bare->strings.at("\\Reader note"), "no Pixel_size in the file: sides are counted in points");
}

TEST(TextTable, AHighTableOverARisingColumnIsNoImage)
{
    const auto rising = [](int lines) {
        std::string text;
        for (int i = 0; i < lines; ++i) {
            for (int column = 0; column < 4; ++column) text += std::to_string(i + 3 * column) + " ";
            text += "\n";
        }
        return text;
    };
    EXPECT_EQ(read(rising(31))->items.size(), 1u); // 4 x 31 could be a tilted surface
    const auto curves = read(rising(100));
    ASSERT_EQ(curves->items.size(), 3u);
    EXPECT_EQ(image_at(curves, 0).stream.get_dimension(0).length, 100u);
}

TEST(TextTable, UnevenXBecomesTheParameterOfItsCurves)
{
    const auto result = read("x [nm]\tForce [nN]\tX [V]\n0\t5\t1\n1\t6\t2\n3\t8\t3\n");
    ASSERT_EQ(result->items.size(), 3u);
    const SPMDataStream& x = image_at(result, 0).stream;
    expect_values(x, {0, 1, 3});
    EXPECT_STREQ(x.values.get_axis(0).get_units(), "nm");
    EXPECT_EQ(x.get_parameter_stream(), nullptr);
    for (std::size_t i = 1; i < 3; ++i) {
        const SPMDataStream& curve = image_at(result, i).stream;
        EXPECT_STREQ(curve.get_parameter_stream(), x.get_name());
        EXPECT_EQ(axis_text(curve.get_dimension(0).get_axis(0)), perPoint);
    }
    expect_values(image_at(result, 1).stream, {5, 6, 8});
}

TEST(TextTable, MissingPointsAreCountedAndNeverHeights)
{
    const auto result = read("1;NaN;-;4\n***;;Bad;-nan(ind)\n7;inf;1.#QNAN;1e999\n9;1e-999;3;2\n");
    const recorded_image& image = image_at(result, 0);
    EXPECT_EQ(image.strings.at("\\Void points"), "9");
    const std::vector<double> values = physical_of(image);
    EXPECT_NEAR(*std::max_element(values.begin(), values.end()), 9.0, 1e-3);
    EXPECT_NEAR(*std::min_element(values.begin(), values.end()), 0.0, 1e-3);
}

TEST(TextTable, PointsWithoutXAreLeftOutWithANote)
{
    const auto result = read("0 5\nNaN 6\n2 7\n4 NaN\n");
    EXPECT_EQ(image_at(result, 0).stream.get_dimension(0).length, 3u);
    EXPECT_EQ(result->strings.at("\\Reader note"), "Points left out because they have no x: 1");
    EXPECT_TRUE(image_at(result, 0).strings.at("\\Void points").starts_with("1 "));
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

TEST(TextTable, ACutMatrixIsNotStretchedOverItsHeight)
{
    const auto result = read("# Channel: Z\n# Width: 8 um\n# Height: 8 um\n# Value units: m\n1 2 3 4\n5 6 7 8\n9 1");
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(image_at(result, 0).stream.get_dimension(1).get_axis(0), VLAxis(0.0, 2.0, um));
    EXPECT_NE(result->strings.at("\\Reader note").find("the step along y is that along x"), std::string::npos);
}

TEST(TextTable, FindsACommaThatTurnsUpLate)
{
    std::string text;
    for (int i = 0; i < 1500; ++i) text += std::to_string(i) + "\t" + std::to_string(i % 7) + "\n";
    const auto result = read(text + "1500\t2,5\n");
    EXPECT_NEAR(physical_of(image_at(result, 0)).back(), 2.5, 1e-3);
}

TEST(TextTable, TellsOfCommasThatCouldPartThousands)
{
    const auto tells = [](const char* row) {
        const auto result = read("1,234\t2,345\n3,456\t4,567\n" + std::string(row) + "\t5,678\n");
        return result && !result->warnings.empty() && result->warnings[0].find("part thousands") != std::string::npos;
    };
    for (const char* row : {"7,890", "7800", "-999,001"}) EXPECT_TRUE(tells(row)) << row;
    for (const char* row : {"0,125", "12,5", "1234,567", "1,2345", "1,234.5", "1,234,567"})
        EXPECT_FALSE(tells(row)) << row;
}

TEST(TextTable, MarksOfThousandsNeverSplitNumbers)
{
    const struct {
        const char *rows, *note;
        std::vector<double> last; ///< values of the last curve
    } cases[] = {
        {"10;1 000,5\n11;1 100,5\n12;-12 200,5\n", "", {1000.5, 1100.5, -12200.5}},
        {"10\t2 370\n11\t2 407\n12\t1 002 500\n", "", {2370, 2407, 1002500}},
        {"10\t370 237\n11\t407 238\n12\t408 239\n", "blanks within the fields", {370237, 407238, 408239}},
        {"10\t900\n11\t1,000\n12\t1,100\n", "", {900, 1000, 1100}},
        {"900\t1,000\n901\t1,007\n902\t1,014\n", "read as parting thousands", {1000, 1007, 1014}},
        {"9001\t1,000\n9002\t1,007\n9003\t1,014\n", "read as decimal marks", {1, 1.007, 1.014}},
        {"1,234\t21,500\n1,345\t-\n1,456\t22,000\n", "read as decimal marks", {21.5, 21.75, 22}},
        {"1\t1,234\n2\t1,345\n3\t1,450\n", "read as decimal marks", {1.234, 1.345, 1.45}},
        {"10;1,234\n11;1,345\n12;0\n", "read as decimal marks", {1.234, 1.345, 0}},
        {"10;900\n11;1,000\n12;1,105\n", "", {900, 1000, 1105}},
        {"10;1,234\n11;1,345\n12;1,234,567\n", "", {1234, 1345, 1234567}},
        {"10;1,234\n11;1,345\n12;900.5\n", "", {1234, 1345, 900.5}},
        {"10;900\n11;1.000\n12;1.105\n", "", {900, 1000, 1105}},
        {"10;900\n11;1.234\n12;1.105\n", "every point could part thousands", {900, 1.234, 1.105}},
        {"10;900\n11;1.234\n12;1.5\n", "", {900, 1.234, 1.5}},
    };
    for (const auto& each : cases) {
        const auto result = read("x\ty\n" + std::string(each.rows));
        ASSERT_TRUE(result && result->items.size() == 1) << each.rows;
        expect_values(image_at(result, 0).stream, each.last);
        const std::string note = result->warnings.empty() ? "" : result->warnings[0];
        EXPECT_TRUE(*each.note ? note.find(each.note) != std::string::npos : note.empty()) << each.rows << note;
    }
}

TEST(TextTable, TellsOfANumberThatIsCutAtTheEnd)
{
    const struct {
        const char *rows, *end, *note; ///< the end without a line end
        std::size_t points;
    } cases[] = {
        {"0,1\t-7999,9482\n0,2\t-7991,9403\n0,3\t-7983,9323\n", "0,4\t-7975,", "\"-7975,\", which is shorter", 4},
        {"0 0.003581\n1 0.003584\n2 0.003585\n", "3 -0", "\"-0\", which is shorter", 4},
        {"0 1.8e-008\n1 1.9e-008\n2 1.7e-008\n", "3 1.5e-0", "\"1.5e-0\", which is shorter", 4},
        {"0 1.8e-008\n1 1.9e-008\n2 1.7e-008\n", "3 1.5e", "The last line, 5, was left out: its last number, \"1.5e\"",
         3},
        {"0 1.25\n1 2.5\n2 3.75\n", "3 1.2", "", 4},
        {"0 125\n1 130\n2 20\n", "3 20", "", 4},
    };
    for (const auto& each : cases) {
        const auto result = read("x\ty\n" + std::string(each.rows) + each.end);
        ASSERT_TRUE(result && result->items.size() == 1) << each.end;
        EXPECT_EQ(image_at(result, 0).stream.get_dimension(0).length, each.points) << each.end;
        const std::string note = result->warnings.empty() ? "" : result->warnings[0];
        EXPECT_TRUE(*each.note ? note.find(each.note) != std::string::npos : note.empty()) << each.end << note;
    }
    EXPECT_TRUE(read("0 0.003581\n1 0.003584\n2 0.003585\n3 -0\n")->warnings.empty()) << "the line is whole";
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
    for (const char* sizes : {"# Width: 1x.00 um\n# Height: 8 um\n", "# Width: 8 um\n# Height: 1x.00 um\n"}) {
        const auto result =
            finish_recording(read(std::string("# Channel: Z\n") + sizes + "# Value units: m\n1 2\n3 4\n"));
        ASSERT_FALSE(result) << sizes;
        EXPECT_NE(result.error().reason.find(" is no number: the stated "), std::string::npos) << result.error().reason;
    }
}

TEST(TextTable, OfACutGridTheWholeLinesAreRead)
{
    const auto result = read("0 0 1\n0 1 2\n0 2 3\n1 0 4\n1 1 5\n1 2 6\n2 0 7\n2 1 8\n");
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(raw_of(image_at(result, 0)), (std::vector<int>{1, 4, 2, 5, 3, 6}));
    EXPECT_EQ(result->warnings[0], "The last line of the grid was left out: it has 2 of its points");
}

TEST(TextTable, TellsOfCommentsThatMayBeDamagedRows)
{
    const auto result = read("y x1 2 3\n1 2 3 4\nfoo 2 3 4\n# 1 2 3\n5 6 7 8\nrow 2 of 3\nl 2 3 4\n");
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(result->strings.at("\\Reader note"),
              "taken for comments although they hold numbers for most columns: 2 lines, the first is line 3");
    for (const char* heading : {"512 x 512 y\n", "Z 1 2 3\n", "4 rows of data\n"})
        EXPECT_TRUE(read(heading + std::string("1 2 3 4\n5 6 7 8\n"))->warnings.empty()) << heading;
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
    cancelled_source file(bytes_of(text));
    const auto result = read_text_table(file);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().reason, "cancelled");
    // A comma far down is another layout: that the first try failed by it is not looked into after a cancel.
    cancelled_source late(bytes_of(text += "1 2 3 4 5 6 7 8 9,5\n"));
    EXPECT_FALSE(read_text_table(late));
    EXPECT_EQ(late.timesRead, 1);
}

} // namespace
