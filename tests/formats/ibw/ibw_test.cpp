#include "formats/ibw/ibw.h"
#include "formats/instrument_fixture.h"
#include "formats/shared/bytes.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

using namespace formats;
using namespace instrument_fixture;

/// A wave of version 5, little-endian, with a checksum that fits.
struct wave {
    unsigned type = 2;
    std::vector<unsigned> dimensions;
    std::string numbers, units = "m", xUnits, yUnits, note, footer;
    std::vector<std::string> labels[4]; ///< of the items
    int statedPoints = -1;
    double step = 0.5, start = 3;
    unsigned created = 0;

    std::string bytes() const
    {
        unsigned points = dimensions.empty() ? 0 : 1;
        for (const unsigned each : dimensions) points *= each;
        bytes_builder head;
        head.put(0, std::uint16_t{5}).put(4, static_cast<unsigned>(320 + numbers.size()));
        head.put(12, static_cast<unsigned>(note.size())).put(68, created);
        head.put(76, statedPoints < 0 ? points : static_cast<unsigned>(statedPoints))
            .add(static_cast<std::uint16_t>(type));
        head.text(92, "made").text(212, units).text(216, xUnits).text(220, yUnits).seek(384);
        std::string labelTexts;
        for (std::size_t i = 0; i < 4; ++i) {
            std::string text(labels[i].empty() ? 0 : 32, '\0');
            for (const std::string& label : labels[i]) text += label + std::string(32 - label.size(), '\0');
            head.put(36 + 4 * i, static_cast<unsigned>(text.size())).put(148 + 8 * i, step).put(180 + 8 * i, start);
            head.put(132 + 4 * i, i < dimensions.size() ? dimensions[i] : 0u);
            labelTexts += text;
        }
        unsigned sum = 0;
        for (std::size_t i = 0; i < head.content.size(); i += 2)
            sum += static_cast<unsigned char>(head.content[i]) + 256u * static_cast<unsigned char>(head.content[i + 1]);
        head.put(2, static_cast<std::uint16_t>(0x10000u - (sum & 0xFFFF)));
        return head.content + numbers + note + labelTexts + footer;
    }
};

std::string floats(const std::vector<float>& numbers) { return in_bytes<float>(numbers); }

base::read_result<recording> read(const wave& made) { return instrument_fixture::read(read_ibw, made.bytes()); }

/// Layers of two points of the microscope's program, the numbers 0, 1, 2 …
wave layers(const std::vector<std::string>& labels, const std::string& note = {})
{
    wave made;
    made.dimensions = {2, 1, static_cast<unsigned>(labels.size())};
    for (std::size_t i = 0; i < 2 * labels.size(); ++i) made.numbers += le_float(static_cast<float>(i));
    made.labels[2] = labels;
    made.xUnits = made.yUnits = "m";
    made.footer = "IsImage:1; 0312 MFP3D";
    made.note = note;
    return made;
}

/// Columns of force curves over the time.
wave forces(unsigned points, const std::vector<std::string>& labels, const std::string& numbers,
            const std::string& note)
{
    wave made;
    made.dimensions = {points, static_cast<unsigned>(labels.size())};
    made.numbers = numbers;
    made.labels[1] = labels;
    made.xUnits = "s";
    made.footer = "Force";
    made.note = note;
    return made;
}

TEST(Ibw, LayersAreChannelsAndDirectionsShareAnImage)
{
    const auto result = read(layers({"HeightTrace", "PhaseTrace", "HeightRetrace"},
                                    "ScanRate: 2\rDate: 2021-10-11\rTime: 10:00\rScanRate@Line: 4\r"));
    EXPECT_EQ(told(result), "Height [m] (2: 3 + 0.5 m; 1: 3 + 0.5 m) {Forward, Reverse}: 0 1 4 5\n"
                            "Phase [\u00B0] (2: 3 + 0.5 m; 1: 3 + 0.5 m) {Forward}: 2 3");
    EXPECT_EQ(result->strings.at("\\Scan rate"), "2");
    EXPECT_EQ(result->strings.at("\\Date"), "2021-10-11 10:00");
}

TEST(Ibw, ForceCurvesAreCutIntoTheirSegments)
{
    const auto result = read(forces(5, {"Defl", "ZSnsr"}, floats({1, 2, 3, 2, 1, 10, 20, 30, 25, 15}),
                                    "Indexes: 0,3,4,\rDirection: Nan,1,-1,\rSpringConstant: 2\r"));
    EXPECT_EQ(told(result), "Defl [m] (3: 0 + 0.5 s) {Approach, Retract} over ZSnsr: 3 2 1 2 1 1\n"
                            "ZSnsr [m] (3: 0 + 0.5 s) {Approach, Retract}: 30 20 10 25 15 15");
    const recorded_image& deflection = image_at(result, 0);
    expect_image(deflection, {.strings = {{"\\Recorded order", "Approach: free end first; Retract: contact first"},
                                          {"\\Curve lengths", "3 2"}}});
    EXPECT_EQ(deflection.stream.values.get_axis(1), VLAxis(0, 2, "N"));
}

