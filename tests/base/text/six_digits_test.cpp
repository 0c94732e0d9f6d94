#include "base/text/six_digits.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

struct raw_range {
    double lowest, highest;
};
constexpr raw_range int16{-32768, 32767};
constexpr raw_range rawRanges[] = {
    int16,  {-128, 127}, {0, 255}, {0, 65535}, {-2147483648.0, 2147483647.0}, {0, 4294967295.0},
    {0, 1}, {-7, 5},     {3, 900}};

base::raw_axis axis_of(double lo, double hi, const raw_range& raw)
{
    return base::six_digit_axis(lo, hi, raw.lowest, raw.highest);
}

/// All that is promised of the axis, checked at `v`. The sum is formed with 64-bit mantissas: in double it would round.
void expect_kept(const base::raw_axis& axis, double v, const raw_range& raw)
{
    const double sample = axis.raw(v);
    EXPECT_EQ(sample, std::floor(sample));
    EXPECT_GE(sample, raw.lowest);
    EXPECT_LE(sample, raw.highest);
    const long double missed =
        (static_cast<long double>(axis.start) - v) + sample * static_cast<long double>(axis.scale);
    EXPECT_LE(std::fabs(static_cast<double>(missed)), 0.5 * axis.scale * (1 + 1e-10));
}

void expect_six_digit_axis(const base::raw_axis& axis)
{
    EXPECT_EQ(axis.start, base::six_digits(axis.start));
    EXPECT_EQ(axis.scale, base::six_digits(axis.scale));
    EXPECT_TRUE(std::isnormal(axis.scale));
    EXPECT_GT(axis.scale, 0.0);
}

TEST(SixDigits, RoundsAsTheFileFormatPrints)
{
    struct rounding {
        double value, rounded;
    };
    const rounding cases[] = {
        {0.0, 0.0},
        {1.23456789, 1.23457},
        {-1.23456789, -1.23457},
        {999999.4, 999999.0},
        {999999.5, 1e6}, // a tie goes to the even digit, here through every place
        {9.999996e-5, 1e-4},
        {0.1, 0.1},
        {1.23456789e-310, 1.23457e-310},
        {5e-324, 5e-324},
        {1.7976931348623157e308, 1.79769e308},
    };
    for (const rounding& each : cases) EXPECT_EQ(base::six_digits(each.value), each.rounded) << each.value;
    EXPECT_TRUE(std::isnan(base::six_digits(std::numeric_limits<double>::quiet_NaN())));
}

TEST(SixDigitAxis, FillsTheRawNumbers)
{
    struct fitted {
        double lo, hi, start, scale;
    };
    const fitted cases[] = {
        {-32768, 32767, 0, 1}, // whole numbers stay what they are
        {0, 65535, 32768, 1},
        {-1, 1, 1.52591e-5, 3.05181e-5},    // 2 / 65535 = 3.051804e-5, and half of that
        {1e6, 1e6 + 6.55, 1e6, 1.99894e-4}, // the next starts are 10 away: 6.55 / 32767.5 = 1.998932e-4
    };
    for (const fitted& each : cases) {
        const base::raw_axis axis = axis_of(each.lo, each.hi, int16);
        EXPECT_EQ(axis.start, each.start) << each.lo;
        EXPECT_EQ(axis.scale, each.scale) << each.lo;
    }
}

TEST(SixDigitAxis, SaysOneValueByItsStart)
{
    for (const double v : {0.0, 5e-9, -3.25e-300, 0.125, 640.5, -99999.5, 1e200}) {
        const base::raw_axis axis = axis_of(v, v, int16);
        EXPECT_EQ(axis.start, v);
        EXPECT_EQ(axis.scale, 1.0);
        EXPECT_EQ(axis.raw(v), 0.0);
    }
    // More digits than the start can say: the samples count the rest.
    EXPECT_EQ(axis_of(1234567, 1234567, int16).raw(1234567), -3.0); // 1234570 - 3
    for (const raw_range& raw : rawRanges)
        for (const double v : {1234567.0, -1.23456789e12, 1.2345678e-7, 1.2345678e300}) {
            const base::raw_axis axis = axis_of(v, v, raw);
            expect_six_digit_axis(axis);
            expect_kept(axis, v, raw);
        }
}

