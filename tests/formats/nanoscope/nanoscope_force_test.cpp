#include "formats/instrument_fixture.h"
#include "formats/nanoscope/nanoscope_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;
using namespace nanoscope_fixture;
using testing::ElementsAre;

/// 0.5 V a raw step, 20 nm/V, 0.25 N/m: 2.5 nN a step. The ramp is 2 V times 10 nm/V.
image_part force_part(const std::string& samples, std::vector<std::string> lines)
{
    lines.insert(lines.end(), {"\\Spring Constant: 0.25", "\\@4:Image Data: S [DeflectionError] \"Deflection Error\"",
                               "\\@4:Z scale: V [Sens. DeflSens] (0.5 V/LSB) 7 V",
                               "\\@4:Ramp size: V [Sens. Zsens] (0.1 V/LSB) 2 V"});
    return {lines, samples, "\\*Ciao force image list"};
}

file_parts force_file(const std::vector<image_part>& channels)
{
    file_parts parts;
    parts.magic = "\\*Force file list";
    parts.scanLines = {"\\*Ciao scan list", "\\Operating mode: Force",   "\\Scan Size: 6 nm",
                       "\\Lines: 2",        "\\@Sens. Zsens: V 10 nm/V", "\\@Sens. DeflSens: V 20 nm/V"};
    parts.images = channels;
    return parts;
}

TEST(NanoscopeForce, CurvesRunFromTheContactAndKeepAllTheirScales)
{
    const auto result = read(build(force_file({force_part(samples16({3, 2, 1, 6, 5, 4}), {"\\Samps/line: 3 3"})})));
    EXPECT_EQ(told(result), "Deflection Error [nN] (3: 20 + -10 nm) {Approach, Retract}: 7.5 5 2.5 15 12.5 10");
    const auto& image = image_at(result, 0);
    EXPECT_EQ(image.stream.values.get_axis(1), VLAxis(0, 10, "nm"));
    EXPECT_EQ(image.stream.values.get_axis(2), VLAxis(0, 0.5, "V"));
    EXPECT_EQ(image.strings.at("\\Recorded order"), "Approach: contact first; Retract: contact first");

    file_parts parts = force_file({force_part(samples32({70000, 0, 3, 5}), {"\\Samps/line: 2", "\\Bytes/pixel: 2"})});
    parts.fileLines[0] = "\\Version: 0x09200000"; // has wide samples
    const auto wide = read(build(parts));
    expect_image(image_at(wide, 0), {.values = {175000, 0, 7.5, 12.5}, .isFitted = true});
}

TEST(NanoscopeForce, WaysOfDifferentCountsShareAnImageOverTheirRampsAndAHoldStandsAlone)
{
    const image_part deflection = force_part(samples16({3, 2, 1, 6, 5, 7, 8, 9}), {"\\Samps/line: 3 2"});
    ASSERT_FALSE(read(build(force_file({deflection})))); // hold samples are told in the force list
    file_parts parts = force_file({deflection, deflection});
    parts.scanLines.push_back("\\*Ciao force list");
    parts.scanLines.push_back("\\Hold Samples: 3");
    const auto held = read(build(parts));
    const std::string shape = " [nN] (3: 20 + -10 nm) {Approach, Retract}", values = ": 7.5 5 2.5 15 12.5 12.5\n";
    const std::string channel = "Deflection Error" + shape + " over Ramp" + values +
                                "Deflection Error Hold [nN] (3) {Hold}: 17.5 20 22.5\n";            // as stored
    EXPECT_EQ(told(held), channel + channel + "Ramp [nm] (3) {Approach, Retract}: 20 10 0 20 0 0"); // 2 V of 10 nm/V
    expect_image(image_at(held, 0), {.strings = {{"\\Curve lengths", "3 2"}}});

    parts.images[1].lines[2] = "\\@4:Image Data: S [ZSensor] \"Height Sensor\"";
    EXPECT_TRUE(told(read(build(parts))).starts_with("Deflection Error" + shape + " over Height_Sensor" + values));
}

TEST(NanoscopeForce, ARetractOfAnotherCountInAVolumeHasItsOwnAxis)
{
    file_parts parts = force_file({force_part(samples16({3, 2, 1, 6, 5, 13, 12, 11, 16, 15}), {"\\Samps/line: 3 2"})});
    parts.scanLines[1] = "\\Operating mode: Force Volume";
    parts.scanLines.insert(parts.scanLines.end(), {"\\X Offset: 2 nm", "\\*Ciao force list", "\\force/line: 1 0"});
    const std::string grid = " nm; 1: 2 + 6 nm; 2: 0 + 3 nm)"; // both ways have the same ramp
    EXPECT_EQ(told(read(build(parts))),
              "Deflection Error [nN] (3: 20 + -10" + grid + " {Approach}: 7.5 5 2.5 32.5 30 27.5\n" +
                  "Deflection Error Retract [nN] (2: 20 + -20" + grid + " {Retract}: 15 12.5 40 37.5");
}