TEST(Ibw, BadIndexesDoNotLoseTheOtherSegments)
{
    const struct {
        std::string indexes, directions;
        std::vector<std::string> names;
        const char* lengths; ///< equal ones are not told
    } rows[] = {
        {"0,3,Nan,6", "NaN,1,0,-1", {"Approach", "Retract"}, ""},
        {"0,3,3,5", "NaN,1,0,-1,", {"Approach", "Retract"}, ""},
        {"0,2,5,3,6", "NaN,1,0,1,-1", {"Approach", "Dwell", "Retract"}, "2 3 1"},
        {"0,2,5,9", "NaN,1,-1,1", {"Approach", "Retract", "Approach 2"}, "2 3 1"},
        {"0,0.5,4,6", "NaN,0,1,-1", {"Approach", "Retract"}, "4 2"},
        {"0,Nan,5", "NaN,1,-1", {}, ""},
    };
    for (const auto& row : rows) {
        const auto result = read(forces(6, {"Defl"}, floats({1, 2, 3, 4, 5, 6}),
                                        "Indexes: " + row.indexes + "\rDirection: " + row.directions + "\r"));
        SCOPED_TRACE(row.indexes);
        EXPECT_EQ(subimages_of(image_at(result, 0)), row.names);
        expect_image(image_at(result, 0), {.strings = {{"\\Curve lengths", row.lengths}}});
    }
}

TEST(Ibw, LabelsKeepWhatIsNeitherChannelNorDirection)
{
    wave made =
        layers({"HeightTraceMod0", "HeightRetraceMod0", "HeightTraceMod1", "UserIn0TraceMod1"}, "UserIn0Unit: nA\r");
    const auto result = read(made);
    const std::string axes = "(2: 3 + 0.5 m; 1: 3 + 0.5 m) ";
    EXPECT_EQ(told(result), "HeightMod0 [m] " + axes + "{Forward, Reverse}: 0 1 2 3\nHeightMod1 [m] " + axes +
                                "{Forward}: 4 5\nUserIn0Mod1 [nA] " + axes + "{Forward}: 6 7");
    const char* const scales[] = {"raw * 1 + 0 [m] from the channel's name, Height",
                                  "raw * 1 + 0 [m] from the channel's name, Height",
                                  "raw * 1 + 0 [nA] from UserIn0Unit"};
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(image_at(result, i).strings.at("\\Z scale"), scales[i]);
    made.footer = made.note = "";
    EXPECT_TRUE(image_at(read(made), 0).strings.at("\\Z scale").ends_with("from wave made"));
}

TEST(Ibw, ImagesLieAtTheOffsetOfTheScan)
{
    const std::tuple<double, const char*, const char*> rows[] = {{0, "m", "2: 2e-06 + 0.5 m; 1: -3e-06 + 0.5 m"},
                                                                 {0, "um", "2: 2 + 0.5 \u00B5m; 1: -3 + 0.5 \u00B5m"},
                                                                 {1, "m", "2: 1 + 0.5 m; 1: 1 + 0.5 m"},
                                                                 {0, "s", "2: 0 + 0.5 s; 1: 0 + 0.5 s"}};
    wave made = layers({"HeightTrace"}, "XOffset: 2e-06\rYOffset: -3e-06\r");
    for (const auto& [start, units, axes] : rows) {
        made.start = start;
        made.xUnits = made.yUnits = units;
        EXPECT_EQ(told(read(made)), "Height [m] (" + std::string(axes) + ") {Forward}: 0 1");
    }
    made.start = 0, made.xUnits = made.yUnits = "m", made.footer = ""; // of another program
    EXPECT_EQ(axis_text(image_at(read(made), 0), 0), "0 0.5 m");
}

TEST(Ibw, DeflectionsHaveForceAndVoltsToo)
{
    const auto result = read(layers({"DeflectionTrace", "HeightTrace"}, "SpringConstant: 2\rInvOLS: 5e-08\r"));
    const auto& axes = image_at(result, 0).stream.values;
    ASSERT_EQ(axes.get_axes_number(), 3u);
    EXPECT_EQ(axes.get_axis(1), VLAxis(0, 2, "N"));
    EXPECT_STREQ(axes.get_axis(2).get_units(), "V");
    EXPECT_NEAR(axes.get_axis(2).scale, 2e7, 1e-3); // one metre; 50 nm are one volt
    EXPECT_EQ(image_at(result, 1).stream.values.get_axes_number(), 1u);
}

