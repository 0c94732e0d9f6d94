#include "formats/recorded_values.h"
#include "formats/shared/stream_shape.h"
#include "formats/shared/void_points.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

// How the numbers of files become 16-bit samples.

namespace {

using namespace formats;
using testing::DoubleNear, testing::ElementsAre, testing::HasSubstr;

/// A surface of one row, or a curve, of these numbers with the scale step * raw + 1 nm.
template <class T>
recorded_image row_of(SPMVarArrayType type, const std::vector<T>& numbers, double step = 2.0, unsigned dimensions = 2)
{
    const extent sides[] = {{static_cast<unsigned>(numbers.size()), {}}, {1, {}}};
    recorded_image image =
        make_samples("id", "label", std::span(sides).first(dimensions), 1, {step, 1.0, "nm", {}}, type);
    std::ranges::copy(numbers, elements_of<T>(image).begin());
    return image;
}

TEST(SettledSamples, WholeNumbersThatFit16BitsStay)
{
    const std::vector<double> kept[] = {{0, 255, 12},  {-32768, 0, 32767}, {0, 60000, 32768},
                                        {65535, 1, 2}, {-5, -5, -5},       {3e4, 4e4, 5e4}};
    for (const std::vector<double>& numbers : kept)
        for (const double step : {2.0, -0.25}) { // exact in binary
            recorded_image image = row_of(SPM_ARRAY_FLOAT64, numbers, step);
            settle_samples(image);
            EXPECT_EQ(image.stream.values.get_axis(0).scale, step);
            for (std::size_t i = 0; i < numbers.size(); ++i)
                EXPECT_EQ(physical(image.stream)[i], numbers[i] * step + 1.0);
            EXPECT_TRUE(image.notes.empty());
        }
    recorded_image levels = row_of<std::uint16_t>(SPM_ARRAY_UINT16, {0, 1, 32768, 65535});
    settle_samples(levels);
    EXPECT_EQ(physical(levels.stream), (std::vector<double>{1.0, 3.0, 65537.0, 131071.0}));
    EXPECT_EQ(levels.stream.array_type(), SPM_ARRAY_INT16);
}

TEST(SettledSamples, WideNumbersHoldWithinHalfAStep)
{
    recorded_image image = row_of<std::int32_t>(SPM_ARRAY_INT32, {-5000000, 123456, 70000000});
    add_calibration(image, {2.0, 1.0, "nm", {}}, {0.5, -3.0, "V", {}});
    settle_samples(image);
    const std::vector<double> nm = physical(image.stream);
    const double half = 0.5 * image.stream.values.get_axis(0).scale * 1.0001;
    EXPECT_THAT(nm,
                ElementsAre(DoubleNear(-9999999.0, half), DoubleNear(246913.0, half), DoubleNear(140000001.0, half)));
    // The second calibration says 0.5 * raw - 3 of the same numbers.
    const auto* raw = static_cast<const std::int16_t*>(image.stream.array_data());
    EXPECT_NEAR(image.stream.values.get_axis(1).at(raw[2]), 0.5 * 70000000 - 3, half / 4);
}

TEST(SettledSamples, WhatWasNotMeasuredTakesTheLowestValueAndIsCounted)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    recorded_image reals = row_of<double>(SPM_ARRAY_FLOAT64, {nan, 4.0, 7.0, -HUGE_VAL, 1.0});
    const void_range last[] = {{4, 100}};
    settle_samples(reals, last);
    EXPECT_EQ(text_of(reals, "\\Void points"), "3");
    EXPECT_EQ(text_of(reals, "\\Absurd points"), "1") << "the infinite one";
    EXPECT_EQ(physical(reals.stream), (std::vector<double>{9, 9, 15, 9, 9}));

    recorded_image falling = row_of<std::int16_t>(SPM_ARRAY_INT16, {32767, 10, 20, 32766}, -1.0);
    const std::int16_t markers[] = {32767, 32766};
    settle_markers(falling, markers);
    EXPECT_EQ(text_of(falling, "\\Void points"), "2");
    EXPECT_EQ(text_of(falling, "\\Void samples"), "of 4: 0-0 3-3");
    EXPECT_EQ(physical(falling.stream), (std::vector<double>{-19, -9, -19, -19}));