TEST(SixDigitAxis, KeepsEveryValueOfAnyRange)
{
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> exponent(-300, 300), narrowing(-12, 2), unit(-1, 1), part(0, 1);
    for (int round = 0; round < 30000; ++round) {
        const raw_range& raw = rawRanges[round % std::size(rawRanges)];
        const double middle = unit(random) * std::pow(10.0, exponent(random));
        const double width = std::fabs(middle) * std::pow(10.0, narrowing(random));
        const double lo = middle - width * part(random), hi = middle + width;
        const base::raw_axis axis = axis_of(lo, hi, raw);
        SCOPED_TRACE(testing::Message() << "round " << round << " lo " << lo << " hi " << hi << " start " << axis.start
                                        << " scale " << axis.scale << " raw " << raw.lowest << " " << raw.highest);
        expect_six_digit_axis(axis);
        for (const double v : {lo, hi, lo + (hi - lo) * part(random), lo + (hi - lo) * part(random)})
            expect_kept(axis, std::clamp(v, lo, hi), raw);
        if (HasFailure()) return;
    }
}

/// Whether some start of six digits lets a step of `scale` hold [lo, hi]: the one nearest to the middle of those that
/// would do with any number of digits.
bool could_hold(double scale, double lo, double hi, const raw_range& raw)
{
    const double least = hi - (raw.highest + 0.49) * scale, most = lo - (raw.lowest - 0.49) * scale;
    const double nearest = base::six_digits(0.5 * least + 0.5 * most);
    return nearest >= least && nearest <= most;
}

TEST(SixDigitAxis, LeavesNoFinerScaleUntriedFarFromZero)
{
    // Where the digits of the start decide, their rounding is a matter of luck: estimates miss by up to 50 times here.
    std::mt19937_64 random(22);
    std::uniform_real_distribution<double> exponent(-40, 40), narrowing(-8, 4), unit(-1, 1);
    constexpr raw_range usual[] = {int16, {0, 65535}, {-128, 127}, {0, 255}};
    for (int round = 0; round < 20000; ++round) {
        const raw_range& raw = usual[round % std::size(usual)];
        const double middle = unit(random) * std::pow(10.0, exponent(random));
        const double half = 0.5 * std::fabs(middle) * std::pow(10.0, narrowing(random));
        const double lo = middle - half, hi = middle + half;
        const double scale = axis_of(lo, hi, raw).scale, ideal = (hi - lo) / (raw.highest - raw.lowest);
        ASSERT_TRUE(scale <= ideal * (1 + 1e-4) || !could_hold(scale * (1 - 1e-4), lo, hi, raw))
            << lo << " " << hi << " raw " << raw.lowest << " " << raw.highest << " scale " << scale;
    }
}

TEST(SixDigitAxis, HoldsAtTheEndsOfDouble)
{
    constexpr double largest = 1.79769e308, least = std::numeric_limits<double>::denorm_min();
    const double bounds[] = {-largest, -1e308, -1e300, -1.0, -1e-300, -1e-310, -least, 0.0,
                             least,    1e-310, 1e-300, 1.0,  1e300,   1e308,   largest};
    for (const double lo : bounds)
        for (const double hi : bounds)
            for (const raw_range& raw : rawRanges) {
                const double steps = raw.highest - raw.lowest;
                // No double is the scale of two numbers that far apart, or the start of a range without raw 0.
                if (hi < lo || hi / steps - lo / steps > largest || raw.lowest > 0) continue;
                const base::raw_axis axis = axis_of(lo, hi, raw);
                SCOPED_TRACE(testing::Message() << lo << " " << hi << " raw " << raw.lowest << " " << raw.highest);
                expect_six_digit_axis(axis);
                EXPECT_TRUE(std::isfinite(axis.start) && std::isfinite(axis.scale));
                expect_kept(axis, lo, raw);
                expect_kept(axis, hi, raw);
            }
    constexpr double beyond = std::numeric_limits<double>::max();
    expect_kept(axis_of(-beyond, beyond, int16), beyond, int16);
    expect_kept(axis_of(-beyond, beyond, int16), -beyond, int16);
}

} // namespace