TEST(Ibw, NotesKeepLinesWithoutKeyAndTheDateComesFromTheHeaderElse)
{
    const unsigned second = 86400 + 3600 + 2 * 60 + 3;
    const struct {
        unsigned created; ///< seconds since 1904
        const char* note;
        std::map<std::string, std::string> strings;
    } rows[] = {
        {second,
         "Rate: 2\nBase: a:b\nTime:3:52:01 PM\n",
         {{"Rate", "2"}, {"Base", "a:b"}, {"Time", "3:52:01 PM"}, {"\\Date", "1904-01-02 01:02:03"}}},
        {second,
         "A scan\r\nof 22:53:08\r\n\r\nDate: 1\r\nTime: 2",
         {{"Note", "A scan\nof 22:53:08"}, {"Date", "1"}, {"Time", "2"}, {"\\Date", "1 2"}}},
        {second,
         "2021-10-11T22:53:08\rNote: own\r10:2",
         {{"Note", "own\n2021-10-11T22:53:08\n10:2"}, {"\\Date", "1904-01-02 01:02:03"}}},
        {3716812321, "", {{"\\Date", "2021-10-11 15:52:01"}}}, // of a recording of 3:52:01 PM
        {0, "", {}},
    };
    for (const auto& row : rows) {
        wave made;
        made.dimensions = {1};
        made.numbers = floats({1});
        made.note = row.note;
        made.created = row.created;
        const auto result = read(made);
        ASSERT_TRUE(result) << result.error().reason;
        EXPECT_EQ(result->strings, row.strings) << row.note;
    }
}

TEST(Ibw, NumbersOfEveryTypeAndComplexOnesAreRead)
{
    const std::string shorts = in_bytes<std::int16_t>({1, 2, 3}), longs = in_bytes<std::int32_t>({1, 2, 3});
    wave made;
    made.dimensions = {3};
    const std::pair<unsigned, std::string> types[] = {{2, floats({1, 2, 3})},
                                                      {4, in_bytes<double>({1, 2, 3})},
                                                      {8, "\1\2\3"},
                                                      {72, "\1\2\3"},
                                                      {16, shorts},
                                                      {80, shorts},
                                                      {32, longs},
                                                      {96, longs}};
    for (const auto& [type, numbers] : types) {
        made.type = type;
        made.numbers = numbers;
        EXPECT_EQ(told(read(made)), "made [m] (3: 3 + 0.5): 1 2 3") << type;
    }
    wave complex = layers({"HeightTrace", "HeightRetrace"});
    complex.type = 3;
    complex.numbers = floats({1, 10, 2, 20, 3, 30, 4, 40});
    EXPECT_EQ(told(read(complex)),
              "Height [m] (2: 3 + 0.5 m; 1: 3 + 0.5 m) {Forward Real, Forward Imaginary, Reverse Real, Reverse "
              "Imaginary}: 1 2 10 20 3 4 30 40");
    made.type = 3;
    made.numbers = floats({1, 10, 2, 20, 3, 30});
    EXPECT_EQ(told(read(made)), "made [m] (3: 3 + 0.5) {Real, Imaginary}: 1 2 3 10 20 30");
    made.type = 2;
    made.dimensions = {3, 2}; // columns without names
    EXPECT_EQ(told(read(made)), "made [m] (3: 3 + 0.5) {Curve 1, Curve 2}: 1 10 2 20 3 30");
}

TEST(Ibw, ACutWaveGivesItsWholeLayersWithoutAUnit)
{
    wave made = layers({"HeightTrace", "PhaseTrace", "HeightRetrace"}, "ImagingMode: 1\r");
    made.footer = "";
    const std::string whole = made.bytes();
    const std::size_t dataEnd = 384 + 24;
    const struct {
        std::size_t length, images;
        const char* units; ///< of the first image
        std::size_t warnings;
    } rows[] = {
        {whole.size(), 2, "m", 0},
        {whole.size() - 1, 3, "", 2}, // the names of the channels are lost, and with them what the unit is of
        {dataEnd - 1, 2, "", 3},      // two whole layers
        {dataEnd - 9, 1, "", 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.length);
        const auto result = instrument_fixture::read(read_ibw, whole.substr(0, row.length));
        EXPECT_EQ(result->items.size(), row.images);
        EXPECT_STREQ(image_at(result, 0).stream.values.get_axis(0).get_units(), row.units);
        EXPECT_EQ(physical_of(image_at(result, 0))[1], 1.0);
        EXPECT_EQ(result->warnings.size(), row.warnings);
    }
}

TEST(Ibw, WhatCannotBeIsRefusedWithItsReason)
{
    const auto with = [](auto change) {
        wave made;
        made.dimensions = {3};
        made.numbers = floats({1, 2, 3});
        change(made);
        return made.bytes();
    };
    const auto sized = [&](std::vector<unsigned> sides) { return with([&](wave& w) { w.dimensions = sides; }); };
    const std::string good = with([](wave&) {});
    std::string wrongSum = good;
    wrongSum[100] ^= 1;
    expect_refused(read_ibw, {
                                 {wrongSum, "checksum"},
                                 {"\7", "version number"},
                                 {good.substr(0, 300), "cut short"},
                                 {good.substr(0, 390), "beyond the end"},
                                 {with([](wave& w) { w.statedPoints = 4; }), "product of the dimensions"},
                                 {sized({4}), "stated size"},
                                 {sized({65536, 65536, 65536}), "too large"},
                                 {sized({0x80000000u}), "negative"},
                                 {with([](wave& w) { w.type = 7; }), "type of the numbers"},
                                 {with([](wave& w) { w.type = 0; }), "texts"},
                                 {with([](wave& w) { w.dimensions = {}, w.numbers = ""; }), "no points"},
                                 {sized({1, 1, 1, 3}), "four dimensions"},
                             });
}

} // namespace
