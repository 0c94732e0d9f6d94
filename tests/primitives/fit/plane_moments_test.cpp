#include "primitives/fit/plane_moments.h"

#include "primitives/kernel_forms.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

namespace {

using primitives::fitted_plane;

std::vector<std::int16_t> noise(std::size_t count)
{
    std::vector<std::int16_t> out(count);
    std::uint32_t state = 7;
    for (std::int16_t& height : out) {
        state = state * 1664525u + 1013904223u;
        height = static_cast<std::int16_t>(state >> 16);
    }
    return out;
}

void expect_near_plane(const fitted_plane& a, const fitted_plane& b, double tolerance)
{
    EXPECT_NEAR(a.offset, b.offset, tolerance);
    EXPECT_NEAR(a.slopeX, b.slopeX, tolerance);
    EXPECT_NEAR(a.slopeY, b.slopeY, tolerance);
}

TEST(PlaneMoments, WholePlanesLeaveNothingAtAll)
{
    for (const auto& [width, height] : {std::pair{1, 1}, {1, 9}, {9, 1}, {2, 2}, {7, 5}, {33, 40}, {512, 300}}) {
        std::vector<std::int16_t> image;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) image.push_back(static_cast<std::int16_t>(-1000 + 3 * x - 7 * y));
        const auto fitted = primitives::fit_plane(image, width);
        EXPECT_EQ(fitted.plane.slopeX, width > 1 ? 3.0 : 0.0) << width << " x " << height;
        EXPECT_EQ(fitted.plane.slopeY, height > 1 ? -7.0 : 0.0) << width << " x " << height;
        EXPECT_EQ(fitted.plane.offset, -1000.0) << width << " x " << height;
        EXPECT_EQ(fitted.range.minimum, -1000 - 7 * (height - 1));
        EXPECT_EQ(fitted.range.maximum, -1000 + 3 * (width - 1));
        const auto left = primitives::residual_moments(image, width, fitted.plane);
        EXPECT_EQ(left.m2, 0.0);
        EXPECT_EQ(left.meanDeviation, 0.0);
    }
}

TEST(PlaneMoments, FastFormsAgreeWithTheDefinition)
{
    for (const auto& [width, height] :
         {std::pair{1, 1}, {1, 6}, {6, 1}, {3, 4}, {16, 3}, {17, 5}, {131, 67}, {4100, 3}}) {
        SCOPED_TRACE(width);
        const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        for (const std::size_t shift : {0u, 1u, 5u}) { // away from alignment
            const std::vector<std::int16_t> all = noise(count + shift);
            const std::span<const std::int16_t> image(all.data() + shift, count);
            const auto fast = primitives::fit_plane(image, width);
            const auto defined = primitives::fit_plane_reference(image, width);
            EXPECT_EQ(fast.range, defined.range);
            expect_near_plane(fast.plane, defined.plane, 32768 * 1e-9);
            const auto moments = primitives::residual_moments(image, width, defined.plane);
            const auto expected = primitives::residual_moments_reference(image, width, defined.plane);
            EXPECT_NEAR(moments.m1, expected.m1, 1e-9);
            EXPECT_NEAR(moments.m2, expected.m2, 1e-9 * (1.0 + expected.m2));
            EXPECT_NEAR(moments.m3, expected.m3, 1e-9 * (1.0 + std::pow(expected.m2, 1.5)));
            EXPECT_NEAR(moments.m4, expected.m4, 1e-9 * (1.0 + expected.m4));
            EXPECT_NEAR(moments.meanDeviation, expected.meanDeviation, 1e-9 * (1.0 + expected.meanDeviation));
        }
    }
}

TEST(PlaneMoments, EveryFormGivesTheSameBits)
{
    const std::vector<std::int16_t> all = noise(700);
    using namespace primitives;
    for (const auto& form : forms_of(&kernel_table::addPowers))
        for (const std::size_t shift : {0u, 1u, 5u})
            for (std::size_t length = 0; length < 600; length += length < 70 ? 1 : 37) {
                const std::span<const std::int16_t> row(all.data() + shift, length);
                power_sums sums{1, 2, 3, 4}, expected{1, 2, 3, 4};
                // As sixteen interleaved rows, each summed by itself.
                double lanes[16][4] = {};
                for (std::size_t i = 0; i < length / 16 * 16; ++i) {
                    double line = -17.3 + 0.7 * static_cast<double>(i % 16);
                    for (std::size_t step = 0; step < i / 16; ++step) line += 0.7 * 16;
                    const double z = row[i] - line, square = z * z;
                    const double powers[] = {square, square * z, square * square, std::fabs(z)};
                    for (std::size_t p = 0; p < 4; ++p) lanes[i % 16][p] += powers[p];
                }
                double totals[4] = {};
                for (std::size_t k = 0; k < 8; ++k)
                    for (std::size_t p = 0; p < 4; ++p) totals[p] += lanes[k][p] + lanes[k + 8][p];
                expected.second += totals[0];
                expected.third += totals[1];
                expected.fourth += totals[2];
                expected.absolute += totals[3];
                ASSERT_EQ(form.run(sums, row.data(), row.size(), -17.3, 0.7), length / 16 * 16) << form.name;
                ASSERT_EQ(std::memcmp(&sums, &expected, sizeof sums), 0) << form.name << " of " << length;
            }
}

TEST(PlaneMoments, MatchAHandCount)
{
    // 0 0 0 / 0 9 0 / 0 0 0: the slopes are 0 and the mean is 1, so eight residuals are -1 and one is 8.
    const std::vector<std::int16_t> peak = {0, 0, 0, 0, 9, 0, 0, 0, 0};
    const auto fitted = primitives::fit_plane(peak, 3);
    expect_near_plane(fitted.plane, {1.0, 0.0, 0.0}, 0.0);
    const auto left = primitives::residual_moments(peak, 3, fitted.plane);
    EXPECT_DOUBLE_EQ(left.m1, 0.0);
    EXPECT_DOUBLE_EQ(left.m2, (8.0 * 1.0 + 64.0) / 9.0);
    EXPECT_DOUBLE_EQ(left.m3, (-8.0 + 512.0) / 9.0);
    EXPECT_DOUBLE_EQ(left.m4, (8.0 + 4096.0) / 9.0);
    EXPECT_DOUBLE_EQ(left.meanDeviation, (8.0 + 8.0) / 9.0);
}

} // namespace
