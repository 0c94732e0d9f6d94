#include "view/axes/TickRule.h"

#include "view/axes/AxisLabels.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

struct tick_case {
    const char* name;
    double start, end;
    int number;
    double step;
    std::vector<double> values;
    std::vector<int> offsets; ///< on 1000 pixels
};

class TickRule : public testing::TestWithParam<tick_case> {};

TEST_P(TickRule, PlacesTicks)
{
    const tick_case& one = GetParam();
    view::axis_ticks found;
    view::find_ticks(one.start, one.end, 1000, one.number, found);
    EXPECT_DOUBLE_EQ(found.step, one.step);
    ASSERT_EQ(found.ticks.size(), one.values.size());
    for (std::size_t i = 0; i < one.values.size(); ++i) {
        EXPECT_DOUBLE_EQ(found.ticks[i].value, one.values[i]);
        EXPECT_EQ(found.ticks[i].offset, one.offsets[i]);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TickRule,
    testing::Values(
        // raw 250, decade 100
        tick_case{"Four", 0, 1000, 4, 200, {0, 200, 400, 600, 800, 1000}, {0, 200, 400, 600, 800, 1000}},
        tick_case{"Usual", 0, 10, 0, 2, {0, 2, 4, 6, 8, 10}, {0, 200, 400, 600, 800, 1000}},
        tick_case{"Falling", 10, 0, 0, -2, {10, 8, 6, 4, 2, 0}, {0, 200, 400, 600, 800, 1000}},
        // raw 0.3, which over 0.1 is a little less than 3
        tick_case{"PlainFloor",
                  0,
                  1.5,
                  5,
                  0.2,
                  {0, 0.2, 0.4, 0.6, 0.8, 1.0, 1.2, 1.4},
                  {0, 133, 267, 400, 533, 667, 800, 933}},
        tick_case{
            "AcrossZero", -0.7, 0.7, 5, 0.2, {-0.6, -0.4, -0.2, 0, 0.2, 0.4, 0.6}, {71, 214, 357, 500, 642, 785, 928}},
        // The first tick lies 1/17 up, at 58.8; the others 235.29 apart, counted from its rounded place.
        tick_case{"FromTheFirst", -1.0, 16.0, 4, 4, {0, 4, 8, 12, 16}, {59, 294, 530, 765, 1000}},
        tick_case{"SecondRepair",
                  1e20,
                  1e20,
                  5,
                  2e17,
                  {1e20, 1.002e20, 1.004e20, 1.006e20, 1.008e20, 1.01e20},
                  {0, 200, 400, 600, 800, 1000}}),
    [](const auto& test) { return test.param.name; });

TEST(TickRuleRepair, MovesTheEndOffTheStart)
{
    view::axis_ticks found;
    view::find_ticks(5, 5, 100, 5, found);
    EXPECT_DOUBLE_EQ(found.end, 5.000001);
    view::find_ticks(1e20, 1e20, 100, 5, found);
    EXPECT_DOUBLE_EQ(found.end, 1.01e20);
    for (const auto& [start, end] : {std::pair{0.0, INFINITY}, {NAN, 1.0}, {-1.7e308, 1.7e308}, {1.79e308, 1.79e308}}) {
        view::find_ticks(start, end, 100, 5, found);
        EXPECT_TRUE(found.ticks.empty()) << start << " " << end;
    }
}

TEST(TickRuleRepair, EndsAtTheLargestNumber)
{
    constexpr double largest = std::numeric_limits<double>::max();
    const double below = std::nextafter(largest, 0.0);
    view::axis_ticks found;
    // Some of these steps have multiples that round to infinity and never pass the end.
    for (const int number : {1, 5, 293, 500, 636, 4119, 22455, 100000})
        for (const auto& [start, end] :
             {std::pair{below, largest}, {largest, below}, {-below, -largest}, {-largest, -below}}) {
            view::find_ticks(start, end, 1000, number, found);
            // Only two numbers lie on the axis.
            ASSERT_LE(found.ticks.size(), 2u) << number;
            for (const view::axis_tick& tick : found.ticks) {
                ASSERT_TRUE(tick.value == start || tick.value == end) << number;
                ASSERT_EQ(tick.offset, tick.value == start ? 0 : 1000) << number;
            }
        }
}

/// Any pair of doubles, some of them close to each other.
std::pair<double, double> random_range(std::mt19937_64& random)
{
    const auto any = [&] {
        double value;
        do {
            const std::uint64_t bits = random();
            std::memcpy(&value, &bits, sizeof value);
        } while (!std::isfinite(value));
        return value;
    };
    const auto usual = [&] { return std::uniform_real_distribution<double>(-1000.0, 1000.0)(random); };
    const double start = random() % 2 ? any() : usual();
    switch (random() % 4) {
    case 0:
        return {start, any()};
    case 1:
        return {start, usual()};
    case 2:
        return {start, start * (1.0 + 1e-16 * static_cast<double>(random() % 64))};
    default:
        return {start, start + std::ldexp(1.0, static_cast<int>(random() % 80) - 60)};
    }
}

TEST(TickRuleProperty, TicksAreOrderedBoundedAndOnOneDigitSteps)
{
    std::mt19937_64 random(20240229);
    view::axis_ticks found;
    for (int round = 0; round < 200000; ++round) {
        const auto [start, end] = random_range(random);
        const int number = static_cast<int>(random() % (round % 64 == 0 ? 2000 : 12));
        view::find_ticks(start, end, 800, number, found);
        if (!std::isfinite(found.end - start)) {
            ASSERT_TRUE(found.ticks.empty());
            continue;
        }
        const double step = std::fabs(found.step);
        // One digit: step / 10^k is within rounding of 1 ... 9 for the right k.
        const double digit = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
        ASSERT_NEAR(digit, std::round(digit), 1e-9) << step;
        ASSERT_LE(found.ticks.size(), 2u * static_cast<unsigned>(number ? number : 5) + 2u) << start << " " << end;
        for (const view::axis_tick& tick : found.ticks) {
            ASSERT_TRUE(std::isfinite(tick.value)) << start << " " << end;
            ASSERT_GE(tick.offset, 0) << start << " " << end;
            ASSERT_LE(tick.offset, 801) << start << " " << end;
        }
        const double larger = std::max(std::fabs(start), std::fabs(found.end));
        if (std::fabs(found.end - start) <= 1e-9 * larger) continue;
        for (std::size_t i = 1; i < found.ticks.size(); ++i) {
            ASSERT_EQ(found.ticks[i].value > found.ticks[i - 1].value, found.end > start) << start << " " << end;
            ASSERT_NE(found.ticks[i].value, found.ticks[i - 1].value);
            ASSERT_GE(found.ticks[i].offset, found.ticks[i - 1].offset);
        }
        ASSERT_GE(found.ticks.size(), 1u);
    }
}

TEST(AxisLabels, HaveAsManyDigitsAsTheStepNeeds)
{
    const std::tuple<double, double, const char*> cases[] = {
        {1000, 200, "1e+03"},      // |log10 5| + 2 = 3 digits
        {800, 200, "800"},         //
        {1000, 1, "1000"},         // 3 + 2 digits
        {12.3456, 0.01, "12.346"}, // |log10 1234.56| = 3.09, 5 digits
        {0.02, 0.01, "0.02"},      // the larger of 1 and the value counts
        {3e-07, 1e-07, "0"},       //
        {-2e-06, 1e-06, "-2e-06"}, //
        {1000, -200, "1e+03"},     // a falling axis
    };
    for (const auto& [value, step, text] : cases) EXPECT_EQ(view::axis_label(value, step), text);
    EXPECT_EQ(view::axis_label(3e-07, 1e-07, "%lg"), "3e-07") << "a format prints what it is given";
    EXPECT_EQ(view::axis_label(2.5, 0.5, "µ %.2lf%%"), "µ 2.50%");
    for (const char* hostile : {"%s", "%n", "%d", "%lg %lg", "none", "%", "%9999999lg", "%.*lg", "%Lf"})
        EXPECT_EQ(view::axis_label(2.5, 0.5, hostile), "2.5") << hostile;
}

TEST(AxisLabels, TellNeighboursApartWhereTheAxisIsFarFromZero)
{
    const std::tuple<double, double, const char*, const char*> cases[] = {
        // start, end, the first tick of four or more and the one after it
        {0.0, 1000.0, "0", "200"},                          // %lg does
        {12000000.0, 12000300.0, "12000030", "12000100"},   // steps of 70
        {12000000.0, 12000900.0, "12000000", "12000200"},   // shorter than 1.20002e+07
        {-1200.00055, -1200.0, "-1200.0005", "-1200.0004"}, // steps of 0.0001
        {12.0, 12.0, "12", "12"},                           // one value
    };
    for (const auto& [start, end, first, second] : cases) {
        view::axis_ticks found;
        view::find_ticks(start, end, 100, 4, found);
        ASSERT_GE(found.ticks.size(), 2u);
        const std::string format = view::label_format(start, end, 4);
        EXPECT_EQ(view::axis_label(found.ticks[0].value, found.step, format.c_str()), first);
        EXPECT_EQ(view::axis_label(found.ticks[1].value, found.step, format.c_str()), second);
    }
}

} // namespace
