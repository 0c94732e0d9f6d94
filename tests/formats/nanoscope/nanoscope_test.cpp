#include "formats/instrument_fixture.h"
#include "formats/nanoscope/nanoscope_fixture.h"
#include "formats/shared/finish_recording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

using namespace instrument_fixture;
using namespace nanoscope_fixture;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace {

const std::vector<int> heights = {-32768, -1, 0, 1, 2, 300, 32766, 32767};
const std::vector<int> otherHeights = {7, 6, 5, 4, 3, 2, 1, 0};

TEST(Nanoscope, SixteenBitSamplesStayAsTheyAreBottomRowFirst)
{
    file_parts parts;
    parts.images = {height_part(samples16(heights))};
    const auto result = read(build(parts));
    ASSERT_EQ(result->items.size(), 1u);
    const auto& image = image_at(result, 0);
    EXPECT_STREQ(image.stream.get_name(), "Height");
    EXPECT_THAT(raw_of(image), ElementsAreArray(heights));
    expect_image(image, {.label = "Height", .axes = {"0 100 nm", "0 100 nm"}});
    EXPECT_EQ(image.stream.values.get_axis(0), VLAxis(0.0, 20.0 / 65536, "nm"));
    ASSERT_EQ(image.stream.values.get_axes_number(), 2u);
    EXPECT_EQ(image.stream.values.get_axis(1), VLAxis(0.0, 1.0 / 65536, "V"));
    EXPECT_EQ(image.strings.at("\\Z scale"),
              "raw * 0.00030517578125 + 0 [nm] from Z scale = 1 V, Sens. Zsens = 20 nm/V, "
              "raw span = 65536");
}

TEST(Nanoscope, StringsKeepTheLinesUnderTheNamesThatViewsKnow)
{
    file_parts parts;
    parts.images = {height_part(samples16(heights))};
    parts.images[0].lines.insert(parts.images[0].lines.end(), {"\\Note: first", "\\Note: second", "\\Empty:"});
    const auto result = read(build(parts));
    expect_image(image_at(result, 0), {.strings = {{"\\Line direction", "Trace"},
                                                   {"\\Line Direction", "Trace"},
                                                   {"\\Scan rate", "1.5"},
                                                   {"\\Date", "09:57:48 AM Tue Jan 12 2016"},
                                                   {"@2:Z scale", "V [Sens. Zsens] (0.005 V/LSB) 1 V"},
                                                   {"Note", "first / second"},
                                                   {"Empty", ""}}});
    EXPECT_EQ(result->strings.at("Version"), "0x05120000");
    EXPECT_EQ(result->strings.at("\\Scan rate"), "1.5");
    EXPECT_EQ(result->strings.count("@Sens. Zsens"), 0u);
}

TEST(Nanoscope, BothDirectionsOfAScanLineShareOneImage)
{
    file_parts parts;
    parts.images = {height_part(samples16(otherHeights), "Retrace"), height_part(samples16(heights)),
                    height_part(samples16(heights), "Retrace")};
    parts.images[2].lines[3] = "\\Scan Line: Interleave";
    const auto result = read(build(parts));
    ASSERT_TRUE(result);
    ASSERT_EQ(result->items.size(), 2u);
    const auto& both = image_at(result, 0);
    std::vector<int> expected = heights;
    expected.insert(expected.end(), otherHeights.begin(), otherHeights.end());
    EXPECT_THAT(raw_of(both), ElementsAreArray(expected));
    expect_image(both, {.parts = {"Forward", "Reverse"}, .strings = {{"\\Line direction", "Trace / Retrace"}}});
    EXPECT_STREQ(image_at(result, 1).stream.get_name(), "Height_2");
    expect_image(image_at(result, 1), {.parts = {"Reverse"}});
}

TEST(Nanoscope, DirectionsOfDifferentScaleStayApart)
{
    file_parts parts;
    parts.images = {height_part(samples16(heights)), height_part(samples16(heights), "Retrace")};
    parts.images[1].lines[6] = "\\@2:Z scale: V [Sens. Zsens] (0.005 V/LSB) 2 V";
    const auto result = read(build(parts));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->items.size(), 2u);
}

TEST(Nanoscope, ThirtyTwoBitSamplesAreFittedWithinHalfAStep)
{
    const std::vector<std::int32_t> wide = {-2147483647 - 1, 2147483647, 0, 65536, -65537, 123456789, 1, -1};
    file_parts parts;
    parts.fileLines[0] = "\\Version: 0x10000102";
    parts.images = {height_part(samples32(wide)), height_part(samples32(wide), "Retrace")};
    for (image_part& image : parts.images) image.lines.push_back("\\Bytes/pixel: 4");
    const auto result = read(build(parts));
    ASSERT_EQ(result->items.size(), 1u);
    const auto& image = image_at(result, 0);
    std::vector<double> expected;
    for (std::size_t i = 0; i < 16; ++i) expected.push_back(wide[i % 8] * 20.0 / 4294967296.0);
    expect_image(image, {.units = "nm", .values = expected, .isFitted = true});
}

