#include "formats/instrument_fixture.h"
#include "formats/shared/finish_recording.h"
#include "formats/shared/zip_fixture.h"
#include "jpk_fixture.h"

#include <gtest/gtest.h>

namespace {

using namespace formats;
using namespace instrument_fixture;
using jpk_fixture::find_image;
using jpk_fixture::read;

/// Settings of a channel whose default slot is 2 * (0.5 * raw + 1) - 3 = raw - 1 nm, base volts 0.5 * raw + 1.
std::string channel_lines(const std::string& name, const std::string& type, const std::string& encoder)
{
    const std::string c = "channel." + name + ".", s = c + "conversion-set.conversion";
    return c + "data.file.name=channels/" + name + ".dat\n" + c + "data.type=" + type + "\n" + c +
           "data.encoder.type=" + encoder + "\n" + c + "data.encoder.scaling.multiplier=0.5\n" + c +
           "data.encoder.scaling.offset=1\n" + c + "data.encoder.scaling.unit.unit=V\n" + s + "s.list=distance\n" + s +
           "s.base=volts\n" + s + "s.default=distance\n" + s + ".volts.defined=false\n" + s +
           ".distance.base-calibration-slot=volts\n" + s + ".distance.scaling.multiplier=2\n" + s +
           ".distance.scaling.offset=-3\n" + s + ".distance.scaling.unit.unit=nm\n";
}

std::string segment_lines(const std::string& style, unsigned points)
{
    return "#comment\r\nforce-segment-header.settings.segment-settings.style=" + style +
           "\nforce-segment-header.duration=2\nforce-segment-header.num-points=" + std::to_string(points) + "\n";
}

std::string big_shorts(const std::vector<std::int16_t>& numbers)
{
    return in_bytes<std::int16_t>(numbers, std::endian::big);
}

using members = std::map<std::string, std::string>;

/// A single curve of two channels; the retract is one point shorter.
members single_curve()
{
    const std::string channels = "channels.list=height vDeflection time\n" +
                                 channel_lines("height", "short", "signedshort") +
                                 channel_lines("vDeflection", "short", "signedshort-limited") +
                                 "channel.time.data.type=raster-data\nchannel.time.data.step=1\n";
    return {{"header.properties", "type=force-scan-series\nforce-scan-series.header.name=\\u00B5 and \\: ok\n"},
            {"segments/0/segment-header.properties", segment_lines("extend", 3) + channels},
            {"segments/0/channels/height.dat", big_shorts({30, 20, 10})},
            {"segments/0/channels/vDeflection.dat", big_shorts({0, -1, 256})},
            {"segments/1/segment-header.properties", segment_lines("retract", 3) + channels},
            {"segments/1/channels/height.dat", big_shorts({10, 20})},
            {"segments/1/channels/vDeflection.dat", big_shorts({7, 5})}};
}

/// The archive with every `from` in the headers of its segments, or of one of them, replaced.
members changed_segments(members all, const std::string& from, const std::string& to, const std::string& part = {})
{
    std::size_t count = 0;
    for (auto& [name, text] : all)
        if (name.ends_with(part + "segment-header.properties"))
            for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size(), ++count)
                text.replace(at, from.size(), to);
    EXPECT_NE(count, 0u) << from;
    return all;
}

/// A channel of an archive in a line, or why there is none; and all notes of the reader.
std::string channel_told(const base::read_result<recording>& result, const std::string& channel)
{
    if (!result) return "refused: " + result.error().reason;
    const recorded_image* image = find_image(*result, channel);
    return image ? told(*image) : "none";
}

std::string notes_of(const base::read_result<recording>& result)
{
    if (!result) return "refused: " + result.error().reason;
    return result->strings.contains("\\Reader note") ? result->strings.at("\\Reader note") : "";
}

const std::string inVolts =
    "vDeflection [V] (3: 0 + 0.666667 s) {Approach, Retract} over height: 129 0.5 1 4.5 3.5 3.5";
const std::string deflection = "channel.vDeflection.", slot = deflection + "conversion-set.conversion.distance.";

