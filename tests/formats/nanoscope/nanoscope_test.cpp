#include "formats/instrument_fixture.h"
#include "formats/nanoscope/nanoscope.h"
#include "formats/nanoscope/nanoscope_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

using namespace instrument_fixture;
using namespace nanoscope_fixture;
using testing::ElementsAreArray;

namespace {

const std::vector<int> heights = {-32768, -1, 0, 1, 2, 300, 32766, 32767};
const std::vector<int> otherHeights = {7, 6, 5, 4, 3, 2, 1, 0};
const std::string shape = "Height [nm] (4: 0 + 100 nm; 2: 0 + 100 nm) ", values = "-32768 -1 0 1 2 300 32766 32767";

TEST(Nanoscope, SixteenBitSamplesStayAsTheyAreBottomRowFirst)
{
    file_parts parts;
    parts.images = {height_part(samples16(heights))};
    parts.images[0].lines.insert(parts.images[0].lines.end(), {"\\Note: first", "\\Note: second", "\\Empty:"});
    const auto result = read(build(parts));
    EXPECT_EQ(told(result), shape + "{Forward}: " + values);
    const auto& image = image_at(result, 0);
    EXPECT_EQ(image.stream.values.get_axis(0), VLAxis(0.0, 1.0, "nm"));
    EXPECT_EQ(image.stream.values.get_axis(1), VLAxis(0.0, 1.0 / 65536, "V"));
    expect_image(image, {.strings = {{"\\Line direction", "Trace"},
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
    EXPECT_EQ(told(result),
              shape + "{Forward, Reverse}: " + values + " 7 6 5 4 3 2 1 0\n" + shape + "{Reverse}: " + values);
    expect_image(image_at(result, 0), {.strings = {{"\\Line direction", "Trace / Retrace"}}});
    EXPECT_STREQ(image_at(result, 1).stream.get_name(), "Height_2");
    parts.images.pop_back();
    parts.images[1].lines[6] = "\\@2:Z scale: V [Sens. Zsens] (0.005 V/LSB) 2 V";
    EXPECT_EQ(read(build(parts))->items.size(), 2u) << "of different scales";
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
    for (std::size_t i = 0; i < 16; ++i) expected.push_back(wide[i % 8] / 65536.0);
    expect_image(image, {.values = expected, .isFitted = true});
}

TEST(Nanoscope, AWideVersionIsReadInTheWidthThatFitsItsShape)
{
    file_parts parts;
    parts.fileLines[0] = "\\Version: 0x09200000"; // with two bytes a pixel: that counts for the scale alone
    parts.images = {height_part(samples32({heights.begin(), heights.end()}))};
    EXPECT_EQ(told(read(build(parts))), shape + "{Forward}: " + values);
    parts.scanLines[2] = "\\Samps/line: 2"; // four samples of four bytes are as long as eight of two
    parts.images = {height_part(samples16(heights))};
    EXPECT_EQ(told(read(build(parts))), shape + "{Forward}: " + values);
}

TEST(Nanoscope, OffsetsAreWhereTheAxesStart)
{
    file_parts parts;
    parts.scanLines.insert(parts.scanLines.end(), {"\\X Offset: 1500 nm", "\\Y offset: -2 ~m"});
    parts.images = {height_part(samples16(heights)), height_part(samples16(heights))};
    parts.images[1].lines.insert(parts.images[1].lines.end(), {"\\X offset: 7 nm", "\\Y Offset: 3 V"});
    const auto result = read(build(parts));
    EXPECT_EQ(told(result),
              "Height [nm] (4: 1500 + 100 nm; 2: -2000 + 100 nm) {Forward}: " + values +
                  "\nHeight [nm] (4: 7 + 100 nm; 2: 0 + 100 nm) {Forward}: " + values); // 3 V are no length

    for (const char* field : {"X Offset", "Scan Size"}) {
        file_parts torn;
        torn.scanLines.insert(torn.scanLines.begin() + 1, "\\" + std::string(field) + ": 40x 20 nm");
        torn.images = {height_part(samples16(heights))};
        std::erase_if(torn.images[0].lines, [](const std::string& line) { return line.starts_with("\\Scan Size"); });
        expect_refused(formats::read_nanoscope, {{build(torn), "it is told by " + std::string(field)}});
    }
}

std::vector<std::string> header_lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line, '|');) lines.push_back("\\" + line);
    return lines;
}

TEST(Nanoscope, ShapesAreFoundFromTheDataLengthAndTheScanList) // of eight 16-bit samples
{
    const std::string both = "Samps/line: 4|Number of lines: 2|";
    const std::string rows[][3] = {
        // lines of the image list and of the scan list, between "|"; the axes
        {both + "Scan Size: 8 nm", "", "4: 0 + 2 nm; 2: 0 + 4 nm"}, // one number means square
        {both + "Scan size: 8 6 ~m", "", "4: 0 + 2 \u00B5m; 2: 0 + 3 \u00B5m"},
        {"Samps/line: 2|Number of lines: 4", "Scan size: 8 nm", "2: 0 + 4 nm; 4: 0 + 2 nm"},
        {"Samps/line: 2 4|Scan size: 8 um", "", "2: 0 + 4 \u00B5m; 4: 0 + 2 \u00B5m"}, // rows as second number
        {"Samps/line: 2|Scan size: 8 nm", "Lines: 4", "2: 0 + 4 nm; 4: 0 + 2 nm"},
        {"Samps/line: 512|Number of lines: 512|Scan size: 8 nm", "Samps/line: 4|Lines: 2", "4: 0 + 2 nm; 2: 0 + 4 nm"},
        {"Samps/line: 4|Number of lines: 4|Valid data len X: 4|Valid data len Y: 2", "Samps/line: 4|Lines: 1", "4; 2"},
        {both + "Scan size: 8 8 nm", "Lines: 4", "4: 0 + 2 nm; 2: 0 + 2 nm"},                // a part of the lines
        {both + "Scan Size: 8 8 nm", "Samps/line: 16|Lines: 8", "4: 0 + 2 nm; 2: 0 + 4 nm"}, // resampled: covers all
        // More rows than the scan: its settings were changed behind the image when pixels are square.
        {both + "Aspect ratio: 1:1|Scan size: 8 4 ~m", "Lines: 1|Aspect ratio: 4:1",
         "4: 0 + 2 \u00B5m; 2: 0 + 2 \u00B5m"},
        {both + "Aspect ratio: 1:1|Scan size: 8 2 ~m", "Samps/line: 4|Lines: 1", "4: 0 + 2 \u00B5m; 2: 0 + 2 \u00B5m"},
        {both + "Scan Size: 1 1 ~m", "Scan Size: 1000 nm|Slow Axis Size: 300 nm|Lines: 2",
         "4: 0 + 250 nm; 2: 0 + 150 nm"},
        {both + "Scan Size: 80 40 nm", "Scan Size: 1000 nm|Slow Axis Size: 300 nm|Lines: 8",
         "4: 0 + 20 nm; 2: 0 + 20 nm"},
        {"Samps/line: 3|Number of lines: 2", "", "3; 2"},     // a tail behind the samples
        {both + "Scan Size: 0 nm", "", "4: 0 + 0; 2: 0 + 0"}, // which is refused later
    };
    for (const auto& [image, scan, axes] : rows) {
        file_parts parts;
        parts.scanLines = header_lines("*Ciao scan list|" + scan);
        parts.images = {{header_lines(image), samples16(heights)}};
        EXPECT_THAT(told(read(build(parts))), testing::StartsWith("Image (" + axes + ")")) << image << " of " << scan;
    }
}

TEST(Nanoscope, TheTextVariantGivesTheSameAsTheBinaryOne)
{
    file_parts parts;
    parts.images = {height_part(samples16(heights)), height_part(samples16(otherHeights))};
    const auto binary = read(build(parts));
    parts.magic = "?*File list";
    std::string text = build(parts);
    text.resize(4096);
    for (const auto* each : {&heights, &otherHeights})
        for (const int value : *each) text += std::to_string(value) + (value % 2 ? "\r\n" : " \t");
    const auto result = read(text);
    ASSERT_TRUE(result && binary) << result.error().reason;
    EXPECT_EQ(told(result), told(binary));
}

TEST(Nanoscope, TellsOfSamplesThatNoImageTakes)
{
    file_parts longer;
    longer.images = {height_part(samples16(heights) + samples16({1, 2, 3, 4}))}; // 4 x 2 of 12 samples
    EXPECT_THAT(image_at(read(build(longer)), 0).notes,
                testing::ElementsAre("Samps/line times Number of lines, 4 x 2, takes 16 bytes, Data length states 24"));
    file_parts lost;
    lost.images = {height_part(samples16(heights)), height_part(samples16(otherHeights), "Retrace")};
    EXPECT_TRUE(read(build(lost))->warnings.empty());
    lost.images[1].list = "\\*Ciao imxge list";
    EXPECT_THAT(read(build(lost))->warnings,
                testing::ElementsAre("16 bytes of samples belong to no image list: an image may be lost"));
    file_parts text = longer;
    text.magic = "?*File list";
    text.images[0].samples.clear();
    const std::string header = build(text).substr(0, 4096), numbers = "1 2 3 4 5 6 7 8 ";
    EXPECT_TRUE(read(header + numbers)->warnings.empty());
    EXPECT_EQ(read(header + numbers + "9 ")->warnings.size(), 1u);
}

TEST(Nanoscope, Version2HasOneSquareImage)
{
    std::string file = "Data_File_Type 7\r\nnum_samp = 2\r\nscan_sz = 300\r\nz_scale = 8192\r\nscan_rate = 8.6\r\n"
                       "time = Mon Aug 12 1991\r\nbroken\r\n\x1Az_scale = 1";
    file.resize(2048, '\0');
    file += samples16({1, -2, 3, 4});
    const auto result = read(file);
    EXPECT_EQ(told(result), "Height [nm] (2: 0 + 150 nm; 2: 0 + 150 nm): 0.5 -1 1.5 2");
    expect_image(image_at(result, 0), {.strings = {{"\\Scan rate", "8.6"}}});
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
