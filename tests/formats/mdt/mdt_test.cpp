#include "formats/instrument_fixture.h"
#include "formats/mdt/mdt.h"
#include "mdt_fixture.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

using namespace formats;
using namespace instrument_fixture;

base::read_result<recording> read(const std::string& bytes) { return instrument_fixture::read(read_mdt, bytes); }

TEST(Mdt, DirectionsOfAChannelShareAnImage)
{
    mdt_image forward{"1F:Height", 3, 2, {1, -2, 3, 4, 5, 6}}, backward{"1B:Height", 3, 2, {6, 5, 4, 3, 2, -1}};
    const auto result = read(mdt_file(
        {mdt_frame_of(0, forward.body()), mdt_frame_of(3, std::string(10, '\0')), mdt_frame_of(0, backward.body())}));
    EXPECT_EQ(told(result), "Height [nm] (3: 5 + 0.5 \u00B5m; 2: -1 + 0.25 \u00B5m) {Forward, Reverse}: "
                            "9 12 7 6 5 4 4 5 6 7 8 11"); // 10 - raw
    expect_image(image_at(result, 0), {.strings = {{"\\Date", "2020-02-03 04:05:06"},
                                                   {"\\Z scale", "raw * -1 + 10 [nm] from z axis of frame 1"}}});
}

TEST(Mdt, AnAxisThatStatesNoStepCountsWithoutAUnit)
{
    std::string body = mdt_image{"Height", 2, 1, {1, -2}}.body();
    for (const std::size_t step : {4u, 24u}) body.replace(step, 4, le_float(0)); // of x and of z
    const auto result = read(mdt_file({mdt_frame_of(0, body)}));
    EXPECT_EQ(told(result), "Height (2; 1: -1 + 0.25 \u00B5m): 1 -2");
    EXPECT_EQ(image_at(result, 0).notes,
              (std::vector<std::string>{"the step of the x axis is 0: it counts without a unit",
                                        "the step of the z axis is 0: it counts without a unit"}));
}

TEST(Mdt, OnlyDirectionsOfOneScanAndPassAreAPair)
{
    const auto frame = [](const char* title, int sample, unsigned hour) {
        return mdt_frame_of(0, mdt_image{title, 1, 1, {sample}}.body(), mdtAxesBytes + mdtSettingsBytes, hour);
    };
    const auto result = read(mdt_file(
        {frame("1F:Height", 1, 10), frame("1F:Height", 1, 11), frame("2B:Height", 3, 10), frame("1B:Height", 2, 11)}));
    const std::string axes = "Height [nm] (1: 5 + 0.5 \u00B5m; 1: -1 + 0.25 \u00B5m) ";
    EXPECT_EQ(told(result), axes + "{Forward}: 9\n" + axes + "{Forward, Reverse}: 9 8\n" + axes + "{Reverse}: 7");
    const char* const directions[] = {"Forward", "", "Reverse"};
    for (std::size_t i = 0; i < 3; ++i)
        expect_image(image_at(result, i),
                     {.strings = {{"Pass", i == 2 ? "2" : "1"}, {"\\Line direction", directions[i]}}});
}

TEST(Mdt, SettingsThatAScanLacksAreLeftOut)
{
    // Channel 2, 17 bytes, direction, a byte, velocity, set point, bias.
    const std::string whole = std::string("\2", 1) + std::string(17, '\0') + std::string("\2\0", 2) + le_float(20000) +
                              le_float(1.5f) + le_float(-3);
    const std::string channel = "Lateral force", way = "Left, from the top", speed = "2 \u00B5m/s";
    const struct {
        std::size_t bytes;
        std::string channel, direction, speed, bias;
    } rows[] = {{32, channel, way, speed, "-3 V"}, {31, channel, way, speed, ""}, {20, channel, way, "", ""},
                {18, channel, "", "", ""},         {1, channel, "", "", ""},      {0, "Image", "", "", ""}};
    for (const auto& row : rows) {
        const mdt_image image{"", 3, 1, {1, 2, 3}, whole.substr(0, row.bytes)};
        const auto result =
            read(mdt_file({mdt_frame_of(0, image.body(), mdtAxesBytes + static_cast<unsigned>(row.bytes))}));
        SCOPED_TRACE(row.bytes);
        EXPECT_EQ(told(result), row.channel + " [nm] (3: 5 + 0.5 \u00B5m; 1: -1 + 0.25 \u00B5m): 9 8 7");
        expect_image(image_at(result, 0),
                     {.strings = {{"\\Scan direction", row.direction}, {"\\Speed", row.speed}, {"Bias", row.bias}}});
    }
}