TEST(Jpk, SegmentsOfACurveAreSubimagesOverTheHeight)
{
    const auto result = read(stored_zip(single_curve()));
    const std::string line = " (3: 0 + 0.666667 s) {Approach, Retract}";
    EXPECT_EQ(channel_told(result, "vDeflection"),
              "vDeflection [nm]" + line + " over height: 255 -2 -1 6 4 4"); // raw - 1
    EXPECT_EQ(channel_told(result, "height"), "height [nm]" + line + ": 9 19 29 9 19 19");
    EXPECT_EQ(channel_told(result, "time"),
              "time" + line + " over height: 2 1 0 0 1 1"); // computed: a raster of step 1
    const recorded_image* image = find_image(*result, "vDeflection");
    EXPECT_DOUBLE_EQ(image->stream.values.get_axis(1).at(256), 129.0); // 0.5 * 256 + 1 V
    expect_image(*image, {.strings = {{"\\Curve lengths", "3 2"},
                                      {"\\Recorded order", "Approach: free end first; Retract: contact first"},
                                      {"\\Z scale", "raw * 1 + -1 [nm] from encoder, conversions distance"},
                                      {"\\Deflection sign", ""}}});
    EXPECT_EQ(result->strings.at("force-scan-series.header.name"), "\u00B5 and : ok");
    const auto falling = read(
        stored_zip(changed_segments(single_curve(), slot + "scaling.multiplier=2", slot + "scaling.multiplier=-2")));
    EXPECT_EQ(find_image(*falling, "vDeflection")->strings.at("\\Deflection sign"),
              "V falls where nm rises: the sensitivity is below 0");
}

/// A map of 3 by 2 points, driven back and forth, in which point 4 was not measured. Curve k holds k, k + 10.
members back_and_forth_map()
{
    const std::string prefix = "force-scan-map.position-pattern.";
    members all{{"header.properties", "jpk-data-file=force-scan-map\n" + prefix + "back-and-forth=true\n" + prefix +
                                          "grid.ilength=3\n" + prefix + "grid.jlength=2\n" + prefix +
                                          "grid.ulength=6\n" + prefix + "grid.vlength=2\n" + prefix +
                                          "grid.xcenter=10\n" + prefix + "grid.ycenter=0\n"},
                {"shared-data/header.properties",
                 "lcd-info.10.data.type=wrong\nlcd-info.1.type=integer-data\n"
                 "lcd-info.1.encoder.type=signedinteger\n"
                 "lcd-info.1.unit.unit=V\nforce-segment-header-info.0.settings.style=extend\n"}};
    for (unsigned k = 0; k < 6; ++k) {
        if (k == 4) continue;
        const std::string folder = "index/" + std::to_string(k) + "/segments/0/";
        all[folder + "segment-header.properties"] =
            "force-segment-header.force-segment-header-info.*=0\nchannels.list=error\n"
            "channel.error.lcd-info.*=1\nchannel.error.data.file.name=e.dat\n";
        all[folder + "e.dat"] = be32(k) + be32(k + 10);
    }
    return all;
}

TEST(Jpk, MapsAreVolumesWithTheCurveFastest)
{
    const auto result = read(stored_zip(back_and_forth_map()));
    // Row 0: 0, 1, 2; row 1 runs back: 5, (4), 3. What is missing takes the lowest value.
    const std::string expected = "error [V] (2; 3: 7 + 2 m; 2: -1 + 1 m) {Approach}: 10 0 11 1 12 2 15 5 0 0 13 3";
    EXPECT_EQ(told(result), expected);
    expect_image(image_at(result, 0), {.strings = {{"\\Void points", "2"}, {"\\Curve lengths", "2 2 2 2 0 2"}}});
    const std::string info = "force-segment-header-info.*=0"; // a reference alone stands for what it is named after
    EXPECT_EQ(told(read(stored_zip(changed_segments(back_and_forth_map(), "force-segment-header." + info, info)))),
              expected);
}

TEST(Jpk, AGridThatCannotBeUsedIsTold)
{
    const struct {
        std::string from, to, note;
        unsigned dimensions;
    } rows[] = {
        {"ilength=3", "ilength=abc", "ilength or jlength of the grid is missing or no number from 1 to 65536", 1},
        {"ilength=3", "ilength=0", "ilength or jlength of the grid is missing or no number from 1 to 65536", 1},
        {"ilength=3", "ilength=2", "or are scattered over, the grid of 2 x 2 points", 1},
        {"ulength=6", "u=6", "ulength of the grid is missing: its points are counted", 3},
        {"ulength=6", "ulength=abc", "axis 2 is no number: it is told by ulength of the grid", 0},
    };
    for (const auto& row : rows) {
        members all = back_and_forth_map();
        all["header.properties"] = replaced(all["header.properties"], row.from, row.to);
        const auto result = finish_recording(read(stored_zip(all)));
        const std::string told = result ? result->strings.at("\\Reader note") : result.error().reason;
        EXPECT_NE(told.find(row.note), std::string::npos) << told;
        if (result) { EXPECT_EQ(image_at(result, 0).stream.get_dimensions_number(), row.dimensions) << told; }
    }
    for (const auto& [position, isWhole] : {std::pair("1e-6", true), {"1x-6", false}}) {
        members all = back_and_forth_map();
        all["index/2/header.properties"] =
            "a.header.position.x=" + std::string(position) + "\na.header.position.y=2e-6\n";
        const auto result = read(stored_zip(all));
        EXPECT_EQ(result->strings.contains("Curve places, m"), isWhole);
        EXPECT_EQ(result->strings.contains("\\Reader note"), !isWhole) << "the place of curve 2";
    }
}

