// Planes and moments of images of which some samples do not count.
#include "primitives/fit/partial_plane.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <numeric>
#include <random>

namespace {

using primitives::sample_run;

/// The plane by the normal equations as they stand, by Cramer's rule in long double.
primitives::fitted_plane plane_by_equations(const std::vector<std::int16_t>& samples, int width,
                                            const std::vector<bool>& counts)
{
    long double n = 0, x = 0, y = 0, z = 0, xx = 0, xy = 0, yy = 0, xz = 0, yz = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (!counts[i]) continue;
        const long double c = static_cast<long double>(i % static_cast<std::size_t>(width)),
                          r = static_cast<long double>(i / static_cast<std::size_t>(width)), s = samples[i];
        n += 1, x += c, y += r, z += s, xx += c * c, xy += c * r, yy += r * r, xz += c * s, yz += r * s;
    }
    const auto determinant = [](const std::array<long double, 9>& m) {
        return m[0] * (m[4] * m[8] - m[5] * m[7]) - m[1] * (m[3] * m[8] - m[5] * m[6]) +
               m[2] * (m[3] * m[7] - m[4] * m[6]);
    };
    const long double all = determinant({n, x, y, x, xx, xy, y, xy, yy});
    return {static_cast<double>(determinant({z, x, y, xz, xx, xy, yz, xy, yy}) / all),
            static_cast<double>(determinant({n, z, y, x, xz, xy, y, yz, yy}) / all),
            static_cast<double>(determinant({n, x, z, x, xx, xz, y, xy, yz}) / all)};
}

TEST(PartialPlane, IsTheBestOneOfWhatCounts)
{
    std::mt19937 random(3);
    for (const int width : {2, 7, 31}) {
        std::vector<std::int16_t> samples(static_cast<std::size_t>(width) * 23);
        std::vector<bool> counts(samples.size());
        std::vector<sample_run> leftOut;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            counts[i] = i < 5 || random() % 3 != 0;
            samples[i] = static_cast<std::int16_t>(counts[i] ? random() % 2000 : 0x8000);
            if (!counts[i]) leftOut.push_back({i, 1});
        }
        const auto expected = plane_by_equations(samples, width, counts);
        for (const auto& runs : {leftOut, primitives::joined_runs(leftOut)}) {
            const auto [range, plane] = primitives::fit_partial_plane(samples, width, runs);
            EXPECT_GE(range.minimum, 0);
            EXPECT_NEAR(plane.offset, expected.offset, 1e-8);
            EXPECT_NEAR(plane.slopeX, expected.slopeX, 1e-9);
            EXPECT_NEAR(plane.slopeY, expected.slopeY, 1e-9);
            double second = 0.0, third = 0.0, absolute = 0.0, count = 0.0;
            for (std::size_t i = 0; i < samples.size(); ++i) {
                if (!counts[i]) continue;
                const auto at = static_cast<int>(i);
                const double z =
                    samples[i] - expected.offset - expected.slopeX * (at % width) - expected.slopeY * (at / width);
                second += z * z, third += z * z * z, absolute += std::fabs(z), count += 1.0;
            }
            const auto moments = primitives::partial_moments(samples, width, plane, runs);
            EXPECT_NEAR(moments.m2, second / count, 1e-9 * second / count);
            EXPECT_NEAR(moments.m3, third / count, 1e-3);
            EXPECT_NEAR(moments.meanDeviation, absolute / count, 1e-9 * absolute);
        }
    }
}

TEST(PartialPlane, RisesAlongTheLineOfWhatCounts)
{
    std::vector<std::int16_t> samples(25);
    std::iota(samples.begin(), samples.end(), std::int16_t{0}); // x + 5 y
    const struct {
        std::vector<sample_run> leftOut;
        double offset, slopeX, slopeY;
    } cases[] = {
        {{}, 0, 1, 5},
        {{{1, 5}, {7, 5}, {13, 5}, {19, 5}}, 0, 3, 3}, // the diagonal from 0 to 24: 6 a step of (1, 1)
        {{{0, 10}, {15, 10}}, 10, 1, 0},               // a row
        {{{0, 7}, {8, 17}}, 7, 0, 0},                  // a sample
        {{{0, 25}}, 0, 0, 0},
    };
    for (const auto& each : cases) {
        const auto [range, plane] = primitives::fit_partial_plane(samples, 5, each.leftOut);
        EXPECT_NEAR(plane.offset, each.offset, 1e-12);
        EXPECT_NEAR(plane.slopeX, each.slopeX, 1e-12);
        EXPECT_NEAR(plane.slopeY, each.slopeY, 1e-12);
        if (range.minimum > range.maximum) continue;
        EXPECT_EQ(primitives::partial_moments(samples, 5, plane, each.leftOut).m2, 0.0) << "nothing but rounding";
    }
}

} // namespace
