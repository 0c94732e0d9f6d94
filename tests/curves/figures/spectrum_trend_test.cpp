#include "base/VLAxis.h"
#include "curves/figures/curve_spectrum.h"
#include "curves/figures/trend_line.h"

#include <cmath>
#include <gmock/gmock.h>
#include <numbers>
#include <vector>

namespace {

using curves::spectrum_mode;

curves::curve_spectrum spectrum_of(const std::vector<std::int16_t>& curve, const VLAxis& values, spectrum_mode mode)
{
    curves::curve_spectrum out;
    curves::evaluate_spectrum(curve, values, mode, out);
    return out;
}

TEST(CurveSpectrum, OfACosineIsOneBin)
{
    // A cosine that is even about the middle of the curve has no trend. n = 1000, 7 periods, 20000 raw, 0.5 nm each.
    constexpr int n = 1000;
    std::vector<std::int16_t> curve;
    const double middle = (n - 1) / 2.0;
    for (int i = 0; i < n; ++i)
        curve.push_back(static_cast<std::int16_t>(
            std::lround(20000.0 * std::cos(2.0 * std::numbers::pi * 7.0 * (i - middle) / n))));
    const VLAxis values(77.0, 0.5, "nm");
    const auto power = spectrum_of(curve, values, spectrum_mode::power);
    const auto magnitude = spectrum_of(curve, values, spectrum_mode::magnitude);
    ASSERT_EQ(power.values.size(), 501u);
    ASSERT_EQ(magnitude.phase.size(), 501u);
    EXPECT_NEAR(magnitude.values[7], 5000.0f, 0.01f); // half of the amplitude
    EXPECT_NEAR(power.values[7], 25e6f, 100.0f);
    EXPECT_EQ(power.max, power.values[7]);
    const double phase = std::remainder(-2.0 * std::numbers::pi * 7.0 * middle / n, 2.0 * std::numbers::pi);
    EXPECT_NEAR(std::remainder(static_cast<double>(power.phase[7]) - phase, 2.0 * std::numbers::pi), 0.0, 1e-5);
    for (std::size_t i = 0; i < 501; ++i) EXPECT_TRUE(i == 7 || magnitude.values[i] < 0.1f) << i;
}

TEST(CurveSpectrum, KeepsThePowerOfTheCurveWithoutItsTrend)
{
    // Parseval, n even: c0^2 + 2 sum + c(n/2)^2 is the mean square of what is left.
    std::vector<std::int16_t> curve;
    for (int i = 0; i < 64; ++i) curve.push_back(static_cast<std::int16_t>(i * 7919 % 501 - 250 + 10 * i));
    const auto found = spectrum_of(curve, VLAxis(), spectrum_mode::power);
    double sum = -static_cast<double>(found.values[0]) - static_cast<double>(found.values[32]);
    for (const float value : found.values) sum += 2.0 * static_cast<double>(value);
    std::vector<double> y(curve.begin(), curve.end());
    remove_plane(y.data(), 1, 64, nullptr);
    double squares[2];
    moments(squares, 2, y.data(), 64, 1);
    EXPECT_NEAR(sum, squares[1], 1e-4 * squares[1]);
    EXPECT_NEAR(found.values[0], 0.0f, 1e-6f);
}

TEST(CurveSpectrum, OfAConstantIsZeroUnderAMaximumOfOne)
{
    for (const std::size_t n : {1u, 2u, 333u}) {
        const auto found = spectrum_of(std::vector<std::int16_t>(n, 123), VLAxis(0.1, 0.3, "nm"), spectrum_mode::power);
        EXPECT_EQ(found.values.size(), n / 2 + 1);
        EXPECT_THAT(found.values, testing::Each(0.0f));
        EXPECT_EQ(found.max, 1.0f);
    }
    EXPECT_TRUE(spectrum_of({}, VLAxis(), spectrum_mode::power).values.empty());
}

TEST(TrendLine, ExplainsALineAndTellsWhatIsLeft)
{
    std::vector<double> y;
    for (int i = 0; i < 100; ++i) y.push_back(3.0 - 0.5 * i);
    const curves::trend_line exact = curves::fit_trend(y);
    EXPECT_NEAR(exact.line.A, 3.0, 1e-12);
    EXPECT_NEAR(exact.line.B, -0.5, 1e-13);
    EXPECT_NEAR(exact.r2, 1.0, 1e-12);
    EXPECT_NEAR(exact.sd, 0.0, 1e-12);

    // By hand: 0, 2, 1, 3 has the line 0.3 + 0.8 i, SST 5, SSE 1.8.
    const curves::trend_line small = curves::fit_trend(std::vector<double>{0, 2, 1, 3});
    EXPECT_NEAR(small.line.A, 0.3, 1e-15);
    EXPECT_NEAR(small.line.B, 0.8, 1e-15);
    EXPECT_NEAR(small.r2, 1.0 - 1.8 / 5.0, 1e-15);
    EXPECT_NEAR(small.sd, std::sqrt(1.8 / 3.0), 1e-15);
}

TEST(TrendLine, OfAConstantFitsWholly)
{
    const std::vector<std::int16_t> curve(997, -17);
    const curves::trend_line found = curves::fit_trend(curve, VLAxis(0.1, 0.7, "nm"));
    EXPECT_DOUBLE_EQ(found.line.A, 0.1 - 17 * 0.7);
    EXPECT_EQ(found.line.B, 0.0);
    EXPECT_EQ(found.r2, 1.0);
    EXPECT_EQ(found.sd, 0.0);
    EXPECT_EQ(curves::fit_trend(std::vector<double>{}).r2, 1.0);
    const curves::trend_line one = curves::fit_trend(std::vector<double>{4.0});
    EXPECT_EQ(one.line.A, 4.0);
    EXPECT_EQ(one.line.B, 0.0);
    EXPECT_EQ(one.sd, 0.0);
}

} // namespace