TEST(Jpk, CalibrationsThatChangeAreApplied)
{
    const std::string gain = deflection + "data.encoder.scaling.multiplier=",
                      set = deflection + "conversion-set.conversions.";
    const auto result = read(stored_zip(changed_segments(single_curve(), gain + "0.5", gain + "1.5", "1/")));
    expect_image(*find_image(*result, "vDeflection"),
                 {.values = {255, -2, -1, 20, 14, 14}, .isFitted = true}); // 2 * (1.5 * 7 + 1) - 3 = 20

    members all = changed_segments(single_curve(), set + "default=distance", set + "default=volts", "1/");
    all = changed_segments(all, set + "list=distance", set + "list=", "1/"); // what has no nm is shown in volts
    EXPECT_EQ(channel_told(read(stored_zip(all)), "vDeflection"), inVolts);
    const std::string unit = deflection + "data.encoder.scaling.unit.unit=";
    const auto apart = read(stored_zip(changed_segments(all, unit + "V", unit + "A", "1/")));
    EXPECT_EQ(channel_told(apart, "vDeflection"), "none");
    EXPECT_NE(apart->strings.at("Channels left out").find("vDeflection: its curves have no calibration"),
              std::string::npos);

    const std::string base = slot + "base-calibration-slot=";
    const auto circle = read(stored_zip(changed_segments(single_curve(), base + "volts", base + "distance")));
    EXPECT_EQ(channel_told(circle, "vDeflection"), inVolts);
    EXPECT_NE(
        find_image(*circle, "vDeflection")->strings.at("\\Z scale").find("conversions of distance run in a circle"),
        std::string::npos);
}

TEST(Jpk, NumbersOfOneSegmentThatAreNoneAreTold)
{
    const std::vector<double> volts{129, 0.5, 1, 4.5, 3.5, 3.5}, lost{4, 4, 6, 4}, nm{255, -2, -1, 6, 4, 4};
    const struct {
        std::string line, value, note;
        std::vector<double> values;
    } rows[] = {
        {slot + "scaling.multiplier=2", "NaN", "conversions left out", volts},
        {slot + "scaling.multiplier=2", "0", "conversions left out", volts},
        {slot + "scaling.multiplier=2", "", "conversions left out", volts},
        {slot + "scaling.offset=-3", "abc", "conversions left out", volts},
        {deflection + "conversion-set.conversions.default=distance", "other", "left out: other (it is not desc", volts},
        {deflection + "data.encoder.scaling.multiplier=0.5", "0", "1 is, the first: segments/0/: the multiplier", lost},
        {"force-segment-header.duration=2", "-1", "the duration or num-points of segments/0/", nm},
        {"force-segment-header.num-points=3", "abc", "the duration or num-points of segments/0/", nm},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line + row.value);
        const std::string changed = row.line.substr(0, row.line.find('=') + 1) + row.value;
        const auto result = read(stored_zip(changed_segments(single_curve(), row.line, changed, "0/")));
        EXPECT_NE(notes_of(result).find(row.note), std::string::npos) << notes_of(result);
        expect_image(*find_image(*result, "vDeflection"), {.values = row.values, .isFitted = true});
    }
}

