#include "formats/instrument_fixture.h"
#include "formats/nid/nid.h"
#include "formats/shared/bytes.h"
#include "formats/shared/finish_recording.h"

#include <gtest/gtest.h>

namespace {

using namespace instrument_fixture;

/// One channel of a made-up file; numbers of 16 bits are their values.
struct channel_parts {
    std::string frame = "Scan forward", name = "Z-Axis", unit = "m";
    int points = 2, lines = 2, bits = 16;
    std::vector<int> samples = {1, 2, 3, 4};
    std::string extra = {}; ///< further lines, each with its line end
};

std::string build(const std::vector<channel_parts>& channels, const std::string& extra = {},
                  const std::string& gap = {})
{
    std::string set = "[DataSet]\r\nVersion=2\r\nGroupCount=2\r\n", sections, data = gap;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        const channel_parts& channel = channels[i];
        const std::string place = std::to_string(i % 2) + ":" + std::to_string(i / 2);
        // Keys stand in any order; the first digit is the group, which decides about the place of the samples.
        set += "Gr" + place.substr(0, 1) + "-Ch" + place.substr(2) + "=DataSet-" + place + "\r\n";
        sections += "[DataSet-" + place + "]\r\nPoints=" + std::to_string(channel.points) +
                    "\r\nLines=" + std::to_string(channel.lines) + "\r\nFrame=" + channel.frame +
                    "\r\nDim0Name=X*\r\nDim0Unit=m\r\nDim0Min=1e-006\r\nDim0Range=4e-6\r\nDim1Unit=m\r\nDim1Range=6e-6"
                    "\r\nDim2Name=" +
                    channel.name + "\r\nDim2Unit=" + channel.unit +
                    "\r\nDim2Min=-32768\r\nDim2Range=65536\r\nSaveMode=Binary\r\nSaveSign=Signed\r\nSaveOrder="
                    "Intel\r\nSaveBits=" +
                    std::to_string(channel.bits) + "\r\n" + channel.extra + "\r\n";
    }
    for (std::size_t group = 0; group < 2; ++group)
        for (std::size_t i = group; i < channels.size(); i += 2) {
            for (const int sample : channels[i].samples)
                data +=
                    formats::little_endian(static_cast<unsigned>(sample), static_cast<unsigned>(channels[i].bits) / 8);
        }
    return set +
           "SetInfos=DataSet-Info\r\n\r\n[DataSet-Info]\r\n-- Scan --=--------\r\nImage size=10\xB5m\r\n"
           "Date=01-03-2016\r\nTime=18:36:58\r\nScan direction=Up\r\n\r\n"
           "[DataSet\\Calibration\\Cantilever]\r\nProp0=D[48]*[N/m]\r\nProp4=D[500]*[]\r\n\r\n" +
           extra + sections + "\r\n\r\n#!" + data;
}

channel_parts spectroscopy(const std::string& frame, const std::string& name, int lines, std::vector<int> samples,
                           const std::string& extra = {})
{
    channel_parts parts{frame, name};
    parts.points = static_cast<int>(samples.size()) / lines;
    parts.lines = lines;
    parts.samples = std::move(samples);
    parts.extra = extra;
    return parts;
}

/// Lines of deflections on one of both ways.
channel_parts approach_of(int lines, const std::vector<int>& samples, const std::string& extra = {})
{
    return spectroscopy("Spec forward", "Deflection", lines, samples, extra);
}
channel_parts retract_of(int lines, const std::vector<int>& samples, const std::string& extra = {})
{
    return spectroscopy("Spec backward", "Deflection", lines, samples, extra);
}

base::read_result<formats::recording> read(const std::vector<channel_parts>& channels, const std::string& extra = {},
                                           const std::string& gap = {})
{
    return instrument_fixture::read(formats::read_nid, build(channels, extra, gap));
}