TEST(Mdt, CurvesAtPointsArePaddedAndKeepTheirLengths)
{
    const auto result = read(mdt_file({mdt_frame_of(201, mdt_point_curves({{{1, 2, 3}, {4, 5}}, {{7}, {}}}, -2))}));
    EXPECT_EQ(told(result), "Curve [nm] (3: 5 + 0.5 \u00B5m) {Point 1, Forward, Point 1, Reverse, Point 2, Forward}: "
                            "9 8 7 6 5 5 3 3 3");
    expect_image(image_at(result, 0),
                 {.strings = {{"\\Curve lengths", "3 2 1"}, {"Points", "0 0 \u00B5m; 1 0.5 \u00B5m"}}});
    const auto single = read(mdt_file({mdt_frame_of(1, mdt_single_curve({3, 1, 2}, 2))})); // behind its dots
    EXPECT_EQ(physical_of(image_at(single, 0)), (std::vector<double>{7, 9, 8}));
}

/// Measurement i is a curve of the two numbers i and i + 10.
std::string spectra_at_points(unsigned measurements, const std::string& points,
                              const std::vector<std::pair<std::string, std::string>>& lists)
{
    std::string xml = "<C><Name name='I' unit='uA'/><Name name='V' unit='deg'/>"
                      "<Axis name='1' count='2' start='5' stop='3'/>",
                numbers;
    for (unsigned i = 0; i < measurements; ++i) {
        const std::string number = std::to_string(i);
        xml += "<Data name='numbers' offset='" + std::to_string(16 * i) +
               "' count='2' type='float64'/><Meas name='0' data='" + number + "' axis0='0' inverse0='" +
               (i % 2 ? "1" : "0") + "'/>";
        numbers += le_double(i) + le_double(i + 10);
    }
    std::vector<std::pair<std::string, std::string>> blocks = {{"numbers", numbers},
                                                               {"index.xml", xml + points + "</C>"}};
    blocks.insert(blocks.end(), lists.begin(), lists.end());
    return mdt_file({mdt_named_blocks(blocks)});
}

TEST(Mdt, PointsListTheirMeasurements)
{
    const std::string two = "<Point name='a' x='1' y='2' unit='um'/><Point name='b' offset='0'/>",
                      shared = "<Point name='a' offset='4'/><Point name='a'/>", first = le32(2) + le32(0);
    const std::tuple<std::string, std::vector<std::pair<std::string, std::string>>, std::string> rows[] = {
        {two, {{"a", first}, {"b", le32(1)}}, "Point 1, Forward, Point 2, Reverse, Point 1, Forward"},
        {two, {{"b", le32(1) + "cut"}}, "Forward, Point 2, Reverse, Forward"},
        {two, {{"a", le32(3) + le32(~0u)}, {"b", ""}}, "Forward, Reverse, Forward"}, // no such measurements
        {shared, {{"a", first}}, "Point 1, Forward, Reverse, Point 2, Forward"},
        {"<Point name='a' offset='99' meas='1' exec='3'/>", {{"a", first}}, "Forward, Reverse, Forward"},
    };
    for (const auto& [points, lists, names] :
         rows) // x falls, so that curves are turned round unless they were recorded in reverse
        EXPECT_EQ(told(read(spectra_at_points(3, points, lists))),
                  "I [\u00B5A] (2: 3 + 2 \u00B0) {" + names + "}: 10 0 1 11 12 2");
    const auto placed = read(spectra_at_points(1, two, {}));
    EXPECT_EQ(image_at(placed, 0).strings.at("Points"), "1 2 \u00B5m; ");
}

