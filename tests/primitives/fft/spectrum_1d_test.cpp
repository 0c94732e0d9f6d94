#include "primitives/fft/spectrum_1d.h"

#include <cmath>
#include <gmock/gmock.h>
#include <numbers>
#include <random>
#include <thread>

namespace {

std::vector<double> noise(std::size_t count)
{
    std::mt19937 random(static_cast<unsigned>(count));
    std::vector<double> out(count);
    for (double& value : out) value = static_cast<double>(random()) / 2e9 - 1.0;
    return out;
}

TEST(RealTransform, OfACosineIsItsTwoBinsAtAnyLength)
{
    for (const std::size_t n : {1u, 2u, 5u, 16u, 97u, 1000u, 1021u}) {
        primitives::real_transform transform(n);
        const std::size_t bin = n / 3;
        for (std::size_t i = 0; i < n; ++i)
            transform.values()[i] =
                3.0 *
                std::cos(2.0 * std::numbers::pi * static_cast<double>(i * bin % n) / static_cast<double>(n) + 0.5);
        const std::vector<double> before(transform.values().begin(), transform.values().end());
        transform.forward();
        ASSERT_EQ(transform.bins().size(), n / 2 + 1);
        for (std::size_t k = 0; k <= n / 2; ++k) {
            const double size = bin == 0 ? 3.0 * std::cos(0.5) : 1.5;
            const std::complex<double> expected =
                k == bin ? static_cast<double>(n) * (bin == 0 ? size : std::polar(size, 0.5)) : 0.0;
            EXPECT_NEAR(std::abs(transform.bins()[k] - expected), 0.0, 1e-12 * static_cast<double>(n)) << n << ' ' << k;
        }
        transform.inverse();
        for (std::size_t i = 0; i < n; ++i)
            EXPECT_NEAR(transform.values()[i], static_cast<double>(n) * before[i], 1e-12 * static_cast<double>(n));
    }
}

TEST(RealTransform, WithoutValuesHasNoBins)
{
    primitives::real_transform transform(0);
    transform.forward();
    transform.inverse();
    EXPECT_TRUE(transform.bins().empty());
}

TEST(RealTransform, PlansOnManyThreadsAtOnce)
{
    std::vector<std::thread> threads;
    std::vector<double> found(4);
    for (std::size_t t = 0; t < found.size(); ++t)
        threads.emplace_back([&, t] {
            for (std::size_t n = 1; n < 80; ++n) { // more lengths than are kept
                primitives::real_transform transform(n);
                std::fill(transform.values().begin(), transform.values().end(), 1.0);
                transform.forward();
                found[t] += transform.bins()[0].real();
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_THAT(found, testing::Each(testing::DoubleEq(79.0 * 80.0 / 2.0)));
}

TEST(Autocorrelation, IsTheSumOfProducts)
{
    for (const std::size_t n : {0u, 1u, 2u, 63u, 64u, 65u, 300u, 1021u}) {
        const std::vector<double> y = noise(n);
        std::vector<double> out(n);
        primitives::autocorrelation(y, out);
        for (std::size_t k = 0; k < n; ++k) {
            double sum = 0.0;
            for (std::size_t i = 0; i + k < n; ++i) sum += y[i] * y[i + k];
            EXPECT_NEAR(out[k], sum, 1e-12 * static_cast<double>(n)) << n << ' ' << k;
        }
    }
}

} // namespace
