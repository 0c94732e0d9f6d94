#include "primitives/fit/linear_fit.h"
#include "primitives/numeric.h"

#include <cmath>
#include <gmock/gmock.h>
#include <random>
#include <vector>

namespace {

std::vector<double> noisy_row(int n)
{
    std::mt19937 random(static_cast<unsigned>(n));
    std::vector<double> row;
    for (int i = 0; i < n; ++i) row.push_back(1e3 + i + 20.0 * std::sin(i * 0.1) + static_cast<double>(random() % 100));
    return row;
}

TEST(FitPlane, FindsThePlaneOfPointsOnIt)
{
    for (const auto& [rows, columns] : {std::pair{1, 2}, {1, 40}, {7, 1}, {1, 1}, {13, 9}, {64, 33}}) {
        std::vector<double> data;
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < columns; ++c) data.push_back(0.1 - 0.25 * c + 7.0 * r);
        linear_fit plane;
        fit_plane(data.data(), rows, columns, &plane);
        EXPECT_NEAR(plane.A, 0.1, 1e-12);
        EXPECT_NEAR(plane.B, columns > 1 ? -0.25 : 0.0, 1e-13);
        EXPECT_NEAR(plane.C, rows > 1 ? 7.0 : 0.0, 1e-13);
    }
}

TEST(FitPlane, LeavesNothingOfAConstant)
{
    std::vector<double> data(1003, 0.1);
    linear_fit line{1, 1, 1};
    remove_plane(data.data(), 1, 1003, &line);
    EXPECT_EQ(line.A, 0.1);
    EXPECT_EQ(line.B, 0.0);
    EXPECT_THAT(data, testing::Each(0.0));
    remove_plane(data.data(), 1, 1003, nullptr);
}

TEST(FitPlane, OfNothingIsZero)
{
    linear_fit plane{1, 1, 1};
    fit_plane(nullptr, 0, 5, &plane);
    EXPECT_EQ(plane.A, 0.0);
    EXPECT_EQ(plane.B, 0.0);
    EXPECT_EQ(plane.C, 0.0);
}

TEST(RemovePlane, LeavesWhatHasNoMeanAndNoSlope)
{
    std::vector<float> row(501);
    std::vector<double> rest(row.size());
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = static_cast<float>(1e4 + 3.0 * static_cast<double>(i) + std::sin(static_cast<double>(i)));
    remove_plane_32f(row.data(), 1, 501, nullptr);
    double moment = 0.0;
    for (std::size_t i = 0; i < row.size(); ++i) moment += (rest[i] = row[i]) * (static_cast<double>(i) - 250.0);
    double found[2];
    moments(found, 2, rest.data(), 501, 1);
    EXPECT_NEAR(found[0], 0.0, 1e-4); // floats of 1e4 have steps of 1e-3
    EXPECT_NEAR(found[1], 0.5, 0.01); // mean square of a sine
    EXPECT_NEAR(moment / 501.0, 0.0, 0.02);
}

TEST(Moments, AreMeansOfPowers)
{
    const double data[] = {1.0, 2.0, -3.0};
    double out[3];
    moments(out, 3, data, 3, 1);
    EXPECT_THAT(out, testing::ElementsAre(0.0, 14.0 / 3.0, -6.0));
}

TEST(BSpline, KeepsCubicPolynomials)
{
    for (const auto& [n, spans] : {std::pair{4, 1}, {5, 9}, {65, 2}, {300, 5}, {1024, 16}, {1000, 997}}) {
        std::vector<double> row, before;
        for (int i = 0; i < n; ++i) {
            const double t = 2.0 * i / (n - 1) - 1.0;
            row.push_back(3.0 - t + 0.5 * t * t - 2.0 * t * t * t);
        }
        before = row;
        b_spline_1d(row.data(), n, spans);
        EXPECT_THAT(row, testing::Pointwise(testing::DoubleNear(1e-10), before)) << n << ' ' << spans;
    }
}