TEST(Nid, DirectionsShareAnImageAndEightBitsStayWhole)
{
    channel_parts back{"Scan backward"}, narrow{"Scan forward", "Phase", "\xB0"};
    back.samples = {5, 6, 7, 8};
    narrow.bits = 8;
    narrow.samples = {-128, 0, 1, 127};
    const auto result = read({{}, back, narrow});
    const std::string axes = "(2: 1e-06 + 2e-06 m; 2: 0 + 3e-06 m) "; // the bottom row stands first
    EXPECT_EQ(told(result), "Z-Axis [m] " + axes + "{Forward, Reverse}: 1 2 3 4 5 6 7 8\n" + "Phase [\u00B0] " + axes +
                                "{Forward}: -32768 0 256 32512"); // 8 bits of the same range
    expect_image(image_at(result, 0), {.strings = {{"\\Line direction", "Scan forward / Scan backward"}}});
    EXPECT_EQ(raw_of(image_at(result, 1)), narrow.samples);
    EXPECT_EQ(result->strings.at("\\Date"), "01-03-2016 18:36:58");
    EXPECT_EQ(result->strings.at("Image size"), "10\u00B5m");
    EXPECT_EQ(result->strings.at("Cantilever Prop0"), "48 N/m");

    channel_parts line, lineBack{"Scan backward"}; // one scan line, which is no spectrum
    line.lines = lineBack.lines = 1;
    line.samples = {1, 2}, lineBack.samples = {3, 4};
    EXPECT_EQ(told(read({line, lineBack}, "", "gap")), // samples end with the file
              "Z-Axis [m] (2: 1e-06 + 4e-06 m) {Forward, Reverse}: 1 2 3 4");
    expect_cuts_refused(formats::read_nid, build({{}, {}}));
}

TEST(Nid, WhatWasNotMeasuredTakesTheLowestValue)
{
    const std::string firstLine = "CurLine=0\r\n";
    channel_parts half; // its second line holds nothing, the third the scan before
    half.lines = 3;
    half.samples = {5, 4, 0, 0, 6, 7};
    half.extra = firstLine;
    const auto scan = read({half});
    EXPECT_EQ(raw_of(image_at(scan, 0)), (std::vector<int>{5, 4, 4, 4, 6, 7}));
    EXPECT_EQ(image_at(scan, 0).strings.at("\\Void points"), "2");

    // The third curve of the approach comes after the last one measured, but holds something.
    const auto map =
        read({approach_of(3, {5, 6, 4, 4, 7, 8}, firstLine), retract_of(3, {9, 8, -9, -9, -9, -9}, firstLine)});
    // Both ways lie along the same axis, which ends in contact.
    EXPECT_EQ(told(map),
              "Deflection [m] (2: 5e-06 + -4e-06 m) {Approach 1, Approach 2, Approach 3, Retract 1, Retract 2, "
              "Retract 3}: 6 5 5 5 8 7 8 9 5 5 5 5");
    expect_image(image_at(map, 0),
                 {.strings = {{"\\Recorded order", "Approach: free end first; Retract: free end first"},
                              {"\\Void points", "6"},
                              {"\\Curve lengths", "2 0 2 2 0 0"}}});
    // The one curve that was measured decides about the axis.
    EXPECT_EQ(told(read({approach_of(2, {1, 2, 3, 4}, "LineDim0Points=0\r\n")})),
              "Deflection [m] (2: 5e-06 + -4e-06 m) {Approach 1, Approach 2}: 3 3 4 3");
}

TEST(Nid, ForcesTellHowARetractOnASharedAxisIsStored)
{
    std::vector<int> approach, retract; // the free end first; the contact first, as time goes
    for (int i = 0; i < 100; ++i) approach.push_back(i < 60 ? i % 2 : 50 * (i - 60));
    for (int i = 0; i < 100; ++i) retract.push_back(i < 50 ? 2000 - 50 * i : i % 2);
    for (const bool isInTime : {true, false}) {
        const auto stored = isInTime ? retract : std::vector<int>(retract.rbegin(), retract.rend());
        const auto result =
            read({approach_of(1, approach), retract_of(1, stored), spectroscopy("Spec forward", "Phase", 1, approach),
                  spectroscopy("Spec backward", "Phase", 1, stored)});
        ASSERT_TRUE(result) << result.error().reason;
        for (const std::size_t channel : {0u, 1u}) {
            const std::vector<int> raw = raw_of(image_at(result, channel));
            EXPECT_EQ(std::vector<int>(raw.begin() + 100, raw.end()), retract) << isInTime << channel;
            EXPECT_EQ(image_at(result, channel).strings.at("\\Recorded order"),
                      std::string("Approach: free end first; Retract: ") +
                          (isInTime ? "contact first" : "free end first"));
        }
    }
}

