#include "formats/shared/force/directions.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <cmath>
#include <gtest/gtest.h>
#include <tuple>

namespace {

using namespace formats;

TEST(Directions, AreSplitOffAName)
{
    using enum scan_direction;
    const std::tuple<const char*, const char*, scan_direction> rows[] = {
        {"HeightTrace", "Height", forward},
        {"HeightRetrace", "Height", reverse},
        {"Lock-In Phase (retrace)", "Lock-In Phase", reverse},
        {"Z Forward", "Z", forward},
        {"Current_bwd", "Current", reverse},
        {"Trace", "Trace", unknown},
        {"Topography", "Topography", unknown},
        {"", "", unknown},
    };
    for (const auto& [name, channel, direction] : rows) {
        EXPECT_EQ(split_direction(name).channel, channel);
        EXPECT_EQ(split_direction(name).direction, direction) << name;
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
    const std::tuple<VLAxis, VLAxis, bool> rows[] = {
        {{0, 3e-9, "m"}, {0, 3.000000001e-9, "m"}, true},
        {{0, 3, "m"}, {0, 3.00001, "m"}, false},
        {{0, 3, "m"}, {0, 3, "nm"}, false},
        {{5, -3, "m"}, {5.0002, -3, "m"}, true}, // of a side of 300
        {{5, 3, "m"}, {5.001, 3, "m"}, false},
        {{0, 3, "m"}, {0, -3, "m"}, false},
        {{0, NAN, "m"}, {0, NAN, "m"}, false},
    };
    for (const auto& [one, other, isJoined] : rows) {
        EXPECT_EQ(joins(one, other), isJoined) << other.start << " " << other.scale;
        EXPECT_EQ(joins(other, one), isJoined) << other.start << " " << other.scale;
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
