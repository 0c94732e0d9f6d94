// Bins, delimiters and cutoff, counted by hand.
#include "spectra/figures/histogram.h"

#include "primitives/map/histogram.h"

#include <gtest/gtest.h>
#include <numeric>

namespace {

using namespace spectra;
using heights = std::vector<std::int16_t>;
using counts = std::vector<std::uint32_t>;

TEST(HeightCounts, CountEveryHeightOnceWhereverItStands)
{
    for (const std::size_t length : {0u, 1u, 15u, 16u, 17u, 31u, 33u, 1000u, 65536u}) {
        heights samples(length);
        std::uint32_t state = 7;
        for (std::int16_t& each : samples) {
            state = state * 1664525u + 1013904223u;
            each = static_cast<std::int16_t>(state >> 16);
        }
        if (length > 16) samples[3] = samples[length - 1] = -32768;
        if (length > 17) samples[length / 2] = 32767;
        counts expected(primitives::heightCount, 5);
        for (const std::int16_t each : samples) ++expected[static_cast<std::size_t>(each + 32768)];
        counts made(primitives::heightCount, 5);
        primitives::count_heights(samples, std::span<std::uint32_t, primitives::heightCount>(made));
        EXPECT_EQ(made, expected) << length;
    }
}

TEST(Histogram, RoundsSamplesToBinsBetweenTheExtremes)
{
    // Heights 0 … 8 into 3 bins: z * 2 / 8 rounded halves up gives 0 for 0, 1, then 1 for 2 … 5, then 2 for 6 … 8.
    const heights samples = {0, 1, 2, 3, 4, 5, 6, 7, 8};
    const VLAxis axis(-1.0, 0.5, "nm");
    const height_histogram made = make_histogram(samples, axis, 3u);
    EXPECT_EQ(made.bins, (counts{2, 4, 3}));
    EXPECT_EQ(made.totalCount, 9u);
    EXPECT_EQ(made.peakCount, 4u);
    EXPECT_EQ(made.valueMin, -1.0);
    EXPECT_EQ(made.valueMax, 3.0);
    EXPECT_EQ(made.valueRange, 4.0);
    EXPECT_EQ(make_histogram(samples, axis, 2u).bins, (counts{4, 5}));
    EXPECT_EQ(make_histogram(samples, axis, 1u).bins, (counts{9}));
    // A falling axis counts the same samples.
    const height_histogram falling = make_histogram(samples, VLAxis(1.0, -0.5, "nm"), 3u);
    EXPECT_EQ(falling.bins, made.bins);
    EXPECT_EQ(falling.valueMin, 1.0);
    EXPECT_EQ(falling.valueMax, -3.0);
}

TEST(Histogram, HasTheSameBinsWhereverTheAxisStarts)
{
    // Heights 0 … 100 into 11 bins: 5, 15 … 95 lie half way and go up, so that the first bin has 5 and the last 6. Into
    // 201 bins every other one gets a height.
    heights samples(101);
    std::iota(samples.begin(), samples.end(), std::int16_t{0});
    counts spread(201);
    for (std::size_t i = 0; i < spread.size(); i += 2) spread[i] = 1;
    for (const VLAxis& axis : {VLAxis(0, 1, "nm"), VLAxis(-100, 0.01, "um"), VLAxis(12.3, 0.37, "nm"),
                               VLAxis(1.5e-9, 3e-13, "m"), VLAxis(12, 1e-16, "m"), VLAxis(-7.7, -0.1, "nm")}) {
        EXPECT_EQ(make_histogram(samples, axis, 11u).bins, (counts{5, 10, 10, 10, 10, 10, 10, 10, 10, 10, 6}));
        EXPECT_EQ(make_histogram(samples, axis, 201u).bins, spread);
    }
}

TEST(Histogram, ChoosesHalfTheRootOfTheSamples)
{
    EXPECT_EQ(automatic_bar_count(65536), 128u);
    EXPECT_EQ(automatic_bar_count(1), 1u);  // 0.5 goes up
    EXPECT_EQ(automatic_bar_count(25), 3u); // 2.5 goes up
    EXPECT_EQ(automatic_bar_count(24), 2u);
    EXPECT_EQ(make_histogram(heights(400, 3), VLAxis()).bins.size(), 10u);
}

TEST(Histogram, StandsWithoutARange)
{
    for (const double step : {0.25, 0.0}) {
        const height_histogram flat = make_histogram(heights(100, 12), VLAxis(2.0, step, "nm"));
        EXPECT_EQ(flat.bins, (counts{100, 0, 0, 0, 0}));
        EXPECT_EQ(flat.valueMin, 2.0 + 12 * step);
        EXPECT_EQ(flat.valueMax, flat.valueMin);
        EXPECT_EQ(flat.valueRange, step);
    }
    const height_histogram none = make_histogram(heights{}, VLAxis());
    EXPECT_TRUE(none.bins.empty());
    EXPECT_EQ(share_between(none, {}).selectedCount, 0u);
}

TEST(Histogram, SumsBetweenDelimitersInWhicheverOrder)
{
    height_histogram made;
    made.bins = {1, 2, 4, 8};
    made.valueMin = 10.0;
    made.valueMax = 20.0;
    made.totalCount = 15;
    const struct {
        double f1, f2;
        std::uint32_t selected;
    } cases[] = {{0.25, 0.75, 2 + 4 + 8}, // 4 * 0.25 = 1, 4 * 0.75 = 3
                 {0.75, 0.25, 14},
                 {0.0, 1.0, 15},      // 4 is clamped to the last bin
                 {0.49, 0.74, 2 + 4}, // 1.96 and 2.96 are cut off
                 {0.5, 0.5, 4}};
    for (const auto& [f1, f2, selected] : cases) {
        const delimited_share share = share_between(made, {f1, f2});
        EXPECT_EQ(share.selectedCount, selected) << f1 << ' ' << f2;
        EXPECT_NEAR(share.percent, selected / 15.0 * 100.0, 1e-12);
        EXPECT_NEAR(share.x0, 10.0 + 10.0 * f1, 1e-12);
        EXPECT_NEAR(share.x1, 10.0 + 10.0 * f2, 1e-12);
    }
    EXPECT_EQ(share_text(share_between(made, {0.75, 0.25}), "nm"),
              "X0: 17.5000 nm\tX1: 12.5000 nm\tX1-X0: -5.0000 nm %: 93.3");
}

TEST(Cutoff, ClipsLowFirst)
{
    const heights samples = {0, 1, 2, 3, 4, 5, 6, 7, 8};
    const VLAxis axis(-1.0, 0.5, "nm");
    const height_histogram made = make_histogram(samples, axis);
    const auto clipped = [&](delimiters at) {
        heights copy = samples;
        cut_off(copy, cutoff_window(made, at, axis));
        return copy;
    };
    EXPECT_EQ(clipped({0.25, 0.75}), (heights{2, 2, 2, 3, 4, 5, 6, 6, 6}));
    EXPECT_EQ(clipped({0.0, 1.0}), samples);
    EXPECT_EQ(clipped({0.3125, 1.0}), (heights{3, 3, 3, 3, 4, 5, 6, 7, 8})); // 2.5 goes up
    // Crossed: all rise to 6, then all sink to 2.
    EXPECT_EQ(clipped({0.75, 0.25}), heights(9, 2));
    heights extremes = {-32768, 0, 32767};
    cut_off(extremes, {-100000, 100000});
    EXPECT_EQ(extremes, (heights{-32768, 0, 32767}));
}

} // namespace