TEST(Mdt, ReadingCanBeCancelledInEveryFrame)
{
    struct impatient_source : memory_source {
        using memory_source::memory_source;
        bool progress(double done) override
        {
            EXPECT_GE(done, last);
            EXPECT_LE(done, 1.0);
            last = done;
            return patience-- > 0;
        }
        double last = 0.0;
        int patience = 0;
    };
    const mdt_image image{"Height", 1, 1, {1}};
    const std::string bytes = mdt_file({mdt_frame_of(0, image.body()), mdt_frame_of(0, image.body())});
    for (int patience = 0; patience < 6; ++patience) { // two frames, their end, two images
        impatient_source file(std::as_bytes(std::span(bytes)));
        file.patience = patience;
        const auto result = read_mdt(file);
        EXPECT_EQ(result ? "" : result.error().reason, patience == 5 ? "" : "reading was cancelled") << patience;
    }
}

TEST(Mdt, WholeFramesOfACutFileAreShown)
{
    const mdt_image image{"Height", 2, 2, {1, 2, 3, 4}};
    const std::string whole = mdt_file({mdt_frame_of(0, image.body()), mdt_frame_of(0, image.body())});
    const auto result = read(whole.substr(0, whole.size() - 1));
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(result->items.size(), 1u);
    EXPECT_NE(result->strings.at("Frames left out").find("frame 2"), std::string::npos);
}

TEST(Mdt, WhatCannotBeIsRefusedWithItsReason)
{
    const mdt_image image{"Height", 2, 2, {1, 2, 3, 4}}, shortPart{"Height", 300, 300, {1}}, empty{"Height", 0, 2, {}};
    const auto scan = [](const mdt_image& each) { return mdt_file({mdt_frame_of(0, each.body())}); };
    const auto array = [](auto change) { // two by two numbers of 32 bits, of which there is one
        mdt_array each{
            "odd", {{"x", "um", 0, 1, 0, 1, 0}, {"y", "um", 0, 1, 0, 1, 0}}, {{"z", "", 0, 1, 0, 0, 4}}, le32(0)};
        change(each);
        return mdt_file({mdt_frame_of(106, each.body(), 0)});
    };
    const auto vast = [](mdt_array& a) { a.dimensions.assign(3, {"x", "", 0, 1, 0, 65535, 0}); };
    expect_refused(read_mdt, {
                                 {"\x01\xB0\x93\xFF", "cut short"},
                                 {mdt_file({}), "no frame"},
                                 {scan(shortPart), "more samples than the frame holds"},
                                 {scan(empty), "columns or rows is 0"},
                                 {scan(image).substr(0, 60), "does not fit the file"},
                                 {mdt_file({mdt_frame_of(105, image.body())}), "type 105 is not known"},
                                 {array([](mdt_array& a) { a.measured[0].type = 77; }), "data type 77"},
                                 {array([](mdt_array& a) { a.dimensions[0].last = ~0ull - 1; }), "above 65536"},
                                 {array(vast), "more than 4294967295 cells"},
                                 {array([](mdt_array&) {}), "more samples than the frame holds"},
                                 {array([](mdt_array& a) { a.cellBytes = 6; }),
                                  "cell size of 6 bytes is not that of its values, 4"},
                                 {array([](mdt_array& a) { a.count = 3; }), "ask for 4 cells, but there are 3"},
                                 {mdt_file({mdt_frame_of(190, le32(1u << 30))}), "more blocks"},
                                 {mdt_file({mdt_frame_of(190, le32(0))}), "index.xml"},
                             });
}

} // namespace