TEST(Jpk, AMemberThatCannotBeReadCostsItsPart)
{
    const std::string file = "segments/0/channels/vDeflection.dat", header = "segments/0/segment-header.properties";
    const auto expect_loss = [](const std::string& bytes, const char* voids, const std::string& told) {
        const auto result = read(bytes);
        ASSERT_TRUE(result) << told << result.error().reason;
        EXPECT_EQ(find_image(*result, "vDeflection")->strings.at("\\Void points"), voids) << told;
        EXPECT_STREQ(find_image(*result, "vDeflection")->stream.subimage_names().at(1).c_str(), "Retract") << told;
        EXPECT_NE(notes_of(result).find("1 is, the first: " + told), std::string::npos) << notes_of(result);
    };
    for (const std::string& member : {file, header}) {
        std::string bytes = stored_zip(single_curve());
        bytes[bytes.find(single_curve().at(member))] ^= 1;      // its checksum is that of other bytes
        expect_loss(bytes, member == file ? "3" : "2", member); // as long as the longest that is left
        members lost = single_curve();
        lost.erase(member); // not there at all: the retract stays the second segment
        expect_loss(stored_zip(lost), "2",
                    member == file ? "segments/0/: its member is missing" : member + " is missing");
    }
    members odd = single_curve(), bare = single_curve();
    odd[file] = "odd";
    EXPECT_NE(notes_of(read(stored_zip(odd))).find("no multiple"), std::string::npos);
    for (const char* segment : {"0", "1"}) bare.erase("segments/" + std::string(segment) + "/channels/height.dat");
    EXPECT_EQ(read(stored_zip(bare))->strings.at("Channels left out"), "height: its member is missing");
    const auto unknown = read(stored_zip(changed_segments(single_curve(), "signedshort\n", "squareroots\n")));
    EXPECT_EQ(unknown->items.size(), 2u);
    EXPECT_NE(unknown->strings.at("Channels left out").find("squareroots"), std::string::npos);
}

TEST(Jpk, HeadersOfTheCurvesAreKept)
{
    members all = single_curve();
    all["segments/0/segment-header.properties"] += "force-segment-header.time-stamp=2020-02-03 04\\:05\\:06 +0100\n";
    all = changed_segments(all, "scaling.unit.unit=nm", "scaling.unit.unit=N"); // makes a force of it
    all = changed_segments(all, "s.list=distance", "s.list=distance bend");
    const std::string bend = "channel.height.conversion-set.conversion.bend.";
    for (const char* segment : {"segments/0/segment-header.properties", "segments/1/segment-header.properties"})
        all[segment] +=
            bend + "base-calibration-slot=volts\n" + bend + "scaling.multiplier=4\n" + bend + "scaling.unit.unit=m\n";
    const auto result = read(stored_zip(all));
    ASSERT_TRUE(result) << result.error().reason;
    EXPECT_EQ(result->strings.at("\\Date"), "2020-02-03 04:05:06 +0100");
    expect_image(*find_image(*result, "height"),
                 {.strings = {{"\\Date", "2020-02-03 04:05:06 +0100"},
                              {"force-segment-header.settings.segment-settings.style", "extend / retract"},
                              {"channel.height.data.type", "short"},
                              {"channel.vDeflection.data.type", ""},
                              {"Sensitivity", "4 m/V"}, // of any name: it is shown as a force
                              {"Spring Constant", "0.5 N/m"}}});

    members map = back_and_forth_map();
    for (const unsigned k : {0u, 2u})
        map["index/" + std::to_string(k) + "/header.properties"] =
            "type=force-scan-series\nforce-scan-series.header.position.x=" + std::to_string(k) +
            "E-6\nforce-scan-series.header.position.y=-2.5E-6\n";
    const auto volume = read(stored_zip(map));
    EXPECT_EQ(volume->strings.at("Curve places, m"), "0: 0 -2.5e-06\n2: 2e-06 -2.5e-06\n");
    EXPECT_EQ(volume->strings.at("lcd-info.1.unit.unit"), "V");
    EXPECT_EQ(image_at(volume, 0).strings.at("channel.error.unit.unit"), "V"); // the reference resolved
}

TEST(Jpk, WhatCannotBeIsRefusedWithItsReason)
{
    const auto changed = [](const std::string& member, const std::string& content) {
        members all = single_curve();
        if (content.empty())
            all.erase(member);
        else
            all[member] = content;
        return stored_zip(all);
    };
    expect_refused(read_jpk, {
                                 {changed("header.properties", ""), "header.properties is missing"},
                                 {changed("header.properties", "a=b\n"), "no kind of force data"},
                                 {stored_zip({{"header.properties", "type=force-scan-series\n"}}), "no segment"},
                                 {stored_zip(single_curve()).substr(0, 900),
                                  "zip directory cannot be read (the file is cut short)"},
                                 {std::string("II*\0\10\0\0\0\0\0\0\0\0\0", 14), "0x8042"},
                                 {"PK", "cut short"},
                             });
    for (const std::string start : {"PK\3\4", "PK\5\6", "PK\7\x8"}) // any archive may be one
        EXPECT_TRUE(possible_jpk(std::as_bytes(std::span(start)))) << start;
}

} // namespace