    recorded_image nothing = row_of<float>(SPM_ARRAY_FLOAT32, {NAN, NAN});
    settle_samples(nothing);
    EXPECT_EQ(text_of(nothing, "\\Void points"), "2");
    EXPECT_THAT(nothing.notes, ElementsAre(HasSubstr("2 samples were not measured")));
}

TEST(SettledSamples, GapsOfCurvesLieBetweenTheirNeighbours)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<double> numbers = {nan, 40, nan, 1e30, 10, nan, -50, nan},
                              filled = {40, 40, 30, 20, 10, -20, -50, -50};
    recorded_image curve = row_of(SPM_ARRAY_FLOAT64, numbers, 1.0, 1);
    settle_samples(curve);
    EXPECT_EQ(text_of(curve, "\\Void points"), "5 (on lines between their neighbours)");
    EXPECT_EQ(text_of(curve, "\\Void samples"), "of 8: 0-0 2-3 5-5 7-7");
    for (std::size_t i = 0; i < filled.size(); ++i) EXPECT_EQ(physical(curve.stream)[i], filled[i] + 1.0) << i;

    // Two curves of a volume, the second without a sample: it has no neighbours and gets the lowest value.
    const extent shape[] = {{3, {}}, {2, {}}, {1, {}}};
    recorded_image volume = make_samples("id", "label", shape, 1, {1.0, 0.0, "nm", {}}, SPM_ARRAY_FLOAT32);
    std::ranges::copy(std::vector<float>{8, NAN, 4, NAN, NAN, NAN}, elements_of<float>(volume).begin());
    SPMDataStream native = volume.stream;
    EXPECT_EQ(count_implausible(native), 4u);
    EXPECT_EQ(convert_measured(native), (std::vector<void_range>{{1, 1}, {3, 3}})); // a container holds them so
    settle_samples(volume);
    for (const SPMDataStream* each : {&native, &volume.stream})
        EXPECT_EQ(physical(*each), (std::vector<double>{8, 6, 4, 4, 4, 4}));
}

/// 64 x 64 heights from 0 to 4095 thousandths in an order without pattern.
std::vector<double> good_heights()
{
    std::vector<double> heights(4096);
    for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = static_cast<double>(i * 1283 % 4096) * 1e-3;
    return heights;
}

struct spoilt {
    const char* name;
    std::vector<double> numbers; ///< that replace good heights
    std::size_t absurd;          ///< how many of them count as not measured
    bool isCoarse;               ///< whether steps grow beyond a tenth of what the others span
};

// From the fifth lowest to the fifth highest of 4,096: the middle 99.8 % of the heights span 4.087, with a spoilt one
// among those outside 4.088.
TEST(SettledSamples, AbsurdOnesDoNotFlattenTheOthers)
{
    const double largest = std::numeric_limits<float>::max();
    const spoilt rows[] = {
        {"none", {}, 0, false},
        {"no data", {largest, -largest}, 2, false},
        {"from 1e30 up", {1e30}, 1, false},
        {"magnitudes below count by their distance", {9.9e29}, 1, false},
        {"a flipped bit", {4.2e6}, 1, false},
        {"further than 10^6 spans of 4.088 below", {-4.1e6}, 1, false},
        {"not further, but 65535 steps are too few", {4.08e6}, 0, true},
        {"a step of 0.31 is still fine", {2e4}, 0, false},
        {"as many as lie outside of the middle", {1e9, 1e9, -1e9, 1e9}, 4, false},
        {"more are no single samples", {1e9, 1e9, 1e9, 1e9, 1e9, 1e9}, 0, true},
        {"half of the heights span more than a step", {5e4, 5e4, 5e4, 5e4, 5e4, 5e4}, 0, false},
    };
    for (const spoilt& row : rows)
        for (const bool isFloat : {true, false}) {
            SCOPED_TRACE(std::string(row.name) + (isFloat ? ", float" : ", double"));
            std::vector<double> heights = good_heights();
            std::ranges::copy(row.numbers, heights.begin() + 100);
            recorded_image image = isFloat
                                       ? row_of(SPM_ARRAY_FLOAT32, std::vector<float>(heights.begin(), heights.end()))
                                       : row_of(SPM_ARRAY_FLOAT64, heights);
            settle_samples(image);
            const std::string count = row.absurd ? std::to_string(row.absurd) : "";
            EXPECT_EQ(text_of(image, "\\Absurd points"), count);
            EXPECT_EQ(text_of(image, "\\Void points"), count);
            ASSERT_EQ(image.notes.size(), (row.absurd ? 1u : 0u) + (row.isCoarse ? 1u : 0u));
            const std::string notes = testing::PrintToString(image.notes);
            if (row.absurd != 0) { EXPECT_THAT(notes, HasSubstr(count + " sample")); }
            if (row.isCoarse) { EXPECT_THAT(notes, HasSubstr("rounded to steps of")); }
            if (row.numbers.size() > row.absurd) continue;
            const std::vector<double> nm = physical(image.stream);
            for (std::size_t i = 0; i < heights.size(); ++i) {
                const bool isSpoilt = i >= 100 && i < 100 + row.numbers.size();
                const double expected = isSpoilt ? 1.0 : 2.0 * heights[i] + 1.0; // spoilt ones take the lowest
                ASSERT_NEAR(nm[i], expected, 1e-4) << i;
            }
        }
}