TEST(Nid, WaysOfACurveMayDifferInLengthAndRange)
{
    const auto result = read({approach_of(2, {1, 2, 3, 4, 5, 6}),
                              retract_of(2, {7, 8, 9, 10}, "LineDim0Range=-1e-6\r\nLineDim1Range=-1e-6\r\n")});
    const std::string four = " [m] (3: 0 + 2e-06 m) {Approach 1, Approach 2, Retract 1, Retract 2}";
    EXPECT_EQ(told(result), "X*" + four + ": 5e-06 3e-06 1e-06 5e-06 3e-06 1e-06 1e-06 0 0 1e-06 0 0\nDeflection" +
                                four + " over Deflection_position: 3 2 1 6 5 4 7 8 8 9 10 10");
    for (const std::size_t image : {0u, 1u})
        expect_image(image_at(result, image),
                     {.strings = {{"\\Curve lengths", "3 3 2 2"},
                                  {"\\Recorded order", "Approach: free end first; Retract: contact first"}}});

    channel_parts ragged =
        approach_of(2, {1, 2, 3, 4, 5, 2000000000}, "LineDim1Min=0\r\nLineDim1Range=4e-6\r\nLineDim1Points=2\r\n");
    channel_parts back = retract_of(2, {6, 7, 8, 9, 10, 11});
    ragged.bits = back.bits = 32; // what stands behind the end of a curve must not coarsen the others
    const auto uneven = read({ragged, back});
    ASSERT_EQ(uneven->items.size(), 2u);
    EXPECT_EQ(raw_of(image_at(uneven, 1)), (std::vector<int>{3, 2, 1, 5, 4, 4, 8, 7, 6, 11, 10, 9}));
    EXPECT_EQ(image_at(uneven, 1).strings.at("\\Curve lengths"), "3 2 3 3");
    expect_image(image_at(uneven, 0),
                 {.values = {5e-6, 3e-6, 1e-6, 4e-6, 0, 0, 5e-6, 3e-6, 1e-6, 5e-6, 3e-6, 1e-6}, .isFitted = true});
}

TEST(Nid, OneForceCurveHasApproachAndRetract)
{
    const auto result = read({approach_of(1, {1, 2, 3}), retract_of(1, {4, 5, 6}),
                              spectroscopy("Spec forward", "Z-Axis Sensor", 1, {7, 8, 9}),
                              spectroscopy("Spec backward", "Z-Axis Sensor", 1, {3, 2, 1})});
    // The sensor tells that the retract began where the approach ended; the axis is of neither way alone.
    EXPECT_EQ(told(result), "Deflection [m] (3: 0 + 2e-06 m) {Approach, Retract} over Z-Axis_Sensor: 3 2 1 4 5 6\n"
                            "Z-Axis Sensor [m] (3: 0 + 2e-06 m) {Approach, Retract}: 9 8 7 3 2 1");
}

TEST(Nid, CurvesOnAGridAreAVolumeInTheRightPlaces)
{
    // Points are visited from the upper right corner.
    const std::string positions = "[DataSet\\SpecInfos\\Points]\r\nPos0=2e-6;1e-6;0\r\nPos1=1e-6;1e-6;0\r\n"
                                  "Pos2=2e-6;0;0\r\nPos3=1e-6;0;0\r\n\r\n";
    const channel_parts four = approach_of(4, {1, 2, 3, 4, 5, 6, 7, 8});
    const auto result = read({four}, positions), loose = read({four}),
               scattered = read({approach_of(2, {1, 2, 3, 4})},
                                "[DataSet\\SpecInfos0]\r\nP1=5e-6;9e-6;0\r\nP0=1e-6;2.5e-6;0\r\n\r\n");
    EXPECT_EQ(told(result), "Deflection [m] (2: 5e-06 + -4e-06 m; 2: 1e-06 + 1e-06; 2: 0 + 1e-06) {Approach}: "
                            "8 7 6 5 4 3 2 1");
    EXPECT_FALSE(result->strings.contains("Curve places")); // the axes of the volume tell
    EXPECT_EQ(told(loose), "Deflection [m] (2: 5e-06 + -4e-06 m) {Approach 1, Approach 2, Approach 3, Approach 4}: "
                           "2 1 4 3 6 5 8 7");
    EXPECT_EQ(scattered->strings.at("Curve places"), "1e-06 2.5e-06\n5e-06 9e-06\n");
}

