// The level of the base plane on surfaces whose base is known.
#include "primitives/numeric.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

struct surface_case {
    const char* name;
    int base;
    double noise;                  ///< standard deviation, raw units
    double tilt;                   ///< from edge to edge, raw units
    double covered;                ///< part of the area under features
    int height;                    ///< of the features above the base
    bool isFlat;                   ///< on top; otherwise every height up to the full one is as frequent
    double tolerance;              ///< raw units
    std::vector<double> pits = {}; ///< part of the area and depth
};

std::ostream& operator<<(std::ostream& out, const surface_case& of) { return out << of.name; }

class ZeroLevel : public testing::TestWithParam<surface_case> {};

TEST_P(ZeroLevel, IsThatOfTheBase)
{
    const surface_case& of = GetParam();
    constexpr int side = 256;
    std::mt19937 random(11);
    std::normal_distribution<double> noise(0.0, 1.0);
    std::uniform_real_distribution<double> share(0.0, 1.0);
    std::vector<short> samples;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            double z = of.base + of.noise * noise(random) + of.tilt * ((x + 0.5) / side - 0.5);
            const double where = share(random);
            if (where < of.covered) z += of.height * (of.isFlat ? 1.0 : share(random));
            if (!of.pits.empty() && where > 1.0 - of.pits[0]) z -= of.pits[1];
            samples.push_back(static_cast<short>(std::lround(std::clamp(z, -32768.0, 32767.0))));
        }
    EXPECT_NEAR(find_zero_level(samples.data(), side, side, side * 2, 0), of.base, of.tolerance);
}

// The mean of n normal values is uncertain by noise / sqrt(n), below one unit here; what features add within the peak
// of the base shifts it by less than a tenth of its width.
INSTANTIATE_TEST_SUITE_P(
    Surfaces, ZeroLevel,
    testing::Values(surface_case{"Flat", -1234, 0, 0, 0, 0, true, 0}, surface_case{"Noise", 100, 50, 0, 0, 0, true, 3},
                    surface_case{"Tilt", 100, 0, 800, 0, 0, true, 8},
                    surface_case{"TiltAndNoise", -5000, 60, 400, 0, 0, true, 8},
                    surface_case{"CapsOnHalf", -5000, 60, 300, 0.5, 9000, false, 20},
                    surface_case{"CapsOnAQuarter", -5000, 60, 300, 0.25, 9000, false, 15},
                    surface_case{"PlateausOnHalf", 0, 60, 300, 0.495, 2000, true, 12},
                    surface_case{"SaturatedPlateaus", 20000, 60, 300, 0.48, 30000, true, 12},
                    surface_case{"PlateausWithoutNoise", -30000, 0, 0, 0.5, 7, true, 0},
                    surface_case{"PlateausAndPits", 500, 20, 100, 0.35, 3000, true, 6, {0.1, 2000}},
                    surface_case{"Lowest", -32768, 0, 0, 0.3, 65535, true, 0},
                    surface_case{"Highest", 32767, 0, 0, 0, 0, true, 0}),
    [](const auto& of) { return std::string(of.param.name); });

TEST(ZeroLevelOfHistogram, IsAPositionAmongTheBins)
{
    const unsigned peak[] = {0, 0, 3, 9, 9, 3, 0, 0, 1, 1, 2, 1, 1};
    EXPECT_DOUBLE_EQ(find_zero_level(peak, 13), 3.5);
    const unsigned one[] = {0, 0, 7, 0};
    EXPECT_DOUBLE_EQ(find_zero_level(one, 4), 2.0);
    const unsigned none[] = {0, 0};
    EXPECT_EQ(find_zero_level(none, 2), 0.0);
    EXPECT_EQ(find_zero_level(none, 0), 0.0);
    EXPECT_EQ(find_zero_level(nullptr, 5), 0.0);
    EXPECT_EQ(find_zero_level(static_cast<const short*>(nullptr), 0, 0, 0, 0), 0);
}

TEST(ZeroLevelOfHistogram, MovesWithTheHeights)
{
    std::mt19937 random(12);
    std::vector<unsigned> counts(500), moved(500);
    for (int i = 100; i < 300; ++i) {
        const double peak = 100 * std::exp(-std::pow((i - 140.0) / 15, 2));
        const auto at = static_cast<std::size_t>(i);
        moved[at + 57] = counts[at] = static_cast<unsigned>(std::lround(peak)) + static_cast<unsigned>(random() % 4);
    }
    EXPECT_NEAR(find_zero_level(counts.data(), 500), 140.0, 0.5);
    EXPECT_DOUBLE_EQ(find_zero_level(moved.data(), 500), find_zero_level(counts.data(), 500) + 57);
}

TEST(ZeroLevel, HonoursTheStep)
{
    const short rows[] = {5, 5, 900, 5, 5, 900, 5, 6, 900};
    EXPECT_EQ(find_zero_level(rows, 2, 3, 6, 0), 5);
}

} // namespace