TEST(Nanoscope, WideSamplesThatFitSixteenBitsStayAsTheyAre)
{
    file_parts parts;
    parts.fileLines[0] = "\\Version: 0x09200000"; // with two bytes a pixel: that counts for the scale alone
    parts.images = {height_part(samples32({heights.begin(), heights.end()}))};
    const auto result = read(build(parts));
    EXPECT_THAT(raw_of(image_at(result, 0)), ElementsAreArray(heights));
    EXPECT_EQ(image_at(result, 0).stream.values.get_axis(0), VLAxis(0.0, 20.0 / 65536, "nm"));
}

TEST(Nanoscope, AWideVersionsOwnShapeGoesBeforeAnotherOfTheUsualWidth)
{
    file_parts parts;
    parts.fileLines[0] = "\\Version: 0x09200000";
    parts.scanLines[2] = "\\Samps/line: 2"; // four samples of four bytes are as long as eight of two
    parts.images = {height_part(samples16(heights))};
    const auto result = read(build(parts));
    EXPECT_THAT(raw_of(image_at(result, 0)), ElementsAreArray(heights));
}

TEST(Nanoscope, OffsetsAreWhereTheAxesStart)
{
    file_parts parts;
    parts.scanLines.insert(parts.scanLines.end(), {"\\X Offset: 1500 nm", "\\Y offset: -2 ~m"});
    parts.images = {height_part(samples16(heights)), height_part(samples16(heights))};
    parts.images[1].lines.insert(parts.images[1].lines.end(), {"\\X offset: 7 nm", "\\Y Offset: 3 V"});
    const auto result = read(build(parts));
    expect_image(image_at(result, 0), {.axes = {"1500 100 nm", "-2000 100 nm"}});
    expect_image(image_at(result, 1), {.axes = {"7 100 nm", "0 100 nm"}}); // 3 V are no length

    for (const char* damaged : {"X Offset: 15x0 nm", "Scan Size: 40x 20 nm"}) {
        file_parts torn;
        torn.scanLines.push_back("\\" + std::string(damaged));
        torn.images = {height_part(samples16(heights))};
        std::erase_if(torn.images[0].lines, [](const std::string& line) { return line.starts_with("\\Scan Size"); });
        std::erase(torn.scanLines, "\\Scan Size: 400 nm");
        torn.scanLines.emplace_back("\\Scan Size: 400 nm");
        const auto refused = formats::finish_recording(read(build(torn)));
        ASSERT_FALSE(refused) << damaged;
        const std::string field(damaged, std::string_view(damaged).find(':'));
        EXPECT_NE(refused.error().reason.find("it is told by " + field), std::string::npos) << refused.error().reason;
    }
}

struct shape_case {
    const char *name, *image, *scan; ///< lines of the image list and of the scan list, between "|"
    unsigned width, height;
    double pixelX, pixelY;
    const char* units;
};

void PrintTo(const shape_case& row, std::ostream* out) { *out << row.name; }

std::vector<std::string> header_lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line, '|');) lines.push_back("\\" + line);
    return lines;
}

class NanoscopeShape : public testing::TestWithParam<shape_case> {};

TEST_P(NanoscopeShape, IsFoundFromTheDataLengthAndTheScanList) // of eight 16-bit samples
{
    file_parts parts;
    parts.scanLines = header_lines(std::string("*Ciao scan list|") + GetParam().scan);
    parts.images = {{header_lines(GetParam().image), samples16(heights)}};
    const auto result = read(build(parts));
    const auto& stream = image_at(result, 0).stream;
    EXPECT_EQ(stream.get_dimension(0).length, GetParam().width);
    EXPECT_EQ(stream.get_dimension(1).length, GetParam().height);
    EXPECT_DOUBLE_EQ(stream.get_dimension(0).get_axis(0).scale, GetParam().pixelX);
    EXPECT_DOUBLE_EQ(stream.get_dimension(1).get_axis(0).scale, GetParam().pixelY);
    EXPECT_STREQ(stream.get_dimension(0).get_axis(0).get_units(), GetParam().units);
}

