#include "formats/instrument_fixture.h"
#include "formats/shared/bytes.h"
#include "formats/sur/sur.h"

#include <cmath>
#include <gtest/gtest.h>
#include <tuple>
#include <zlib.h>

namespace {

using namespace instrument_fixture;

/// Fields of one object that the cases change.
struct object_parts {
    bool isPacked = false;
    int objects = 1, kind = 2, hasVoids = 0, pointValues = 0, bits = 16;
    int lowest = -5, width = 2, height = 2, points = -1;
    float xStep = 0.25f, zStep = 0.5f, zOffset = 10.0f;
    std::string xUnits = "\xB5m", comment;
    std::string data = std::string("\1\0\2\0\3\0\4\0", 8); ///< 1, 2 over 3, 4
};

std::string samples16(const std::vector<int>& values) { return formats::in_bytes<std::int16_t>(values); }

std::string build(const object_parts& parts)
{
    bytes_builder out;
    out.text(parts.isPacked ? "DSCOMPRESSED" : "DIGITAL SURF").put(14, std::int16_t(parts.objects));
    out.put(18, std::int16_t(parts.kind)).text(20, "Grain").put(86, std::int16_t(parts.hasVoids));
    out.put(94, std::int32_t(parts.pointValues)).put(98, std::int16_t(parts.bits));
    out.put(100, std::int32_t(parts.lowest)).put(104, std::int32_t(99));
    out.put(108, std::int32_t(parts.width)).put(112, std::int32_t(parts.height));
    out.put(116, parts.points < 0 ? std::int32_t(parts.width * parts.height) : std::int32_t(parts.points));
    out.put(120, parts.xStep).put(124, 2.0f).put(128, parts.zStep);
    out.text(132, "X").text(148, "Y").text(164, "Height          ");
    out.text(180, parts.xUnits).text(196, "mm              ").text(212, "nm");
    out.text(306, samples16({1, 2, 3, 4, 5, 2021}));
    out.put(334, std::uint16_t(parts.comment.size())).put(336, std::uint16_t(3));
    out.put(466, 7.0f).put(470, -1.0f).put(474, parts.zOffset).put(478, 0.5f).put(482, 400.0f).text(499, "nm");
    out.seek(512).text(parts.comment).text("prv").text(parts.data);
    return out.content;
}

/// The data of a packed object in two streams, cut in the middle of a number.
std::string packed(const std::string& raw)
{
    const std::string halves[] = {raw.substr(0, 3), raw.substr(3)};
    bytes_builder out;
    out.add(std::uint32_t{2});
    std::string streams;
    for (const std::string& half : halves) {
        uLongf length = compressBound(half.size());
        std::string stream(length, '\0');
        compress(reinterpret_cast<Bytef*>(stream.data()), &length, reinterpret_cast<const Bytef*>(half.data()),
                 half.size());
        out.add(std::uint32_t(half.size())).add(std::uint32_t(length));
        streams += stream.substr(0, length);
    }
    return out.text(streams).content;
}

TEST(Sur, SixteenBitSurfacesKeepEveryBitAndStandUpright)
{
    object_parts parts;
    parts.data = samples16({1, 2, -3, 4}); // the top row first
    parts.comment = "a note";
    object_parts small = parts;
    small.isPacked = true;
    small.data = packed(parts.data);
    for (const object_parts& each : {parts, small}) {
        const auto result = read(sur_reader, build(each));
        EXPECT_EQ(told(result), "Grain [nm] (2: 7 + 0.25 \u00B5m; 2: -1 + 2 mm): 8.5 12 10.5 11");
        EXPECT_EQ(raw_of(image_at(result, 0)), (std::vector<int>{-3, 4, 1, 2}));
        expect_image(image_at(result, 0),
                     {.strings = {{"\\Z scale", "raw * 0.5 + 10 [nm] from z step, z offset, unit of the z step"},
                                  {"\\Date", "2021-05-04 03:02:01"},
                                  {"Comment", "a note"}}});
    }
}

TEST(Sur, NotMeasuredPointsTakeTheLowestValue)
{
    object_parts parts;
    parts.data = samples16({-7, 2, 3, -4}); // -7 is the lowest of the header less 2
    for (const int hasVoids : {0, 1}) {
        parts.hasVoids = hasVoids;
        const auto narrow = read(sur_reader, build(parts));
        EXPECT_EQ(raw_of(image_at(narrow, 0)), (std::vector<int>{3, -4, hasVoids ? -4 : -7, 2}));
        expect_image(image_at(narrow, 0), {.strings = {{"\\Void points", hasVoids ? "1" : ""}}});
    }
    parts.bits = 32;
    parts.lowest = -100000;
    parts.data = formats::in_bytes<std::int32_t>({-100002, 100000, 0, -50000});
    const auto wide = read(sur_reader, build(parts));
    expect_image(image_at(wide, 0), {.values = {10, -24990, -24990, 50010}, .isFitted = true});
}

TEST(Sur, KindsAndValuesPerPointMakeTheShape)
{
    object_parts series, map, several, stray;
    series.kind = 4; // of profiles
    series.width = 3;
    series.data = samples16({1, 2, 3, 4, 5, 6});
    map.kind = 21; // of spectra, which run fastest
    map.pointValues = 3;
    map.data = samples16({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
    several.pointValues = stray.pointValues = 2; // which count where the data have them
    several.data = samples16({1, 2, 3, 4, 5, 6, 7, 8});
    const std::string spectra = " + 0.5 nm; 2: 7 + 0.25 \u00B5m; 2: -1 + 2 mm): ";
    const std::pair<object_parts, std::string> rows[] = {
        // half steps above 10
        {series, "(3: 7 + 0.25 \u00B5m): 10.5 11 11.5 12 12.5 13"},
        {map, "(3: 400" + spectra + "13 13.5 14 14.5 15 15.5 10 10.5 11 11.5 12 12.5"},
        {several, "(2: 400" + spectra + "12.5 13 13.5 14 10.5 11 11.5 12"},
        {stray, "(2: 7 + 0.25 \u00B5m; 2: -1 + 2 mm): 11.5 12 10.5 11"}};
    for (const auto& [parts, line] : rows) EXPECT_EQ(told(read(sur_reader, build(parts))), "Grain [nm] " + line);
}

TEST(Sur, ObjectsFollowOneAnother)
{
    object_parts first, second, unknown;
    first.objects = 2;
    second.objects = 0;
    second.kind = 10;
    second.data = samples16({5, 6, 7, 8});
    const std::string two = build(first) + build(second);
    const auto result = read(sur_reader, two + "trailing");
    ASSERT_EQ(result->items.size(), 2u);
    EXPECT_STREQ(image_at(result, 1).stream.get_name(), "Grain_2");
    EXPECT_EQ(raw_of(image_at(result, 1)), (std::vector<int>{7, 8, 5, 6}));
    expect_cuts_refused(sur_reader, two);

    unknown.kind = 36;
    first.objects = 3;
    const auto part = read(sur_reader, build(first) + build(unknown) + build(first));
    EXPECT_EQ(part->items.size(), 1u);
    EXPECT_EQ(part->strings.at("Objects left out"), "object type 36 has no layout that is known");
}

TEST(Sur, CompositeFilesHoldAllTheirParts)
{
    object_parts first, other;
    const std::tuple<int, int, int> rows[] = {// the last are the parts that the file needs
                                              {12, 1, 3},
                                              {12, 3, 3},
                                              {13, 1, 4},
                                              {16, 1, 2},
                                              {2, -1, 1}};
    const auto warnings = [](const std::string& file) { return read(sur_reader, file)->warnings.size(); };
    for (const auto& [kind, stated, parts] : rows) {
        first.kind = kind;
        first.objects = stated;
        std::string file = build(first);
        for (int i = 1; i < parts; ++i) {
            EXPECT_EQ(warnings(file), 1u) << kind;
            file += build(other);
        }
        EXPECT_EQ(warnings(file), 0u) << kind;
        EXPECT_EQ(warnings(file + build(other).substr(0, 300)), 1u) << kind;
    }
}

TEST(Sur, RefusesWhatCannotBe)
{
    const std::string data = samples16({1, 2, 3, 4});
    const auto with = [](auto change) {
        object_parts parts;
        change(parts);
        return build(parts);
    };
    expect_refused(
        sur_reader,
        {
            {with([](object_parts& p) { p.zStep = 0.0f; }), "the scale of the values is 0: it is told by z step"},
            {with([](object_parts& p) { p.xStep = 0.0f; }), "the scale of axis 1 is 0: it is told by the x step"},
            {with([](object_parts& p) { p.zStep = HUGE_VALF; }), "the scale of the values is infinite"},
            {with([](object_parts& p) { p.width = 0; }), "points per line or number of lines is not above 0"},
            {with([](object_parts& p) { p.height = -2; }), "points per line or number of lines is not above 0"},
            {with([](object_parts& p) { p.points = 5; }), "the number of points, 5,"},
            {with([](object_parts& p) { p.bits = 24; }), "24 bits per value"},
            {with([](object_parts& p) { p.kind = 36; }), "object type 36 has no layout"},
            {with([](object_parts& p) { p.width = 65537, p.height = 1; }), "above 65536"},
            {with([](object_parts& p) { p.kind = 21, p.pointValues = 0x7FFFFFFF; }), "more than 4294967295 values"},
            {with([](object_parts& p) { p.isPacked = true; }), "packed streams"},
            {with([&](object_parts& p) { p.isPacked = true, p.data = packed(data + "x"); }), "hold 9 bytes"},
            {with([&](object_parts& p) { p.isPacked = true, p.data = packed(data), p.data[30] ^= 1; }), "damaged"},
            {with([&](object_parts& p) { p.isPacked = true, p.data = std::string(8, '\0'); }), "packed streams, 0,"},
        });
}

TEST(Sur, AGroupOpensFromAnyOfItsFiles)
{
    const folder files = {{"s.z(hgt)_fwd.sur", build({})}, {"s.z(hgt)_rev.sur", build({})}};
    const auto result = read(formats::read_sur_group, files, "s.z(hgt)_rev.sur");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->items.size(), 2u);
    EXPECT_EQ(subimages_of(image_at(result, 1)), std::vector<std::string>{"Reverse"});
}

} // namespace
