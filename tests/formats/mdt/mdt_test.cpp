#include "formats/instrument_fixture.h"
#include "formats/mdt/mdt.h"
#include "mdt_fixture.h"

#include <gtest/gtest.h>

namespace {

using namespace formats;
using namespace instrument_fixture;

base::read_result<recording> read(const std::string& bytes) { return instrument_fixture::read(read_mdt, bytes); }

TEST(Mdt, DirectionsOfAChannelShareAnImage)
{
    mdt_image forward{"1F:Height", 3, 2, {1, -2, 3, 4, 5, 6}}, backward{"1B:Height", 3, 2, {6, 5, 4, 3, 2, -1}};
    const auto result = read(mdt_file(
        {mdt_frame_of(0, forward.body()), mdt_frame_of(3, std::string(10, '\0')), mdt_frame_of(0, backward.body())}));
    ASSERT_EQ(result->items.size(), 1u);
    expect_image(image_at(result, 0), {.units = "nm",
                                       .axes = {"5 0.5 \u00B5m", "-1 0.25 \u00B5m"},
                                       .parts = {"Forward", "Reverse"},
                                       .values = {9, 12, 7, 6, 5, 4, 4, 5, 6, 7, 8, 11}, // 10 - raw
                                       .strings = {{"\\Date", "2020-02-03 04:05:06"},
                                                   {"\\Z scale", "raw * -1 + 10 [nm] from z axis of frame 1"}}});
}

TEST(Mdt, AnAxisThatStatesNoStepCountsWithoutAUnit)
{
    std::string body = mdt_image{"Height", 2, 1, {1, -2}}.body();
    for (const std::size_t step : {4u, 24u}) body.replace(step, 4, le_float(0)); // of x and of z
    const auto result = read(mdt_file({mdt_frame_of(0, body)}));
    ASSERT_TRUE(result) << result.error().reason;
    const recorded_image& image = image_at(result, 0);
    EXPECT_EQ(image.stream.get_dimension(0).get_axis(0), VLAxis(0.0, 1.0, ""));
    EXPECT_EQ(image.stream.values.get_axis(0), VLAxis(0.0, 1.0, ""));
    EXPECT_STREQ(image.stream.get_dimension(1).get_axis(0).get_units(), "\u00B5m");
    EXPECT_EQ(image.notes, (std::vector<std::string>{"the step of the x axis is 0: it counts without a unit",
                                                     "the step of the z axis is 0: it counts without a unit"}));
}

TEST(Mdt, OnlyDirectionsOfOneScanAndPassAreAPair)
{
    const std::string forward = mdt_image{"1F:Height", 1, 1, {1}}.body(),
                      reverse = mdt_image{"1B:Height", 1, 1, {2}}.body(),
                      second = mdt_image{"2B:Height", 1, 1, {3}}.body();
    const unsigned all = mdtAxesBytes + mdtSettingsBytes;
    const auto result = read(mdt_file({mdt_frame_of(0, forward, all, 10), mdt_frame_of(0, forward, all, 11),
                                       mdt_frame_of(0, second, all, 10), mdt_frame_of(0, reverse, all, 11)}));
    ASSERT_EQ(result->items.size(), 3u);
    const struct {
        std::vector<double> heights;
        const char *id, *pass, *direction;
    } images[] = {
        {{9}, "Height", "1", "Forward"}, {{9, 8}, "Height_2", "1", nullptr}, {{7}, "Height_3", "2", "Reverse"}};
    for (std::size_t i = 0; i < 3; ++i) {
        const recorded_image& image = image_at(result, i);
        EXPECT_EQ(physical_of(image), images[i].heights) << i;
        EXPECT_STREQ(image.stream.get_description(), "Height");
        EXPECT_STREQ(image.stream.get_name(), images[i].id);
        EXPECT_EQ(image.strings.at("Pass"), images[i].pass);
        ASSERT_EQ(image.strings.contains("\\Line direction"), images[i].direction != nullptr) << i;
        if (!images[i].direction) continue;
        EXPECT_EQ(image.strings.at("\\Line direction"), images[i].direction);
        ASSERT_EQ(image.stream.subimage_names().size(), 1u);
        EXPECT_STREQ(image.stream.subimage_names()[0].text, images[i].direction);
    }
}

TEST(Mdt, SettingsThatAScanLacksAreLeftOut)
{
    // Channel 2, 17 bytes, direction, a byte, velocity, set point, bias.
    const std::string whole = std::string("\2", 1) + std::string(17, '\0') + std::string("\2\0", 2) + le_float(20000) +
                              le_float(1.5f) + le_float(-3);
    const struct {
        std::size_t bytes;
        const char *channel, *direction, *speed, *bias;
    } rows[] = {{32, "Lateral force", "Left, from the top", "2 \u00B5m/s", "-3 V"},
                {31, "Lateral force", "Left, from the top", "2 \u00B5m/s", ""},
                {20, "Lateral force", "Left, from the top", "", ""},
                {18, "Lateral force", "", "", ""},
                {1, "Lateral force", "", "", ""},
                {0, "Image", "", "", ""}};
    for (const auto& row : rows) {
        const mdt_image image{"", 3, 1, {1, 2, 3}, whole.substr(0, row.bytes)};
        const auto variableBytes = mdtAxesBytes + static_cast<unsigned>(image.settings.size());
        const auto result = read(mdt_file({mdt_frame_of(0, image.body(), variableBytes)}));
        SCOPED_TRACE(row.bytes);
        expect_image(image_at(result, 0),
                     {.label = row.channel,
                      .values = {9, 8, 7},
                      .strings = {{"\\Scan direction", row.direction}, {"\\Speed", row.speed}, {"Bias", row.bias}}});
    }
}

TEST(Mdt, CurvesAtPointsArePaddedAndKeepTheirLengths)
{
    const auto result = read(mdt_file({mdt_frame_of(201, mdt_point_curves({{{1, 2, 3}, {4, 5}}, {{7}, {}}}, -2))}));
    expect_image(image_at(result, 0),
                 {.axes = {"5 0.5 \u00B5m"},
                  .parts = {"Point 1, Forward", "Point 1, Reverse", "Point 2, Forward"},
                  .values = {9, 8, 7, 6, 5, 5, 3, 3, 3},
                  .strings = {{"\\Curve lengths", "3 2 1"}, {"Points", "0 0 \u00B5m; 1 0.5 \u00B5m"}}});
}

TEST(Mdt, SingleCurvesPassTheirDots)
{
    const auto result = read(mdt_file({mdt_frame_of(1, mdt_single_curve({3, 1, 2}, 2))}));
    EXPECT_EQ(physical_of(image_at(result, 0)), (std::vector<double>{7, 9, 8}));
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
    const struct {
        std::string points;
        std::vector<std::pair<std::string, std::string>> lists;
        std::vector<std::string> names;
    } rows[] = {
        {two, {{"a", first}, {"b", le32(1)}}, {"Point 1, Forward", "Point 2, Reverse", "Point 1, Forward"}},
        {two, {{"b", le32(1) + "cut"}}, {"Forward", "Point 2, Reverse", "Forward"}},
        {two, {{"a", le32(3) + le32(~0u)}, {"b", ""}}, {"Forward", "Reverse", "Forward"}}, // no such measurements
        {shared, {{"a", first}}, {"Point 1, Forward", "Reverse", "Point 2, Forward"}},
        {"<Point name='a' offset='99' meas='1' exec='3'/>", {{"a", first}}, {"Forward", "Reverse", "Forward"}},
    };
    for (const auto& row : rows) {
        const auto result = read(spectra_at_points(3, row.points, row.lists));
        ASSERT_EQ(result->items.size(), 1u);
        SCOPED_TRACE(row.points);
        // x falls, so that curves are turned round unless they were recorded in reverse.
        expect_image(image_at(result, 0),
                     {.units = "\u00B5A", .axes = {"3 2 \u00B0"}, .parts = row.names, .values = {10, 0, 1, 11, 12, 2}});
    }
    const auto placed = read(spectra_at_points(1, two, {}));
    ASSERT_TRUE(placed);
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
    const mdt_image image{"Height", 2, 2, {1, 2, 3, 4}}, short_{"Height", 300, 300, {1}}, empty{"Height", 0, 2, {}};
    mdt_array odd{
        "odd", {{"x", "um", 0, 1, 0, 1, 0}, {"y", "um", 0, 1, 0, 1, 0}}, {{"z", "", 0, 1, 0, 0, 77}}, le32(0)};
    mdt_array huge = odd;
    huge.dimensions[0].last = ~0ull - 1;
    huge.measured[0].type = 2;
    mdt_array vast{"vast", {}, {{"z", "", 0, 1, 0, 0, 2}}, le32(0)};
    for (const char* name : {"x", "y", "w"}) vast.dimensions.push_back({name, "", 0, 1, 0, 65535, 0});
    mdt_array late = odd;
    late.measured[0].type = 4;
    mdt_array padded = late, few = late;
    padded.cellBytes = 6;
    few.count = 3;
    expect_refused(read_mdt, {
                                 {"\x01\xB0\x93\xFF", "cut short"},
                                 {mdt_file({}), "no frame"},
                                 {mdt_file({mdt_frame_of(0, short_.body())}), "more samples than the frame holds"},
                                 {mdt_file({mdt_frame_of(0, empty.body())}), "columns or rows is 0"},
                                 {mdt_file({mdt_frame_of(0, image.body())}).substr(0, 60), "does not fit the file"},
                                 {mdt_file({mdt_frame_of(105, image.body())}), "type 105 is not known"},
                                 {mdt_file({mdt_frame_of(106, odd.body(), 0)}), "data type 77"},
                                 {mdt_file({mdt_frame_of(106, huge.body(), 0)}), "above 65536"},
                                 {mdt_file({mdt_frame_of(106, vast.body(), 0)}), "more than 4294967295 cells"},
                                 {mdt_file({mdt_frame_of(106, late.body(), 0)}), "more samples than the frame holds"},
                                 {mdt_file({mdt_frame_of(106, padded.body(), 0)}),
                                  "cell size of 6 bytes is not that of its values, 4"},
                                 {mdt_file({mdt_frame_of(106, few.body(), 0)}), "ask for 4 cells, but there are 3"},
                                 {mdt_file({mdt_frame_of(190, le32(1u << 30))}), "more blocks"},
                                 {mdt_file({mdt_frame_of(190, le32(0))}), "index.xml"},
                             });
}

} // namespace
