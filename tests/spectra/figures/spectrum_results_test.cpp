// What is told of a spectrum: waves, lattices, curves over frequency.
#include "document/examples/examples.h"
#include "spectra/figures/shown_spectrum.h"
#include "spectra/figures/spectrum_curves.h"
#include "spectra/figures/spectrum_peaks.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using namespace spectra;

constexpr double turn = 2.0 * std::numbers::pi;

template <class Height>
std::vector<std::int16_t> frame(int width, int height, Height at)
{
    std::vector<std::int16_t> samples;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) samples.push_back(static_cast<std::int16_t>(std::lround(at(x, y))));
    return samples;
}

TEST(Wave, IsTheInverseOfItsPeriodInBothDirections)
{
    const spectrum_grid grid{100, 50, VLAxis(0, 2, "nm"), VLAxis(0, 0.004, "um")};
    struct row {
        double u, v;
        const char* text;
    };
    // 200 nm on both sides: bins of 1 / 200 nm.
    for (const auto& [u, v, text] : {row{10, 0, "T: 20 nm  F: 0.05 1/nm  A: 0.00\xC2\xB0"},
                                     {-10, 0, "T: 20 nm  F: 0.05 1/nm  A: 0.00\xC2\xB0"},
                                     {0, -4, "T: 50 nm  F: 0.02 1/nm  A: 90.00\xC2\xB0"},
                                     {3, -4, "T: 40 nm  F: 0.025 1/nm  A: -53.13\xC2\xB0"},
                                     {-3, 4, "T: 40 nm  F: 0.025 1/nm  A: -53.13\xC2\xB0"},
                                     {0, 0, "F: 0"}})
        EXPECT_EQ(wave_text(wave_at(grid, u, v)), text) << u << ", " << v;
    const spectrum_grid times{100, 50, VLAxis(0, 2, "nm"), VLAxis(0, 0.004, "s")};
    EXPECT_EQ(wave_text(wave_at(times, 10, 4)), "Fx: 0.05 1/nm  Fy: 20 1/s");
}

TEST(SpectrumPeaks, GiveTheLatticeBetweenTheBins)
{
    // Three waves of a hexagonal lattice, turned and sheared by unequal steps; the periods are no parts of the sides.
    constexpr double a = 0.2461, stepX = 0.0151, stepY = 0.0187, turned = 0.31;
    constexpr int width = 211, height = 180;
    const double k = 2.0 / (a * std::sqrt(3.0)); // cycles per nm of each wave
    const auto samples = frame(width, height, [&](int x, int y) {
        double sum = 40.0 * x - 25.0 * y;
        for (int i = 0; i < 3; ++i) {
            const double angle = turned + i * turn / 6.0;
            sum += 1500.0 * std::cos(turn * k * (x * stepX * std::cos(angle) + y * stepY * std::sin(angle)) + i);
        }
        return sum;
    });
    const spectrum_grid grid{width, height, VLAxis(0, stepX, "nm"), VLAxis(0, stepY, "nm")};
    const auto peaks = find_peaks(transform_frame(samples, width, height));
    ASSERT_EQ(peaks.size(), 3u);
    for (const spectrum_peak& each : peaks) EXPECT_NEAR(wave_at(grid, each.u, each.v).frequency(), k, 0.002 * k);
    const auto found = find_lattice(peaks, grid);
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->a, a, 0.003 * a);
    EXPECT_NEAR(found->b, a, 0.003 * a);
    EXPECT_NEAR(std::min(found->angle, 180.0 - found->angle), 60.0, 0.3);
    // Waves of no lattice: three directions whose sums meet none of the others.
    const auto loose = frame(256, 256, [](int x, int y) {
        return 2000.0 * (std::cos(turn * (10 * x + 3 * y) / 256) + std::cos(turn * (4 * x + 17 * y) / 256) +
                         std::cos(turn * (31 * x - 23 * y) / 256) + std::cos(turn * (5 * x + 41 * y) / 256));
    });
    const auto several = find_peaks(transform_frame(loose, 256, 256));
    EXPECT_EQ(several.size(), 4u);
    EXPECT_FALSE(find_lattice(several, {256, 256, VLAxis(0, 1, "nm"), VLAxis(0, 1, "nm")}));
    EXPECT_TRUE(find_peaks(transform_frame(std::vector<std::int16_t>(400, 9), 20, 20)).empty());
}