const shape_case shapes[] = {
    {"OneNumberMeansSquare", "Samps/line: 4|Number of lines: 2|Scan Size: 8 nm", "", 4, 2, 2.0, 4.0, "nm"},
    {"MicrometresAsTilde", "Samps/line: 4|Number of lines: 2|Scan size: 8 6 ~m", "", 4, 2, 2.0, 3.0, "\u00B5m"},
    {"SizeOfTheScan", "Samps/line: 2|Number of lines: 4", "Scan size: 8 nm", 2, 4, 4.0, 2.0, "nm"},
    {"RowsAsSecondNumber", "Samps/line: 2 4|Scan size: 8 um", "", 2, 4, 4.0, 2.0, "\u00B5m"},
    {"RowsOfTheScan", "Samps/line: 2|Scan size: 8 nm", "Lines: 4", 2, 4, 4.0, 2.0, "nm"},
    {"WrongInTheImageList", "Samps/line: 512|Number of lines: 512|Scan size: 8 nm", "Samps/line: 4|Lines: 2", 4, 2, 2.0,
     4.0, "nm"},
    {"ValidDataDecide", "Samps/line: 4|Number of lines: 4|Valid data len X: 4|Valid data len Y: 2",
     "Samps/line: 4|Lines: 1", 4, 2, 1.0, 1.0, ""},
    {"PartOfTheLines", "Samps/line: 4|Number of lines: 2|Scan size: 8 8 nm", "Lines: 4", 4, 2, 2.0, 2.0, "nm"},
    {"ResampledCoversAll", "Samps/line: 4|Number of lines: 2|Scan Size: 8 8 nm", "Samps/line: 16|Lines: 8", 4, 2, 2.0,
     4.0, "nm"},
    {"MoreRowsThanTheScanOfSquarePixels", // the scan's settings were changed behind the image
     "Samps/line: 4|Number of lines: 2|Aspect ratio: 1:1|Scan size: 8 4 ~m", "Lines: 1|Aspect ratio: 4:1", 4, 2, 2.0,
     2.0, "\u00B5m"},
    {"MoreRowsThanTheScan", "Samps/line: 4|Number of lines: 2|Aspect ratio: 1:1|Scan size: 8 2 ~m",
     "Samps/line: 4|Lines: 1", 4, 2, 2.0, 2.0, "\u00B5m"},
    {"SlowAxisSize", "Samps/line: 4|Number of lines: 2|Scan Size: 1 1 ~m",
     "Scan Size: 1000 nm|Slow Axis Size: 300 nm|Lines: 2", 4, 2, 250.0, 150.0, "nm"},
    {"CropKeepsItsOwnSize", "Samps/line: 4|Number of lines: 2|Scan Size: 80 40 nm",
     "Scan Size: 1000 nm|Slow Axis Size: 300 nm|Lines: 8", 4, 2, 20.0, 20.0, "nm"},
    {"TailBehindTheSamples", "Samps/line: 3|Number of lines: 2", "", 3, 2, 1.0, 1.0, ""},
    {"NoSize", "Samps/line: 4|Number of lines: 2|Scan Size: 0 nm", "", 4, 2, 0.0, 0.0, ""}, // which is refused later
};

INSTANTIATE_TEST_SUITE_P(Headers, NanoscopeShape, testing::ValuesIn(shapes),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Nanoscope, TheTextVariantGivesTheSameAsTheBinaryOne)
{
    file_parts parts;
    parts.images = {height_part(samples16(heights)), height_part(samples16(otherHeights))};
    const auto binary = read(build(parts));
    parts.magic = "?*File list";
    std::string text = build(parts);
    text.resize(4096);
    for (const auto* values : {&heights, &otherHeights})
        for (const int value : *values) text += std::to_string(value) + (value % 2 ? "\r\n" : " \t");
    const auto result = read(text);
    ASSERT_TRUE(result && binary) << result.error().reason;
    ASSERT_EQ(result->items.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        const auto &ours = image_at(result, i), &other = image_at(binary, i);
        EXPECT_EQ(raw_of(ours), raw_of(other));
        EXPECT_TRUE(ours.stream.values == other.stream.values);
        EXPECT_TRUE(ours.stream.get_dimension(1) == other.stream.get_dimension(1));
    }
}

TEST(Nanoscope, Version2HasOneSquareImage)
{
    std::string file = "Data_File_Type 7\r\nnum_samp = 2\r\nscan_sz = 300\r\nz_scale = 8192\r\nscan_rate = 8.6\r\n"
                       "time = Mon Aug 12 1991\r\nbroken\r\n\x1Az_scale = 1";
    file.resize(2048, '\0');
    file += samples16({1, -2, 3, 4});
    const auto result = read(file);
    const auto& image = image_at(result, 0);
    EXPECT_THAT(raw_of(image), ElementsAre(1, -2, 3, 4));
    EXPECT_EQ(image.stream.values.get_axis(0), VLAxis(0.0, 0.5, "nm"));
    expect_image(image, {.axes = {"0 150 nm", "0 150 nm"}, .strings = {{"\\Scan rate", "8.6"}}});
    EXPECT_EQ(result->strings.at("time"), "Mon Aug 12 1991");
}

TEST(Nanoscope, ImagesOfAForceVolumeAndOfAnElectrochemistryFileAreRead)
{
    file_parts parts;
    parts.magic = "\\*Force file list";
    parts.images = {{{"\\Samps/line: 4 4"}, samples16(otherHeights), "\\*Ciao force image list"},
                    height_part(samples16(heights))};
    auto result = read(build(parts));
    ASSERT_TRUE(result);
    ASSERT_EQ(result->items.size(), 2u);
    EXPECT_THAT(raw_of(image_at(result, 0)), ElementsAreArray(heights));
    parts.magic = "\\*EC File list";
    EXPECT_TRUE(read(build(parts)));
}

} // namespace
