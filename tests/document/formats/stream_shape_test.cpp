#include "document/formats/directions.h"
#include "document/formats/sample_numbers.h"
#include "document/formats/stream_shape.h"
#include "recorded_values.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace formats;

/// An image of one row with these numbers and the scale 2 * raw + 1 nm.
template <class T>
recorded_image row_of(SPMVarArrayType type, std::initializer_list<T> numbers, double step = 2.0)
{
    const extent length[] = {{static_cast<unsigned>(numbers.size()), {}}};
    recorded_image image = make_samples("id", "label", length, 1, {step, 1.0, "nm", {}}, type);
    std::ranges::copy(numbers, elements_of<T>(image).begin());
    return image;
}

TEST(SettledSamples, UnsignedNumbersKeepEveryBit)
{
    recorded_image image = row_of<std::uint16_t>(SPM_ARRAY_UINT16, {0, 1, 32768, 65535});
    settle_samples(image);
    EXPECT_EQ(physical(image.stream), (std::vector<double>{1.0, 3.0, 65537.0, 131071.0}));
    EXPECT_EQ(image.stream.array_type(), SPM_ARRAY_INT16);
}

TEST(SettledSamples, WideNumbersHoldWithinHalfAStep)
{
    recorded_image image = row_of<std::int32_t>(SPM_ARRAY_INT32, {-5000000, 123456, 70000000});
    add_calibration(image, {2.0, 1.0, "nm", {}}, {0.5, -3.0, "V", {}});
    settle_samples(image);
    const std::vector<double> nm = physical(image.stream);
    const double half = 0.5 * image.stream.values.get_axis(0).scale * 1.0001;
    EXPECT_NEAR(nm[0], -9999999.0, half);
    EXPECT_NEAR(nm[1], 246913.0, half);
    EXPECT_NEAR(nm[2], 140000001.0, half);
    // The second calibration says 0.5 * raw - 3 of the same numbers.
    const auto* raw = static_cast<const std::int16_t*>(image.stream.array_data());
    EXPECT_NEAR(image.stream.values.get_axis(1).at(raw[2]), 0.5 * 70000000 - 3, half / 4);
}

TEST(SettledSamples, WhatWasNotMeasuredTakesTheLowestValueAndIsCounted)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    recorded_image reals = row_of<double>(SPM_ARRAY_FLOAT64, {nan, 4.0, 7.0, HUGE_VAL, 1.0});
    const void_range last[] = {{4, 100}};
    settle_samples(reals, last);
    EXPECT_EQ(reals.strings.at("\\Void points"), "3");
    EXPECT_EQ(physical(reals.stream), (std::vector<double>{9, 9, 15, 9, 9}));

    recorded_image falling = row_of<std::int16_t>(SPM_ARRAY_INT16, {32767, 10, 20, 32766}, -1.0);
    const std::int16_t markers[] = {32767, 32766};
    settle_markers(falling, markers);
    EXPECT_EQ(falling.strings.at("\\Void points"), "2");
    EXPECT_EQ(physical(falling.stream), (std::vector<double>{-19, -9, -19, -19}));

    recorded_image nothing = row_of<float>(SPM_ARRAY_FLOAT32, {NAN, NAN});
    settle_samples(nothing);
    EXPECT_EQ(nothing.strings.at("\\Void points"), "2");
}

TEST(SettledSamples, MoreThanAnImageCanHoldIsRefused)
{
    const extent sides[] = {{65536, {}}, {65536, {}}};
    EXPECT_THROW(make_samples("id", "label", sides, 1, {}), std::bad_alloc);
}

TEST(CurveLengths, AreKeptOnlyWhenTheyDiffer)
{
    recorded_image image = row_of<std::int16_t>(SPM_ARRAY_INT16, {1, 2, 3, 4});
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
    const auto names = [](const plane_group& group, scan_direction first) {
        recorded_image image = row_of<std::int16_t>(SPM_ARRAY_INT16, {1, 2});
        name_directions(image, group, first);
        std::vector<std::string> result;
        for (const smart_string& name : image.stream.subimage_names()) result.emplace_back(name.c_str());
        return result;
    };
    using texts = std::vector<std::string>;
    EXPECT_EQ(names({3, 1}, scan_direction::forward), (texts{"Forward", "Reverse"}));
    EXPECT_EQ(names({1}, scan_direction::forward), texts{"Forward"});
    EXPECT_EQ(names({1}, scan_direction::reverse), texts{"Reverse"});
    EXPECT_EQ(names({1}, scan_direction::unknown), texts{});
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