TEST(SpectrumPeaks, GiveTheConstantsOfTheBundledLattice)
{
    const document::example made = document::make_atomic_lattice();
    const SPMDataStream& stream = std::get<formats::recorded_image>(made.content.items.at(0)).stream;
    const auto* const samples = static_cast<const std::int16_t*>(stream.array_data());
    const auto peaks = find_peaks(transform_frame({samples, 256 * 256}, 256, 256));
    const auto found =
        find_lattice(peaks, {256, 256, stream.get_dimension(0).get_axis(0), stream.get_dimension(1).get_axis(0)});
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->a, 0.246, 0.00246);
    EXPECT_NEAR(found->b, 0.246, 0.00246);
    EXPECT_NEAR(std::fabs(90.0 - found->angle), 30.0, 0.5);
}

TEST(SpectrumCurves, RunOverTheFrequencyInUnits)
{
    constexpr int side = 64;
    const auto samples = frame(side, side, [](int x, int y) {
        return 3000.0 * std::cos(turn * (6 * x + 8 * y) / side) + 1000.0 * std::cos(turn * 20 * x / side);
    });
    shown_spectrum spectrum;
    spectrum.transform(samples, side, side);
    spectrum.setMode(spectrum_mode::magnitude);
    const VLAxis nm(0, 2, "nm");
    const spectrum_curve_source source{spectrum, {side, side, nm, nm}, VLAxis(0, -0.5, "nm"), spectrum_mode::magnitude};
    const auto values = [](const SPMDataStream& curve) { return static_cast<const double*>(curve.array_data()); };

    const auto through = origin_profile(source, {-3, -4});
    ASSERT_TRUE(through);
    // Steps of (0.75, 1) bins, 31 to each side: bin (6, 8) is the eighth. Two bins share 3000 steps of 0.5 nm.
    ASSERT_EQ(through->get_dimension(0).length, 63u);
    EXPECT_NEAR(values(*through)[31 + 8], 750.0, 5.0);
    EXPECT_NEAR(values(*through)[31 - 8], 750.0, 5.0);
    EXPECT_NEAR(through->get_dimension(0).get_axis(0).at(31 + 8), 10.0 / 128.0, 1e-12);
    EXPECT_STREQ(through->get_dimension(0).get_axis(0).get_units(), "1/nm");

    const auto radial = radial_spectrum(source);
    ASSERT_TRUE(radial);
    EXPECT_EQ(radial->get_dimension(0).length, 32u);
    // Both lie in rings of their own: 2 of the bins of each have it.
    const auto ringSize = [](int ring) {
        int count = 0;
        for (int v = -31; v <= 31; ++v)
            for (int u = -31; u <= 31; ++u) count += std::lround(std::hypot(u, v)) == ring;
        return count;
    };
    EXPECT_NEAR(values(*radial)[10], 2 * 750.0 / ringSize(10), 1.0);
    EXPECT_NEAR(values(*radial)[20], 2 * 250.0 / ringSize(20), 1.0);

    const spectrum_curve_source mixed{
        spectrum, {side, side, nm, VLAxis(0, 1, "s")}, VLAxis(), spectrum_mode::magnitude};
    EXPECT_FALSE(radial_spectrum(mixed));
    EXPECT_FALSE(origin_profile(mixed, {3, 4}));
    EXPECT_TRUE(origin_profile(mixed, {0, 4}));
}

} // namespace
