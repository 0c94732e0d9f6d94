#include "formats/instrument_fixture.h"
#include "formats/shared/force/directions.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace formats;

recorded_image row_of(unsigned length)
{
    const extent side[] = {{length, {}}};
    return make_samples("id", "label", side, 1, {2.0, 1.0, "nm", {}});
}

TEST(StreamShape, MoreThanAnImageCanHoldIsRefused)
{
    const extent sides[] = {{65536, {}}, {65536, {}}};
    EXPECT_THROW(make_samples("id", "label", sides, 1, {}), std::bad_alloc);
}

TEST(CurveLengths, AreKeptOnlyWhenTheyDiffer)
{
    recorded_image image = row_of(4);
    const unsigned whole[] = {2, 2}, ragged[] = {2, 1};
    note_curve_lengths(image, 2, whole);
    EXPECT_EQ(image.strings.count("\\Curve lengths"), 0u);
    note_curve_lengths(image, 2, ragged);
    EXPECT_EQ(image.strings.at("\\Curve lengths"), "2 1");
}

TEST(Directions, AreSplitOffAName)
{
    const struct {
        const char *name, *channel;
        scan_direction direction;
    } rows[] = {
        {"HeightTrace", "Height", scan_direction::forward},
        {"HeightRetrace", "Height", scan_direction::reverse},
        {"Lock-In Phase (retrace)", "Lock-In Phase", scan_direction::reverse},
        {"Z Forward", "Z", scan_direction::forward},
        {"Current_bwd", "Current", scan_direction::reverse},
        {"Trace", "Trace", scan_direction::unknown},
        {"Topography", "Topography", scan_direction::unknown},
        {"", "", scan_direction::unknown},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(split_direction(row.name).channel, row.channel);
        EXPECT_EQ(split_direction(row.name).direction, row.direction) << row.name;
    }
}

TEST(Directions, JoinWhatDiffersInDirectionAlone)
{
    const auto plane = [](const char* channel, scan_direction direction, unsigned width, double step) {
        return channel_plane{channel, {}, direction, {width, 2, 1, {}, {}}, {step, 0.0, "nm", {}}};
    };
    const channel_plane planes[] = {
        plane("A", scan_direction::reverse, 4, 1), plane("B", scan_direction::forward, 4, 1),
        plane("A", scan_direction::forward, 4, 1), plane("B", scan_direction::reverse, 5, 1),
        plane("B", scan_direction::reverse, 4, 2), plane("A", scan_direction::forward, 4, 1)};
    EXPECT_EQ(join_directions(planes), (std::vector<plane_group>{{2, 0}, {1}, {3}, {4}, {5}}));
}

TEST(Directions, JoinAxesThatAreRoundedDifferently)
{
    const auto joins = [](const VLAxis& one, const VLAxis& other) {
        const image_frame a{100, 2, 1, one, {}}, b{100, 2, 1, other, {}};
        const channel_plane planes[] = {{"A", {}, scan_direction::forward, a, {}},
                                        {"A", {}, scan_direction::reverse, b, {}}};
        return join_directions(planes).size() == 1;
    };
    const struct {
        VLAxis one, other;
        bool isJoined;
    } rows[] = {
        {{0, 3e-9, "m"}, {0, 3.000000001e-9, "m"}, true},
        {{0, 3, "m"}, {0, 3.00001, "m"}, false},
        {{0, 3, "m"}, {0, 3, "nm"}, false},
        {{5, -3, "m"}, {5.0002, -3, "m"}, true}, // of a side of 300
        {{5, 3, "m"}, {5.001, 3, "m"}, false},
        {{0, 3, "m"}, {0, -3, "m"}, false},
        {{0, NAN, "m"}, {0, NAN, "m"}, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(joins(row.one, row.other), row.isJoined) << row.other.start << " " << row.other.scale;
        EXPECT_EQ(joins(row.other, row.one), row.isJoined) << row.other.start << " " << row.other.scale;
    }
}

TEST(Directions, NameThePlaneThatStaysAloneToo)
{
    const struct {
        plane_group group;
        scan_direction first;
        std::vector<std::string> names;
    } rows[] = {{{3, 1}, scan_direction::forward, {"Forward", "Reverse"}},
                {{1}, scan_direction::reverse, {"Reverse"}},
                {{1}, scan_direction::unknown, {}}};
    for (const auto& row : rows) {
        recorded_image image = row_of(2);
        name_directions(image, row.group, row.first);
        EXPECT_EQ(instrument_fixture::subimages_of(image), row.names);
    }
}

TEST(SampleNumbers, AreCheckedBeforeTheyAreCounted)
{
    EXPECT_TRUE(holds_numbers(10, 2, 4, 2));
    EXPECT_FALSE(holds_numbers(10, 3, 4, 2));
    EXPECT_FALSE(holds_numbers(10, 11, 0, 2));
    EXPECT_FALSE(holds_numbers(10, 0, std::uint64_t{1} << 63, 2));
}

TEST(SampleNumbers, ComeInBothOrders)
{
    const unsigned char stored[] = {0x3F, 0xF8, 0, 0, 0, 0, 0, 0, 0xFF, 0xFE};
    const auto bytes = std::as_bytes(std::span(stored));
    std::vector<double> out;
    memory_source file(bytes);
    ASSERT_TRUE(read_numbers(file, 0, 1, SPM_ARRAY_FLOAT64, byte_order::big, out));
    ASSERT_TRUE(read_numbers(file, 8, 1, SPM_ARRAY_INT16, byte_order::big, out));
    ASSERT_TRUE(read_numbers(file, 8, 1, SPM_ARRAY_UINT16, byte_order::little, out));
    EXPECT_FALSE(read_numbers(file, 8, 2, SPM_ARRAY_UINT16, byte_order::little, out));
    EXPECT_EQ(out, (std::vector<double>{1.5, -2.0, 0xFEFF}));
}

} // namespace