TEST(NanoscopeForce, VolumesHaveTheCurveFirst)
{
    // Both ways of points 1 to 6.
    file_parts parts = force_file(
        {force_part(samples16({2, 1, 12, 11, 4, 3, 14, 13, 6, 5, 16, 15, 8, 7, 18, 17, 2, 2, 2, 2, 3, 3, 3, 3}),
                    {"\\Samps/line: 2 2"})});
    parts.scanLines[1] = "\\Operating mode: Force Volume";
    parts.scanLines.insert(parts.scanLines.end(), {"\\*Ciao force list", "\\force/line: 3 0"});
    EXPECT_EQ(told(read(build(parts))),
              "Deflection Error [nN] (2: 20 + -20 nm; 3: 0 + 2 nm; 2: 0 + 3 nm) {Approach, Retract}: "
              "5 2.5 10 7.5 15 12.5 20 17.5 5 5 7.5 7.5 30 27.5 35 32.5 40 37.5 45 42.5 5 5 7.5 7.5");
}

TEST(NanoscopeForce, BiasRampsTimeAndMeasuredHeightsReplaceTheRamp)
{
    image_part bias =
        force_part(samples16({2, 1}), {"\\Samps/line: 2 0", "\\@4:Ramp channel: S [DCBias] \"DC Sample Bias\"",
                                       "\\@4:Ramp Begin DC Sample Bias: V (0.1 V/LSB) -1 V",
                                       "\\@4:Ramp End DC Sample Bias: V (0.1 V/LSB) 3 V"});
    image_part time = force_part(samples16({2, 1}), {"\\Samps/line: 2 0", "\\X Data Type: Time"});
    image_part height = force_part(samples16({5, 9}), {"\\Samps/line: 2 0"});
    height.lines[2] = "\\@4:Image Data: S [ZSensor] \"Height Sensor\"";
    const auto result = read(build(force_file({bias, time, height})));
    EXPECT_EQ(told(result), "Deflection Error [nN] (2: -1 + 4 V) {Approach} over Height_Sensor: 2.5 5\n"
                            "Deflection Error [nN] (2) {Approach} over Height_Sensor: 5 2.5\n" // time, as stored
                            "Height Sensor [nm] (2: 20 + -20 nm) {Approach}: 50 90");
    EXPECT_FALSE(image_at(result, 0).strings.contains("\\Recorded order")); // no probe moves to a contact
}

TEST(NanoscopeForce, NumbersThatAreNoneAreTold)
{
    const struct {
        std::string from, to, note;
        VLAxis values, ramp;
    } rows[] = {
        {"(0.5 V/LSB)", "(abc V/LSB)", "the hard scale in Z", {0, 7 * 20 / 65536.0 * 0.25, "nN"}, {20, -10, "nm"}},
        {"Spring Constant: 0.25", "Spring Constant: nan", "Spring Constant is 0 or no", {0, 10, "nm"}, {20, -10, "nm"}},
        {"DeflSens: V 20 nm/V", "DeflSens: V abc", "Sens. DeflSens is no number", {0, 0.5, "V"}, {20, -10, "nm"}},
        {"Zsens: V 10 nm/V", "Zsens: V 0 nm/V", "Sens. Zsens is 0 or no number", {0, 2.5, "nN"}, {2, -1, "V"}},
        {"(0.1 V/LSB) 2 V", "(0.1 V/LSB) 0 V", "Ramp Size is 0 or no number", {0, 2.5, "nN"}, {}},
    };
    const std::string file = build(force_file({force_part(samples16({3, 2, 1, 6, 5, 4}), {"\\Samps/line: 3 3"})}));
    for (const auto& row : rows) {
        std::string to = row.to;
        to.resize(row.from.size(), ' ');
        const auto result = read(formats::replaced(file, row.from, to));
        ASSERT_TRUE(result) << row.to << result.error().reason;
        const auto& image = image_at(result, 0);
        EXPECT_THAT(image.notes, ElementsAre(testing::HasSubstr(row.note))) << row.to;
        const VLAxis& values = image.stream.values.get_axis(0);
        EXPECT_NEAR(values.scale, row.values.scale, 1e-9) << row.to;
        EXPECT_STREQ(values.get_units(), row.values.get_units()) << row.to;
        EXPECT_EQ(image.stream.get_dimension(0).get_axis(0), row.ramp) << row.to;
    }
}

TEST(NanoscopeForce, TrenchRowsKeepTheirLengths)
{
    const std::string rows = samples16({2, 10, 20, 3, 30, 40, 50});
    const file_parts told = force_file({force_part(rows, {"\\Start context: FOLVAR"})});
    file_parts toldInTheFileList = force_file({force_part(rows, {})});
    toldInTheFileList.fileLines.push_back("\\Start context: FOLVAR");
    for (const file_parts& parts : {told, toldInTheFileList}) {
        const auto result = read(build(parts));
        EXPECT_THAT(raw_of(image_at(result, 0)), ElementsAre(10, 20, 20, 30, 40, 50));
        EXPECT_EQ(image_at(result, 0).strings.at("\\Curve lengths"), "2 3");
    }
}

} // namespace
