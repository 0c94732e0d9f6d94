#include "curves/figures/force/force_curve.h"
#include "curves/figures/force/force_report.h"
#include "curves/figures/force/force_stretches.h"
#include "curves/figures/force/measured_curve.h"
#include "document/contact_model.h"
#include "primitives/fit/linear_fit.h"

#include <cmath>
#include <gmock/gmock.h>
#include <numeric>
#include <random>

namespace {

using testing::ElementsAre;
using valley = force_curve_stats::valley;

force_curve_stats analysed(const std::vector<double>& y, double zeroThreshold = 1.0, double slantThreshold = 1.0)
{
    force_curve_stats stats;
    get_force_curve_stats(y.data(), static_cast<int>(y.size()), zeroThreshold, slantThreshold, stats);
    return stats;
}

// The search, step by step.

TEST(CurveSmoother, TakesMeansOfThreeOrFiveOrASplineByLength)
{
    for (const int n : {2, 3, 64, 65, 256}) {
        std::vector<double> impulse(static_cast<std::size_t>(n)), out(impulse.size());
        impulse[impulse.size() / 2] = 15.0;
        curves::curve_smoother(n).smooth(impulse.data(), out.data());
        const double sum = std::accumulate(out.begin(), out.end(), 0.0);
        EXPECT_NEAR(sum, n == 3 ? 5.0 : 15.0, 1e-12) << n;
        EXPECT_NEAR(out[impulse.size() / 2], n < 3 ? 15.0 : n <= 64 ? 5.0 : 3.0, 1e-12) << n;
    }
    std::vector<double> edges(100), out(100);
    edges[0] = edges[1] = edges[99] = 30.0;
    curves::curve_smoother(100).smooth(edges.data(), out.data());
    EXPECT_THAT(std::vector<double>(out.begin(), out.begin() + 5),
                ElementsAre(0, -10, -18, -24, -30)); // from the first value on
    EXPECT_THAT(std::vector<double>(out.end() - 4, out.end()), ElementsAre(-30, -24, -20, 0));

    for (const auto& [n, spans] : {std::pair{257, 4}, {300, 5}, {1024, 16}}) {
        std::vector<double> row(static_cast<std::size_t>(n)), smooth(row.size());
        for (std::size_t i = 0; i < row.size(); ++i) row[i] = std::sin(static_cast<double>(i * i));
        curves::curve_smoother(n).smooth(row.data(), smooth.data());
        b_spline_1d(row.data(), n, spans);
        EXPECT_EQ(smooth, row) << n;
    }
}

TEST(Steps, AreMediansOfUnfilteredDifferences)
{
    std::vector<double> values{0, 0, 9, 0, 9, 0, 0};
    curves::filter_spikes(values.data(), 7);
    EXPECT_THAT(values, ElementsAre(0, 0, 0, 9, 0, 0, 0));
    std::vector<double> squares{0, 1, 4, 9};
    curves::take_steps(squares.data(), 4);
    EXPECT_THAT(squares, ElementsAre(1, 3, 5, 5));
    EXPECT_DOUBLE_EQ(curves::spread_of(squares.data(), 4), std::sqrt(11.0 / 4.0));
}

/// Samples with a bit, as '1's.
std::vector<std::uint64_t> words_of(std::string_view bits)
{
    std::vector<std::uint64_t> words(static_cast<std::size_t>(curves::sample_bits::wordsFor(int(bits.size()))));
    for (std::size_t i = 0; i < bits.size(); ++i) words[i / 64] |= std::uint64_t{bits[i] == '1'} << (i % 64);
    return words;
}

TEST(SlantStretch, IsTheFirstRunOfThree)
{
    const std::tuple<std::string, int, int> cases[] = {
        {"", 0, 0},
        {"0000", 0, 0},
        {"1100011000", 0, 0},
        {"1100011100", 5, 7},
        {"0001111100", 3, 7},
        {"1101110111", 3, 5},
        {"1111111111", 0, 9},
        {std::string(62, '0') + "11111" + std::string(70, '0'), 62, 66},
        {std::string(130, '1'), 0, 129},
    };
    for (const auto& [bits, first, last] : cases) {
        const auto words = words_of(bits);
        const curves::stretch found = curves::find_slant({words.data(), static_cast<int>(bits.size())});
        EXPECT_EQ(found.first, first) << bits;
        EXPECT_EQ(found.last, last) << bits;
    }
}

TEST(ZeroStretch, IsTheLastLongRunWithTheSampleBeforeIt)
{
    const std::tuple<std::string, int, int> cases[] = {
        {"00000111110000000000", 4, 9},
        {"11111111110000000000", 20, 20}, // reaches the first sample
        {"01111111111111111111", 0, 19},  // and this one does not
        {"00000000000000000000", 20, 20},
        {"00011111110000000000000000000000000001010", 2, 9}, // 41 samples: runs of 2 and 2 of 4 are passed over
        {"11110000000000000000000000000000000001010", 41, 41},
        {std::string(60, '0') + std::string(20, '1') + std::string(60, '0'), 59, 79},
        {"1", 1, 1},
        {"", 0, 0},
    };
    for (const auto& [bits, first, last] : cases) {
        const auto words = words_of(bits);
        const curves::stretch found = curves::find_zero({words.data(), static_cast<int>(bits.size())});
        EXPECT_EQ(found.first, first) << bits;
        EXPECT_EQ(found.last, last) << bits;
    }
}

// Whole curves.

/// Contact that falls by `slope` a sample down to `depth` below the free line, which lies at 3 and rises by 0.001.
std::vector<double> piecewise(int n, int contact, double slope, double depth, double noise)
{
    std::mt19937 random(static_cast<unsigned>(n));
    std::normal_distribution<double> rough(0.0, noise);
    std::vector<double> y;
    for (int i = 0; i < n; ++i)
        y.push_back(i < contact ? 3.0 - depth + slope * (contact - i)
                                : 3.0 + 0.001 * i + (noise > 0 ? rough(random) : 0));
    return y;
}

TEST(ForceCurve, FindsBothLinesAtEveryLength)
{
    for (const int n : {40, 64, 65, 256, 257, 1024, 4000}) {
        const int contact = n / 4;
        const std::vector<double> y = piecewise(n, contact, 0.5, 0.5, 0.01);
        const force_curve_stats stats = analysed(y);
        ASSERT_TRUE(stats.hasSlant()) << n;
        ASSERT_TRUE(stats.hasZero()) << n;
        EXPECT_LE(stats.slant_last, contact + n / 32) << n; // smoothing lets it run over by less than a span
        EXPECT_GT(stats.slant_last, contact / 2) << n;
        EXPECT_NEAR(stats.slant_b, -0.5, 0.03) << n;
        EXPECT_GE(stats.zero_first, contact - 2) << n;
        EXPECT_GT(stats.zero_last, n * 9 / 10) << n;
        // The stretch begins with a sample that still belongs to the contact: half a unit off at its end.
        EXPECT_NEAR(stats.zero_b, 0.001, 0.05 / n + 6.0 / (n * n)) << n;
        EXPECT_NEAR(stats.zeroAt(0.75 * n), 3.0 + 0.00075 * n, 0.01 + 0.5 / n) << n;
        EXPECT_NEAR(stats.zero_rms, 0.01, 0.002 + 0.6 / std::sqrt(0.75 * n)) << n;
        EXPECT_EQ(stats.min_index, contact - 1) << n;
    }
}

TEST(ForceCurve, RecoversTheContactModel)
{
    const document::contact pair;
    constexpr double start = -105.0, step = 0.3, noise = 0.02;
    std::mt19937 random(11);
    std::normal_distribution<double> rough(0.0, noise);
    std::vector<double> y, clean;
    for (int i = 0; i < 1024; ++i) {
        clean.push_back(document::equilibrium_force(pair, start + step * i, true));
        y.push_back(clean.back() + rough(random));
    }
    force_curve_stats stats = analysed(y);
    ASSERT_TRUE(stats.hasSlant() && stats.hasZero());
    // The probe leaves at the full adhesion, which the last sample before misses by less than spring times step.
    EXPECT_NEAR(curves::force_minimum(y.data(), stats), -document::adhesion_force(pair),
                pair.spring * step + 4.0 * noise);
    EXPECT_NEAR(start + step * stats.min_index, document::snap_off_position(pair), step);
    // Far from the surface nothing but van der Waals' tail is left.
    EXPECT_NEAR(stats.zeroAt(1000.0), clean[1000], 4.0 * noise);
    EXPECT_NEAR(stats.zero_rms, noise, 0.2 * noise);
    // In contact spring and Hertz' stiffness 2 E sqrt(R d) stand in line; d is the indentation in mid-stretch.
    const double middle = start + step * 0.5 * (stats.slant_first + stats.slant_last);
    const double force = document::equilibrium_force(pair, middle, true) + document::adhesion_force(pair);
    const double indentation = std::cbrt(std::pow(force / (4.0 / 3.0 * pair.modulus), 2) / pair.tipRadius);
    const double stiffness = 2.0 * pair.modulus * std::sqrt(pair.tipRadius * indentation);
    EXPECT_NEAR(curves::force_slope(stats, step), -pair.spring * stiffness / (pair.spring + stiffness), 0.01);

    get_force_curve_valleys(y.data(), 1024, stats);
    ASSERT_GE(stats.valley_count, 1u);
    EXPECT_LT(stats.valleys[0].first, stats.min_index);
    EXPECT_GT(stats.valleys[0].second, stats.min_index);
}

TEST(ForceCurve, OfAConstantHasNoStretches)
{
    for (const double value : {5.0, 2e-9, -1e6 / 3.0, 1.0 / 7.0})
        for (const int n : {0, 1, 2, 3, 10, 60, 100, 255, 256, 257, 300, 1000}) {
            const std::vector<double> flat(static_cast<std::size_t>(n), value);
            for (const double threshold : {0.0, 1.0}) {
                const force_curve_stats stats = analysed(flat, 1.0, threshold);
                EXPECT_FALSE(stats.hasSlant()) << value << ' ' << n;
                EXPECT_FALSE(stats.hasZero()) << value << ' ' << n;
                EXPECT_EQ(stats.zero_first, n) << value;
            }
        }
    EXPECT_FALSE(analysed(piecewise(500, 150, 2.0, 8.0, 0.02), 1.0, 0.0).hasSlant()) << "a slant threshold of zero";
}

// The record and its report.

TEST(ForceCurveStats, CopiesDeeply)
{
    force_curve_stats stats;
    stats.slant_b = 2.5;
    stats.min_index = 7;
    stats.local_minima = {1, 2};
    stats.allocate_valleys(2);
    stats.valleys[1] = {4, 9};
    force_curve_stats copy(stats);
    stats.valleys[1] = {0, 0};
    EXPECT_EQ(copy.slant_b, 2.5);
    EXPECT_EQ(copy.min_index, 7);
    EXPECT_EQ(copy.local_minima.size(), 2u);
    ASSERT_EQ(copy.valley_count, 2u);
    EXPECT_EQ(copy.valleys[1], valley(4, 9));
    copy.clear();
    EXPECT_EQ(copy.valley_count, 0u);
    EXPECT_TRUE(copy.local_minima.empty());
}

TEST(ForceReport, SaysWhatCannotBeEvaluated)
{
    EXPECT_EQ(curves::force_header("nN", "dF/dZ, nN/nm"),
              "Curve\tdF/dZ, nN/nm\tAng., deg\tLMS eq. A\t+B*X\tRMS, nN\tFmin, nN\r\n");
    force_curve_stats stats;
    EXPECT_EQ(curves::force_row({2, 0.0, 1.0, -1.23456}, stats), "3\tcan't evaluate\t\tcan't evaluate\t\t\t-1.23");
    stats.slant_last = 5;
    stats.slant_b = -3.0;
    stats.zero_a = 12345.6;
    stats.zero_b = 1.0;
    stats.zero_rms = 0.00001234;
    EXPECT_EQ(curves::force_row({0, curves::force_slope(stats, 4.0), 4.0, 1.0}, stats),
              "1\t-1\t45\t1.23e+04\t0.25\t1.23e-05\t1");
}

// Over positions that are measured.

TEST(ParametricCurve, OfEvenPositionsIsTheForceCurveOverThem)
{
    for (const int n : {60, 200, 700}) {
        const std::vector<double> y = piecewise(n, n / 4, 0.5, 0.5, 0.01);
        std::vector<double> x;
        for (int i = 0; i < n; ++i) x.push_back(5.0 + 0.25 * i);
        const force_curve_stats even = analysed(y, 0.8, 1.3);
        force_curve_stats found;
        get_parametric_curve_stats(x.data(), y.data(), n, 1.3, 0.8, found);
        EXPECT_EQ(found.slant_first, even.slant_first) << n;
        EXPECT_EQ(found.slant_last, even.slant_last) << n;
        EXPECT_EQ(found.zero_first, even.zero_first) << n;
        EXPECT_EQ(found.zero_last, even.zero_last) << n;
        EXPECT_EQ(found.min_index, even.min_index) << n;
        EXPECT_NEAR(found.slant_b, even.slant_b / 0.25, 1e-9) << n;
        EXPECT_NEAR(found.slant_a, even.slant_a - 5.0 / 0.25 * even.slant_b, 1e-7) << n;
        EXPECT_NEAR(found.zero_b, even.zero_b / 0.25, 1e-9) << n;
        EXPECT_NEAR(found.zero_rms, even.zero_rms, 1e-9) << n;
        EXPECT_NEAR(found.slant_rms, even.slant_rms, 1e-7) << n;
    }
}

TEST(ParametricCurve, FindsTheContactWherePositionsFall)
{
    for (const int n : {60, 200, 700}) {
        const std::vector<double> y = piecewise(n, n / 4, 0.5, 0.5, 0.01);
        std::vector<double> rising, falling;
        for (int i = 0; i < n; ++i) rising.push_back(0.25 * i), falling.push_back(-0.25 * i);
        force_curve_stats up, down;
        get_parametric_curve_stats(rising.data(), y.data(), n, 1.0, 1.0, up);
        get_parametric_curve_stats(falling.data(), y.data(), n, 1.0, 1.0, down);
        ASSERT_TRUE(up.hasSlant() && up.hasZero()) << n;
        EXPECT_EQ(down.slant_first, up.slant_first) << n;
        EXPECT_EQ(down.slant_last, up.slant_last) << n;
        EXPECT_EQ(down.zero_first, up.zero_first) << n;
        EXPECT_NEAR(down.slant_b, -up.slant_b, 1e-12) << n;
        EXPECT_NEAR(down.zero_a, up.zero_a, 1e-12) << n;
    }
}

TEST(ParametricCurve, APositionThatLingersAtTheContactDoesNotHideIt)
{
    // The drive turns round over the first 12 samples: steps of x grow from almost 0. Force follows x all the way.
    constexpr int n = 200;
    std::vector<double> x, y;
    for (int i = 0; i < n; ++i) x.push_back(i < 12 ? 0.5 * i * i / 12.0 : i - 6.0);
    for (int i = 0; i < n; ++i) y.push_back(x[std::size_t(i)] < 50.0 ? 2.0 * (50.0 - x[std::size_t(i)]) : 0.0);
    force_curve_stats stats;
    get_parametric_curve_stats(x.data(), y.data(), n, 1.0, 1.0, stats);
    ASSERT_TRUE(stats.hasSlant() && stats.hasZero());
    EXPECT_NEAR(stats.slant_b, -2.0, 0.05);
    EXPECT_NEAR(stats.zero_b, 0.0, 0.01);
}

TEST(ParametricCurve, ValleysLieBetweenTheLinesOverPositions)
{
    // A triangle below the zero line 3: from 20 down to -5 at 22 and up again at 24, 0.5 * 4 * 8 = 16.
    constexpr int n = 250;
    std::vector<double> x, y;
    for (int i = 0; i < n; ++i) {
        const double at = 0.2 * i;
        x.push_back(-at); // falling along the samples
        y.push_back(at < 10.0 ? 3.0 + 4.0 * (10.0 - at) : std::min(3.0, -5.0 + 4.0 * std::fabs(at - 22.0)));
    }
    force_curve_stats stats;
    get_parametric_curve_stats(x.data(), y.data(), n, 1.0, 1.0, stats);
    ASSERT_TRUE(stats.hasSlant() && stats.hasZero());
    EXPECT_NEAR(curves::force_minimum(y.data(), stats, x.data()), -8.0, 0.1);
    get_force_curve_valleys(y.data(), n, stats, x.data());
    ASSERT_EQ(stats.valley_count, 1u);
    const auto [first, last] = stats.valleys[0];
    const double from = 0.2 * first, to = 0.2 * last; // it is cut off at equal heights
    EXPECT_NEAR(from, 20.0, 0.5);
    EXPECT_NEAR(to, 24.0, 0.5);
    // Of the triangle below 3 up to t: 2 (t - 20)^2, behind its middle 16 - 2 (24 - t)^2; and what the line lies off 3.
    const auto below = [](double t) {
        return t < 20.0 ? 0.0 : t < 22.0 ? 2.0 * (t - 20.0) * (t - 20.0) : 16.0 - 2.0 * (24.0 - t) * (24.0 - t);
    };
    const double line = (stats.zeroAt(-0.5 * (from + to)) - 3.0) * (to - from);
    EXPECT_NEAR(curves::valley_area_over(x.data(), y.data(), stats, stats.valleys[0]),
                -(below(to) - below(from) + line),
                0.01); // x falls
}

TEST(ParametricCurve, HasNoStretchWherePositionsTurnBack)
{
    constexpr int n = 400;
    const std::vector<double> y = piecewise(n, 80, 0.5, 0.5, 0.01);
    for (const double back : {0.0, 0.1, 0.5, 1.0}) { // of the way out
        std::vector<double> x;
        for (int i = 0; i < n; ++i) x.push_back(i < 200 ? i : 200.0 - back * (i - 200));
        const bool turns = back >= 0.5;
        EXPECT_EQ(curves::way_of_positions(x.data(), n),
                  turns ? curves::position_way::turnsBack : curves::position_way::travels)
            << back;
        force_curve_stats stats;
        get_parametric_curve_stats(x.data(), y.data(), n, 1.0, 1.0, stats);
        if (turns) { EXPECT_FALSE(stats.hasSlant() || stats.hasZero()) << back; }
    }
}

TEST(MeasuredCurve, EndsWithWhatWasMeasuredAndFitsNoGap)
{
    // Contact of -8 a sample to sample 100, then 0, in 400 samples; 30 filled ones before it, 70 behind.
    std::vector<std::int16_t> part, raw(30, 5000);
    for (int i = 0; i < 400; ++i) part.push_back(static_cast<std::int16_t>(i < 100 ? 8 * (100 - i) : i * 7919 % 5 - 2));
    raw.insert(raw.end(), part.begin(), part.end());
    raw.insert(raw.end(), 70, -3000);
    std::vector<bool> gaps(500, false);
    std::fill_n(gaps.begin(), 30, true);
    std::fill_n(gaps.begin() + 430, 70, true);
    const VLAxis newtons(0, 0.5, "nN");
    const curves::measured_curve whole(raw, newtons, gaps), alone(part, newtons, {});
    force_curve_stats of, expected;
    whole.findLines(1.0, 1.0, of);
    alone.findLines(1.0, 1.0, expected);
    ASSERT_TRUE(expected.hasSlant() && expected.hasZero());
    EXPECT_EQ(of.slant_first, expected.slant_first + 30);
    EXPECT_EQ(of.zero_last, expected.zero_last + 30);
    EXPECT_NEAR(of.slant_b, -4.0, 0.01) << "8 steps of 0.5 nN";
    EXPECT_NEAR(of.zeroAt(330), expected.zeroAt(300), 1e-9);
    EXPECT_NEAR(whole.minimum(of), alone.minimum(expected), 1e-9);
    EXPECT_TRUE(curves::measured_curve(raw, newtons, std::vector<bool>(500, true)).isEmpty());

    // What lies in a gap weighs nothing: y = 3 + 2 i but for samples 4 and 5 of 10.
    std::vector<double> y;
    for (int i = 0; i < 10; ++i) y.push_back(i == 4 || i == 5 ? 1000.0 : 3.0 + 2.0 * i);
    std::vector<bool> holes(10, false);
    holes[4] = holes[5] = true;
    const curves::fitted_line line = curves::fit_over(nullptr, y.data(), {1, 8}, holes);
    EXPECT_NEAR(line.a, 3.0, 1e-12);
    EXPECT_NEAR(line.b, 2.0, 1e-12);
    EXPECT_NEAR(line.rms, 0.0, 1e-7);
}

TEST(ParametricCurve, HasNoStretchWherePositionsTurnWithinTheirWay)
{
    constexpr int n = 300; // from 100 down to 5, up to 82, down to 0
    std::vector<double> x;
    for (int i = 0; i < n; ++i)
        x.push_back(i < 100 ? 100.0 - 0.95 * i : i < 200 ? 5.0 + 0.77 * (i - 100) : 82.0 - 0.82 * (i - 200));
    EXPECT_EQ(curves::way_of_positions(x.data(), n), curves::position_way::turnsBack);
}

TEST(ParametricCurve, HasNoStretchWherePositionsStandStill)
{
    const std::vector<double> y = piecewise(300, 80, 0.5, 0.5, 0.01), still(300, 2.0);
    force_curve_stats stats;
    get_parametric_curve_stats(still.data(), y.data(), 300, 1.0, 1.0, stats);
    EXPECT_FALSE(stats.hasSlant() || stats.hasZero());
    stats.zero_first = 9;
    get_parametric_curve_stats(still.data(), y.data(), 2, 1.0, 1.0, stats);
    EXPECT_EQ(stats.zero_first, 0) << "too short: cleared";
    EXPECT_EQ(curves::way_of_positions(still.data(), 300), curves::position_way::rests);
    for (const int n : {20, 60, 250, 2000}) { // a sensor that only trembles, and one that hardly gets anywhere
        std::mt19937 random(1);
        std::normal_distribution<double> noise(0.0, 0.01);
        std::vector<double> trembling, creeping;
        for (int i = 0; i < n; ++i) {
            trembling.push_back(5.0 + noise(random));
            creeping.push_back(trembling.back() + 0.2 * i / n);
        }
        EXPECT_EQ(curves::way_of_positions(trembling.data(), n), curves::position_way::rests) << n;
        EXPECT_EQ(curves::way_of_positions(creeping.data(), n), curves::position_way::travels) << n;
    }
}

} // namespace