TEST(SettledSamples, FewSamplesOrASpanOf0HaveNoMiddleToJudgeBy)
{
    std::vector<double> mask(4096, 0.5);
    mask[9] = 1e9; // 4,095 samples of one value span nothing
    recorded_image flat = row_of(SPM_ARRAY_FLOAT64, mask);
    settle_samples(flat);
    EXPECT_EQ(text_of(flat, "\\Absurd points"), "");
    EXPECT_THAT(flat.notes,
                ElementsAre(AllOf(HasSubstr("steps of 30518."), HasSubstr("the middle 99.8 % of them are 2 nm"))));
    std::vector<double> spots(4096, 0.5);
    spots[9] = 700.25; // steps of 0.01 keep 0.5
    recorded_image sparse = row_of(SPM_ARRAY_FLOAT64, spots);
    settle_samples(sparse);
    EXPECT_TRUE(sparse.notes.empty());

    recorded_image few = row_of<double>(SPM_ARRAY_FLOAT64, {0.1, 0.2, 0.3, 1e9});
    settle_samples(few);
    EXPECT_EQ(text_of(few, "\\Absurd points"), "");
    EXPECT_THAT(few.notes, ElementsAre(HasSubstr("while half of them span 0.2 nm"))); // 0.1 of two steps

    for (const std::size_t count : {7u, 8u, 12u, 16u}) { // all but the lowest and the highest are the middle
        std::vector<double> curve(count);
        for (std::size_t i = 0; i < count; ++i) curve[i] = 0.1 * static_cast<double>(i);
        curve[3] = 1e25;
        recorded_image short_curve = row_of(SPM_ARRAY_FLOAT64, curve);
        settle_samples(short_curve);
        EXPECT_EQ(text_of(short_curve, "\\Absurd points"), count < 8 ? "" : "1");
        EXPECT_EQ(short_curve.notes.size(), 1u) << "samples left out, or coarse steps";
    }
}

TEST(SettledSamples, WideWholeNumbersAreJudgedLikeFloatingOnes)
{
    std::vector<std::int32_t> counts(4096);
    for (std::size_t i = 0; i < counts.size(); ++i) counts[i] = 100000 + static_cast<std::int32_t>(i % 50);
    counts[77] = 1 << 30; // a flipped bit, 2 * 10^7 spans away
    recorded_image image = row_of(SPM_ARRAY_INT32, counts);
    settle_samples(image);
    EXPECT_EQ(text_of(image, "\\Absurd points"), "1");
    EXPECT_NEAR(physical(image.stream)[0], 200001.0, 1e-2);
    EXPECT_NEAR(physical(image.stream)[49], 200099.0, 1e-2);
}

} // namespace
