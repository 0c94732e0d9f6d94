// Calculations on curves and how their results are packed.
#include "curves/figures/correlation.h"
#include "curves/figures/math_function.h"
#include "document/fixtures.h"

#include <cmath>
#include <gmock/gmock.h>
#include <random>

namespace {

using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;
using testing::FloatNear;
using testing::Pointwise;
using floats = std::vector<float>;

/// A function's result, and the units it leaves of "nm".
struct applied {
    floats values;
    std::string units = "nm";
    applied(floats samples, curves::curve_function function, void* parameter = nullptr) : values(std::move(samples))
    {
        EXPECT_EQ(function(values.data(), static_cast<int>(values.size()), VLAxis(), VLAxis(), units, parameter), 0);
    }
};

applied differences(floats samples)
{
    curves::convolution_kernel kernel = curves::differenceKernel;
    return {std::move(samples), curves::convolve, &kernel};
}

TEST(Differentiate, TakesValuesTwoSamplesApart)
{
    EXPECT_THAT(differences({0, 1, 4, 9}).values, ElementsAre(4, 4, 8, 8));
    EXPECT_EQ(differences({0, 1, 4, 9}).units, "nm");
    floats parabola;
    for (int i = 0; i < 50; ++i) parabola.push_back(static_cast<float>(i * i));
    const floats slope = differences(parabola).values;
    for (std::size_t i = 1; i < 49; ++i) EXPECT_EQ(slope[i], 4.0f * static_cast<float>(i));
    EXPECT_THAT(differences({3, 5}).values, ElementsAre(0, 0));
    EXPECT_THAT(differences({}).values, ElementsAre());
}

TEST(Convolve, PutsTheMiddleOfTheKernelOverTheSample)
{
    const float smooth[] = {0.25f, 0.25f, 0.25f, 0.25f, 0.0f}, even[] = {1.0f, 10.0f};
    curves::convolution_kernel five = smooth, two = even;
    EXPECT_THAT(applied({0, 0, 0, 4, 0, 0, 0}, curves::convolve, &five).values, ElementsAre(1, 1, 1, 1, 1, 1, 1));
    // y'[i] = y[i + 1] + 10 y[i], for i = 1 and 2.
    EXPECT_THAT(applied({1, 2, 3, 4}, curves::convolve, &two).values, ElementsAre(23, 23, 34, 34));
}

floats noise(std::size_t n, float mean)
{
    std::mt19937 random(static_cast<unsigned>(n));
    floats out(n);
    for (float& value : out) value = mean + static_cast<float>(random() % 2001) / 1000.0f - 1.0f;
    return out;
}

/// The definitions, in double precision.
double product_mean(const floats& y, std::size_t k)
{
    double sum = 0.0;
    for (std::size_t i = 0; i + k < y.size(); ++i) sum += static_cast<double>(y[i]) * static_cast<double>(y[i + k]);
    return sum / static_cast<double>(y.size() - k);
}

TEST(Autocorrelation, IsTheMeanOfProductsOverThatAtZero)
{
    for (const std::size_t n : {1u, 2u, 30u, 500u, 1021u}) {
        const floats y = noise(n, 0.5f);
        const applied found(y, curves::autocorrelation_function);
        EXPECT_EQ(found.units, "");
        for (std::size_t k = 0; k < n; ++k)
            EXPECT_NEAR(static_cast<double>(found.values[k]), product_mean(y, k) / product_mean(y, 0), 1e-6) << k;
    }
}

TEST(Autocorrelation, CyclicSumsTwoTurns)
{
    for (const std::size_t n : {1u, 2u, 30u, 500u}) {
        const floats y = noise(n, 0.5f);
        floats twice = y;
        twice.insert(twice.end(), y.begin(), y.end());
        const applied found(y, curves::cyclic_autocorrelation_function);
        const auto sum = [&](std::size_t k) { return product_mean(twice, k) * static_cast<double>(2 * n - k); };
        for (std::size_t k = 0; k < n; ++k)
            EXPECT_NEAR(static_cast<double>(found.values[k]), sum(k) / sum(0), 1e-6) << k;
    }
}

TEST(Autocorrelation, OfAConstantIsOneAndOfNothingZero)
{
    EXPECT_THAT(applied(floats(777, 0.1f), curves::autocorrelation_function).values, Each(1.0f));
    EXPECT_THAT(applied(floats(777, 0.0f), curves::autocorrelation_function).values, Each(0.0f));
    EXPECT_THAT(applied(floats(777, 0.0f), curves::cyclic_autocorrelation_function).values, Each(0.0f));
    // (2 n - k) / (2 n)
    EXPECT_THAT(applied(floats(4, 3.0f), curves::cyclic_autocorrelation_function).values,
                ElementsAre(1, 0.875f, 0.75f, 0.625f));
}

TEST(Structure, EqualsItsSums)
{
    for (const float mean : {0.0f, 300.0f})
        for (const std::size_t n : {0u, 1u, 2u, 3u, 64u, 65u, 500u, 1021u}) {
            const floats y = noise(n, mean);
            floats reference(n);
            curves::structure_reference(y, reference);
            const applied found(y, curves::structure_function);
            EXPECT_EQ(found.units, "nm^2");
            EXPECT_THAT(found.values, Pointwise(FloatNear(3e-6f), reference)) << n;
            curves::structure_cyclic_reference(y, reference);
            EXPECT_THAT(applied(y, curves::cyclic_structure_function).values, Pointwise(FloatNear(3e-6f), reference));
        }
}

TEST(Structure, KeepsSmallValuesBesideLargeOnes)
{
    // Of a ramp S[k] = k^2, from 1 to 1e8; of a period of 50 samples 0 there; of one jump 1 in n - k pairs.
    constexpr std::size_t n = 10000;
    floats ramp, waves, jump;
    for (std::size_t i = 0; i < n; ++i) {
        ramp.push_back(static_cast<float>(i));
        waves.push_back(static_cast<float>(std::lround(1000.0 * std::sin(static_cast<double>(i % 50) * 0.1256637))));
        jump.push_back(i < n / 2 ? 0.0f : 1.0f);
    }
    const floats quadratic = applied(ramp, curves::structure_function).values;
    const floats periodic = applied(waves, curves::structure_function).values;
    const floats steps = applied(jump, curves::structure_function).values;
    for (const std::size_t k : {0u, 1u, 2u, 3u, 10u, 50u, 100u, 350u, 1000u, 4950u, 9999u}) {
        const auto distance = static_cast<float>(k);
        EXPECT_FLOAT_EQ(quadratic[k], distance * distance);
        if (k % 50 == 0) { EXPECT_EQ(periodic[k], 0.0f); }
        const auto pairs = static_cast<float>(n - k);
        EXPECT_FLOAT_EQ(steps[k], std::min(distance, pairs) / pairs);
    }
    EXPECT_EQ(applied(waves, curves::cyclic_structure_function).values[5050], 0.0f);
}

TEST(PackCurves, UsesTheNextPowerOfTwoAroundTheMean)
{
    const float values[] = {-1.0f, 0.0f, 1.0f}; // 1 is 0.5 * 2^1
    const curves::packed_curves packed = curves::pack_curves(values);
    EXPECT_EQ(packed.step, std::ldexp(1.0, -14));
    EXPECT_EQ(packed.zero, 0.0);
    EXPECT_THAT(packed.samples, ElementsAre(-16384, 0, 16384));
    EXPECT_THAT(curves::pack_curves(floats(5, 0.0f)).samples, Each(0));
    const curves::packed_curves constant = curves::pack_curves(floats(5, 1.0f));
    EXPECT_THAT(constant.samples, Each(0));
    EXPECT_EQ(constant.zero, 1.0);
    for (const float value : {2e-9f, -3.7e-31f, 1.1e22f}) {
        const curves::packed_curves tiny = curves::pack_curves(floats(7, value));
        EXPECT_THAT(tiny.samples, Each(0));
        EXPECT_EQ(tiny.zero, static_cast<double>(value));
        EXPECT_NE(tiny.step, 0.0);
    }
    EXPECT_TRUE(curves::pack_curves({}).samples.empty());
    EXPECT_EQ(curves::pack_curves(floats{1, NAN, INFINITY}).samples.size(), 3u) << "what is no number does no harm";
}

TEST(PackCurves, LosesAtMostHalfAStep)
{
    for (const float mean : {0.0f, 5.0f, -1e6f}) {
        const floats y = noise(3000, mean);
        const curves::packed_curves packed = curves::pack_curves(y);
        ASSERT_EQ(packed.samples.size(), y.size());
        EXPECT_EQ(packed.zero, std::rint(packed.zero / packed.step) * packed.step);
        int largest = 0;
        for (std::size_t i = 0; i < y.size(); ++i) {
            EXPECT_LE(std::fabs(packed.zero + packed.samples[i] * packed.step - static_cast<double>(y[i])),
                      0.5 * packed.step);
            largest = std::max(largest, std::abs(packed.samples[i]));
        }
        EXPECT_GE(largest, 16383);
    }
}

TEST(CallFunction, StopsAtTheEndOfEachCurve)
{
    const SPMDataStream record = heights("Record", {4}, 3);
    std::vector<curves::grid_point> points;
    curves::profile section;
    curves::take_profile(record, points, 0, section, "4 3 0");
    curves::convolution_kernel kernel = curves::differenceKernel;
    const curves::physical_curves result = curves::call_function(
        section, record.values.get_axis(0), record.get_dimension(0).get_axis(0), curves::convolve, &kernel);
    EXPECT_EQ(result.curve(1).size(), 3u);
    EXPECT_TRUE(result.curve(2).empty());
    // Each raw step is 0.01 nm: 0.02 over two samples; the last one of three repeats it, and padding that. What is no
    // result takes a value of the others, and no room of the samples.
    const floats expected(12, 0.02f);
    EXPECT_THAT(result.values, Pointwise(FloatNear(1e-6f), expected));
    EXPECT_EQ(result.units, "nm");
}

TEST(CallFunction, GivesEachCurveAndTheirCommonImage)
{
    SPMDataStream record = heights("Record", {4}, 2); // 0 … 3 and 4 … 7, each raw step 0.01 nm from -1
    std::vector<curves::grid_point> points;
    curves::profile section;
    curves::take_profile(record, points, 0, section);
    const VLAxis& x = record.get_dimension(0).get_axis(0);
    const curves::physical_curves result =
        curves::call_function(section, record.values.get_axis(0), x, curves::structure_function, nullptr);
    EXPECT_EQ(result.units, "nm^2"); // once, though there are two curves
    for (const unsigned k : {0u, 1u})
        EXPECT_THAT(result.curve(k), Pointwise(FloatNear(1e-8f), {0.0f, 1e-4f, 4e-4f, 9e-4f}));

    const SPMDataStream image = curves::curves_stream(record, result, x);
    ASSERT_EQ(image.array_length(), 8u);
    EXPECT_EQ(image.get_dimension(0).length, 4u);
    EXPECT_EQ(image.get_dimension(0).get_axis(0), x);
    const VLAxis& values = image.values.get_axis(0);
    EXPECT_STREQ(values.get_units(), "nm^2");
    const auto* packed = static_cast<const short*>(image.array_data());
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_NEAR(values.at(packed[i]), static_cast<double>(result.values[i]), 0.5 * values.scale);
}

} // namespace
