// Thresholds by themselves, and features that touch.
#include "feature_fixture.h"

#include "primitives/map/bit_image.h"
#include "spectra/figures/features/feature_search.h"
#include "spectra/figures/features/otsu.h"
#include "spectra/figures/features/watershed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

namespace {

/// Share of both sides times the square of the distance of their means; 0 where one is empty.
double variance_between(const surface& of, int threshold)
{
    double count[2] = {}, sum[2] = {};
    for (const short each : of.samples) {
        const int side = each > threshold;
        count[side] += 1.0;
        sum[side] += each;
    }
    if (count[0] == 0.0 || count[1] == 0.0) return 0.0;
    const double apart = sum[0] / count[0] - sum[1] / count[1];
    return count[0] * count[1] * apart * apart;
}

TEST(Otsu, PartsTheHeightsBest)
{
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        surface of(13, 9);
        std::normal_distribution<double> low(-300.0 + 10.0 * round, 40.0), high(500.0, 90.0);
        for (std::size_t i = 0; i < of.samples.size(); ++i)
            of.samples[i] = static_cast<short>(i % 3 == 0 ? high(random) : low(random));
        double best = 0.0;
        for (int each = -600; each < 1000; ++each) best = std::max(best, variance_between(of, each));
        EXPECT_NEAR(variance_between(of, spectra::otsu_threshold(of.heights())), best, 1e-9 * best) << round;
    }
    surface two(4, 4, -100);
    two.at(1, 2) = 200;
    EXPECT_EQ(spectra::otsu_threshold(two.heights()), 49) << "the middle of -100 and 199, down";
    EXPECT_EQ(spectra::otsu_threshold(surface(3, 3, -7).heights()), -7) << "nothing is above";
    EXPECT_EQ(spectra::otsu_threshold({}), 0);
}

primitives::bit_image mask_above(const surface& of, int threshold)
{
    primitives::bit_image mask(of.width, of.height);
    for (int y = 0; y < of.height; ++y)
        for (int x = 0; x < of.width; ++x)
            if (of.samples[static_cast<std::size_t>(y * of.width + x)] > threshold) mask.fill(y, x, x + 1, true);
    return mask;
}

TEST(Watershed, PartsConesThatTouchWhereTheyMeet)
{
    // The cones meet at x = 16, 300 below their summits.
    surface of(33, 21);
    for (int y = 0; y < of.height; ++y)
        for (int x = 0; x < of.width; ++x)
            of.at(x, y) = static_cast<short>(
                std::lround(1000.0 - 50.0 * std::min(std::hypot(x - 10, y - 10), std::hypot(x - 22, y - 10))));
    const primitives::bit_image whole = mask_above(of, 500);
    for (const int depth : {100, 299, 301}) {
        primitives::bit_image mask = whole;
        spectra::part_by_watershed(of.heights(), mask, depth);
        const bool isParted = depth <= 300;
        EXPECT_EQ(spectra::feature_list::ofMask(mask, source_of(of)).features.size(), isParted ? 2u : 1u) << depth;
        for (int y = 0; y < of.height; ++y)
            for (int x = 0; x < of.width; ++x)
                ASSERT_EQ(mask.test(x, y), whole.test(x, y) && !(isParted && x == 16)) << depth << ' ' << x << ' ' << y;
    }
}

TEST(Watershed, LeavesOneSummitInEachArea)
{
    std::mt19937 random(3);
    for (int round = 0; round < 10; ++round) {
        surface of(41, 29); // all heights differ, so that each local maximum is a summit
        std::iota(of.samples.begin(), of.samples.end(), static_cast<short>(-500));
        std::shuffle(of.samples.begin(), of.samples.end(), random);
        const auto isSummit = [&](CPoint at) {
            for (int y = std::max(at.y - 1, 0); y <= std::min(at.y + 1, of.height - 1); ++y)
                for (int x = std::max(at.x - 1, 0); x <= std::min(at.x + 1, of.width - 1); ++x)
                    if (of.at(x, y) > of.at(at.x, at.y)) return false;
            return true;
        };
        primitives::bit_image mask = mask_above(of, -200);
        const primitives::bit_image whole = mask;
        spectra::part_by_watershed(of.heights(), mask, 1);
        for (int y = 0; y < of.height; ++y)
            for (int x = 0; x < of.width; ++x)
                ASSERT_TRUE(!isSummit({x, y}) || mask.test(x, y) == whole.test(x, y)) << x << ' ' << y;
        for (const Feature& each : spectra::feature_list::ofMask(mask, source_of(of)).features)
            ASSERT_LE(std::ranges::count_if(each.pixels, isSummit), 1) << round;
    }
}

} // namespace