/// The hat that a spline of `spans` spans over n samples is built of: on four spans around `centre`.
double hat(double t) noexcept
{
    t = std::fabs(t);
    return t < 1.0 ? 2.0 / 3.0 - t * t + t * t * t / 2.0 : t < 2.0 ? std::pow(2.0 - t, 3) / 6.0 : 0.0;
}

TEST(BSpline, IsTheBestOfItsSpace)
{
    constexpr int n = 300, spans = 5;
    const std::vector<double> row = noisy_row(n);
    std::vector<double> smooth = row;
    b_spline_1d(smooth.data(), n, spans);
    // The rest stands at a right angle to every hat.
    for (int k = -1; k <= spans + 1; ++k) {
        double product = 0.0;
        for (int i = 0; i < n; ++i)
            product += (row[static_cast<std::size_t>(i)] - smooth[static_cast<std::size_t>(i)]) *
                       hat(i * static_cast<double>(spans) / (n - 1) - k);
        EXPECT_NEAR(product, 0.0, 1e-8) << k;
    }
    std::vector<double> again = smooth;
    b_spline_1d(again.data(), n, spans);
    EXPECT_THAT(again, testing::Pointwise(testing::DoubleNear(1e-9), smooth));
}

TEST(BSpline, LeavesRowsThatACubicPassesThrough)
{
    std::vector<double> row{1.0, -5.0, 3.0};
    b_spline_1d(row.data(), 3, 1);
    EXPECT_THAT(row, testing::ElementsAre(1.0, -5.0, 3.0));
    b_spline_1d(nullptr, 0, 3);
}

TEST(Spline, PassesItsPointsWithoutCurvatureAtTheEnds)
{
    // By hand: one inner point of second derivative m gives 4 m = 6 (-1 - 1), and the middle of a segment of width 1
    // lies m / 16 below the chord.
    const double x[] = {0.0, 1.0, 2.0}, y[] = {0.0, 1.0, 0.0};
    double second[3];
    build_spline(x, y, 3, second);
    EXPECT_THAT(second, testing::ElementsAre(0.0, -3.0, 0.0));
    EXPECT_DOUBLE_EQ(eval_spline_point(x, y, second, 3, 1.0), 1.0);
    EXPECT_DOUBLE_EQ(eval_spline_point(x, y, second, 3, 0.5), 0.5 + 3.0 / 16.0);
    EXPECT_DOUBLE_EQ(eval_spline_point(x, y, second, 3, 1.5), 0.5 + 3.0 / 16.0);
}

TEST(Spline, FollowsASmoothCurveOverUnevenPoints)
{
    std::vector<double> x, y;
    for (int i = 0; i <= 40; ++i) {
        x.push_back(3.14159265358979323846 * (i + 0.3 * std::sin(i)) / 40.0);
        y.push_back(std::sin(x.back()));
    }
    std::vector<double> second(x.size());
    const int n = static_cast<int>(x.size());
    build_spline(x.data(), y.data(), n, second.data());
    for (double at = 0.05; at < 3.1; at += 0.01)
        EXPECT_NEAR(eval_spline_point(x.data(), y.data(), second.data(), n, at), std::sin(at), 2e-5) << at;
}

TEST(Spline, FindsTheSegmentAroundAPosition)
{
    const double x[] = {0.0, 1.0, 4.0};
    EXPECT_EQ(find_spline_point(x, 3, -5.0), 0);
    EXPECT_EQ(find_spline_point(x, 3, 0.99), 0);
    EXPECT_EQ(find_spline_point(x, 3, 1.0), 1);
    EXPECT_EQ(find_spline_point(x, 3, 9.0), 1);
    EXPECT_EQ(find_spline_point(x, 1, 9.0), 0);
    EXPECT_EQ(eval_spline_point(x, x, x, 0, 1.0), 0.0);
}

} // namespace
