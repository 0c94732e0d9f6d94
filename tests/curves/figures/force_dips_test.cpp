// What lies between contact and free stretch: local minima and valleys.
#include "curves/figures/force/force_curve.h"

#include <gmock/gmock.h>
#include <random>

namespace {

using testing::ElementsAre;
using testing::Pair;
using valley = force_curve_stats::valley;

std::vector<valley> valleys_of(const force_curve_stats& stats)
{
    return {stats.valleys.get(), stats.valleys.get() + stats.valley_count};
}

TEST(LocalMinima, AreLowestOnBothSidesBetweenTheStretches)
{
    std::mt19937 random(5);
    for (int round = 0; round < 300; ++round) {
        const int n = 20 + static_cast<int>(random() % 150), w = static_cast<int>(random() % 12);
        std::vector<double> y, x;
        for (int i = 0; i < n; ++i) {
            y.push_back(static_cast<double>(random() % 40));
            x.push_back(i * 0.5);
        }
        force_curve_stats stats;
        stats.slant_last = static_cast<int>(random() % 20);
        stats.zero_first = n / 2 + static_cast<int>(random() % static_cast<unsigned>(n / 2));
        stats.zero_a = 2.0;
        stats.zero_b = 0.25;
        const bool hasX = round % 2 == 1;
        find_loc_fmin(y.data(), n, stats, w, hasX ? x.data() : nullptr);
        std::vector<int> expected;
        const int end = std::min(stats.zero_first + w, n);
        for (int p = std::max(stats.slant_last - w, 0) + w; p + w + 1 < end; ++p) {
            const auto rest = [&](int i) { return y[std::size_t(i)] - 0.25 * (hasX ? x[std::size_t(i)] : double(i)); };
            bool isLowest = true;
            for (int i = p - w; i <= p + w; ++i)
                isLowest = isLowest && (i < p ? rest(i) > rest(p) : rest(i) >= rest(p));
            if (isLowest) expected.push_back(p);
        }
        EXPECT_EQ(stats.local_minima, expected) << round;
    }
}

/// A curve over the line 0: contact down to 0 at sample 10, then dips, straight from corner to corner, then 0.
struct dip_curve {
    std::vector<double> y;
    force_curve_stats stats;

    dip_curve(const std::vector<std::pair<int, double>>& corners, int n, int zeroFirst)
    {
        y.assign(static_cast<std::size_t>(n), 0.0);
        for (int i = 0; i <= 10; ++i) y[std::size_t(i)] = 10.0 - i;
        for (std::size_t c = 0; c + 1 < corners.size(); ++c)
            for (int i = corners[c].first; i <= corners[c + 1].first; ++i)
                y[std::size_t(i)] = corners[c].second + (corners[c + 1].second - corners[c].second) *
                                                            (i - corners[c].first) /
                                                            (corners[c + 1].first - corners[c].first);
        stats.slant_a = 10.0;
        stats.slant_b = -1.0;
        stats.slant_last = 8;
        stats.zero_first = zeroFirst;
        stats.zero_last = n - 1;
    }
    std::vector<valley> find()
    {
        get_force_curve_valleys(y.data(), static_cast<int>(y.size()), stats);
        return valleys_of(stats);
    }
};

TEST(Valleys, AreCutAtTheSameHeightOnBothFlanks)
{
    // Followed by hand: the dip goes below 0 after sample 10; the flat rest up to the zero stretch counts as one too.
    dip_curve one({{10, 0}, {15, -5}, {20, 0}}, 40, 30);
    EXPECT_THAT(one.find(), ElementsAre(Pair(10, 20), Pair(22, 30)));
    // A peak of -1 parts two dips: either is cut at -1.
    dip_curve two({{10, 0}, {15, -5}, {19, -1}, {23, -5}, {28, 0}}, 45, 36);
    EXPECT_THAT(two.find(), ElementsAre(Pair(11, 19), Pair(19, 27), Pair(30, 36)));
}

TEST(Valleys, OfLongStretchesAreFoundOnTheSplineOfTheCurve)
{
    dip_curve wide({{10, 0}, {60, -50}, {110, 0}}, 300, 200);
    const std::vector<valley> found = wide.find();
    ASSERT_FALSE(found.empty());
    EXPECT_THAT(found[0], Pair(10, 110));
}

TEST(ValleyArea, IsTheTrapezesUnderTheZeroLine)
{
    // A triangle 10 wide and 5 deep under the line: 25 square samples, 0.5 wide each and 2 deep a raw step.
    const std::int16_t raw[] = {0, -1, -2, -3, -4, -5, -4, -3, -2, -1, 0};
    force_curve_stats stats;
    EXPECT_DOUBLE_EQ(curves::valley_area(raw, {2.0, 0.0}, 0.5, stats, {0, 10}), 25.0);
    // The same triangle under a line at 7 that rises by 1 a sample, the curve rising along and starting from 7.
    const std::int16_t rising[] = {0, 0, 0, 0, 0, 0, 2, 4, 6, 8, 10};
    stats.zero_a = 7.0;
    stats.zero_b = 1.0;
    EXPECT_DOUBLE_EQ(curves::valley_area(rising, {1.0, 7.0}, 2.0, stats, {0, 10}), 50.0);
}

} // namespace