TEST(Nid, ADamagedDirectionLeavesTheOtherOne)
{
    channel_parts back{"Scan backward"};
    back.samples = {5, 6, 7, 8};
    const std::string plain = build({{}, back});
    for (const auto& [from, to] : {std::pair<std::string, std::string>{"Dim2Range=65536", "Dim2Range=nan"},
                                   {"Dim2Min=-32768", "Dim2Min=abc"},
                                   {"Dim0Range=4e-6", "Dim0Range=inf"}}) {
        const auto finished =
            formats::finish_recording(instrument_fixture::read(formats::read_nid, formats::replaced(plain, from, to)));
        ASSERT_TRUE(finished) << to << ": " << finished.error().reason;
        ASSERT_EQ(finished->items.size(), 1u) << to;
        EXPECT_EQ(raw_of(image_at(finished, 0)), back.samples) << to;
        EXPECT_FALSE(finished->warnings.empty()) << to;
    }
}

TEST(Nid, RefusesWhatCannotBe)
{
    const std::string plain = build({{}});
    const auto curve_of = [](const std::string& points) {
        return build({approach_of(2, {1, 2, 3, 4}, "LineDim1Points=" + points + "\r\n")});
    };
    const auto with = [&](const std::string& from, const std::string& to) {
        return formats::replaced(plain, from, to);
    };
    expect_refused(
        formats::read_nid,
        {
            {with("Dim0Range=4e-6", "Dim0Range=0"), "the scale of axis 1 is 0: it is told by Dim0Range"},
            {with("Dim1Range=6e-6", "Dim1Range=six"), "the scale of axis 2 is no number"},
            {with("Dim0Min=1e-006", "Dim0Min=inf"), "the start of axis 1 is infinite: it is told by Dim0Min"},
            {with("Dim2Range=65536", "Dim2Range=0"), "the scale of the values is 0: it is told by Dim2Range, Dim2Min"},
            {with("GroupCount=2", "GroupCount=1001"), "GroupCount is above 1000"},
            {with("GroupCount=2", "GroupCount=-1"), "GroupCount is missing or 0"},
            {with("Points=2", "Points=0"), "[DataSet-0:0]: Points or Lines is missing or 0"},
            {with("Lines=2", "Lines=70000"), "Points or Lines is above 65536"},
            {with("Points=2", "Points=60000"), "reach beyond the end of the file"},
            {with("Points=2", "Points=99999999999"), "Points or Lines is missing or 0"},
            {with("SaveMode=Binary", "SaveMode=Text"), "SaveMode is not Binary"},
            {with("Signed", "Unsigned"), "SaveSign is not Signed"},
            {with("Intel", "Motorola"), "SaveOrder is not Intel"},
            {with("SaveBits=16", "SaveBits=12"), "SaveBits is not 8, 16 or 32"},
            {with("Dim2Range=65536", "Dim2Range=inf"), "Dim2Range or Dim2Min is not finite"},
            {with("Dim2Range=65536", "Dim2Range=2,5"), "Dim2Range, \"2,5\", is no number"},
            {with("Dim2Min=-32768", "Dim2Min="), "Dim2Min, \"\", is no number"},
            {with("[DataSet-0:0]", "[DataSet-0:9]"), "[DataSet-0:0]: is missing"},
            {with("Ch0=DataSet-0:0", "Ch0="), "Gr0-Ch0 names no section"},
            {with("Gr0-Ch0", "Gr0-Cx0"), "no channel is listed"},
            {curve_of("3"), "[DataSet-0:0]: LineDim1Points is not from 0 to Points"},
            {curve_of("1.5"), "[DataSet-0:0]: LineDim1Points is not from 0 to Points"},
            {with("#!", "##"), "the end of the header"},
        });
}

} // namespace
