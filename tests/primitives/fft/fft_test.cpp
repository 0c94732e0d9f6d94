// Transforms of images against FFTW in double precision, and the form in which half spectra are kept.
#include "primitives/fft/fft.h"

#include "primitives/fft/fft_tiles.h"
#include "primitives/simd/kernels.h"

#include <cmath>
#include <complex>
#include <cstring>
#include <fftw3.h>
#include <gtest/gtest.h>
#include <numeric>

namespace {

using primitives::fft::tile_kernels;

std::vector<double> noise(int count)
{
    std::vector<double> out(static_cast<std::size_t>(count));
    std::uint32_t state = 12345;
    for (double& each : out) {
        state = state * 1664525u + 1013904223u;
        each = static_cast<double>(state >> 8) / (1 << 23) - 1.0;
    }
    return out;
}

/// Bins 0 … W / 2 of the rows 0 … H - 1, divided by the count of samples.
std::vector<std::complex<double>> half_spectrum(std::vector<double> image, int width, int height)
{
    std::vector<std::complex<double>> out(static_cast<std::size_t>(width / 2 + 1) * height);
    fftw_plan plan =
        fftw_plan_dft_r2c_2d(height, width, image.data(), reinterpret_cast<fftw_complex*>(out.data()), FFTW_ESTIMATE);
    fftw_execute(plan);
    fftw_destroy_plan(plan);
    for (auto& each : out) each /= static_cast<double>(width) * height;
    return out;
}

/// The bin out of the packed form, by the words of the header.
template <class Number>
std::complex<double> bin_of(const std::vector<Number>& packed, int width, int height, int column, int row)
{
    const auto at = [&](int x, int y) { return double(packed[static_cast<std::size_t>(y) * width + x]); };
    if (column > 0 && 2 * column < width) return {at(2 * column - 1, row), at(2 * column, row)};
    const int x = column == 0 ? 0 : width - 1;
    if (row == 0) return at(x, 0);
    if (2 * row == height) return at(x, height - 1);
    if (2 * row > height) return std::conj(bin_of(packed, width, height, column, height - row));
    return {at(x, 2 * row - 1), at(x, 2 * row)};
}

struct size {
    int width, height;
};

template <class Number>
void expect_transforms(const tile_kernels<Number>& kernels, size of, double tolerance)
{
    const auto [width, height] = of;
    const std::vector<double> image = noise(width * height);
    const auto expected = half_spectrum(image, width, height);
    std::vector<Number> packed(image.begin(), image.end());
    primitives::fft::transform_image(kernels, packed.data(), width, height, false, 1);
    const double typical = 0.6 / std::sqrt(width * height);
    double worst = 0.0;
    for (int row = 0; row < height; ++row)
        for (int column = 0; column <= width / 2; ++column)
            worst = std::max(worst, std::abs(bin_of(packed, width, height, column, row) -
                                             expected[static_cast<std::size_t>(row) * (width / 2 + 1) + column]));
    EXPECT_LT(worst, tolerance * typical) << width << " x " << height;
    primitives::fft::transform_image(kernels, packed.data(), width, height, true, 1);
    worst = 0.0;
    for (std::size_t i = 0; i < image.size(); ++i)
        worst = std::max(worst, std::abs(static_cast<double>(packed[i]) - image[i]));
    EXPECT_LT(worst, tolerance) << width << " x " << height << " and back";
}

/// Every radix, products of them, primes, lines shorter and longer than vectors and tiles.
std::vector<size> sizes()
{
    std::vector<size> all = {{1021, 40}, {40, 1021}, {1000, 999}, {256, 512}, {2048, 34}, {17, 300}, {77, 143}};
    for (int length = 1; length <= 70; ++length) {
        all.push_back({length, 1 + length * 7 % 67});
        all.push_back({1 + length * 5 % 61, length});
        all.push_back({length, 1});
        all.push_back({1, length});
    }
    return all;
}

template <class Number>
class FourierTransform : public testing::Test {
protected:
    static constexpr double tolerance = sizeof(Number) == 4 ? 4e-6 : 1e-14;
};
using Numbers = testing::Types<float, double>;
TYPED_TEST_SUITE(FourierTransform, Numbers);

TYPED_TEST(FourierTransform, EqualsTheLibraryAndLeadsBack)
{
    for (const size& each : sizes())
        expect_transforms(primitives::plain_kernels().transforms<TypeParam>(), each, this->tolerance);
}

TYPED_TEST(FourierTransform, GivesTheSameBytesOnEveryInstructionSetAndNumberOfThreads)
{
    for (const auto& [width, height] : sizes())
        for (const bool inverse : {false, true}) {
            const std::vector<double> image = noise(width * height);
            std::vector<TypeParam> expected(image.begin(), image.end());
            primitives::fft::transform_image(primitives::plain_kernels().transforms<TypeParam>(), expected.data(),
                                             width, height, inverse, 1);
            for (const primitives::kernel_table& set : primitives::available_kernels()) {
                std::vector<TypeParam> made(image.begin(), image.end());
                primitives::fft::transform_image(set.transforms<TypeParam>(), made.data(), width, height, inverse, 3);
                ASSERT_EQ(std::memcmp(made.data(), expected.data(), made.size() * sizeof(TypeParam)), 0)
                    << set.name << ' ' << width << " x " << height;
            }
        }
}

TEST(FourierOfASine, StandsInItsBinWithHalfItsAmplitude)
{
    constexpr int width = 60, height = 45, column = 7, row = 4;
    std::vector<float> image(width * height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image[static_cast<std::size_t>(y * width + x)] = static_cast<float>(
                3.0 + 10.0 * std::sin(2.0 * M_PI * (double(column) * x / width + double(row) * y / height)));
    primitives::forward_fft(image, width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x <= width / 2; ++x) {
            const std::complex<double> expected = x == column && y == row ? std::complex(0.0, -5.0)
                                                  : x == 0 && y == 0      ? std::complex(3.0, 0.0)
                                                                          : 0.0;
            EXPECT_LT(std::abs(bin_of(image, width, height, x, y) - expected), 1e-5) << x << ", " << y;
        }
}

} // namespace
