// Features: what is found, its outline and skeleton, and the ten metrics in closed form.
#include "feature_fixture.h"
#include "spectra/figures/features/feature_levels.h"

#include <gtest/gtest.h>
#include <numbers>
#include <random>

namespace {

using points = std::vector<CPoint>;
enum metric : std::size_t { L_skel, P_proj, S_px, V_px, RMS_Z, FF_1, FF_2, H, H_av, RMS_H_av };

TEST(Features, OfAPictureAreWhatOneCountsByHand)
{
    const surface picture({"......#", //
                           ".##....", //
                           ".##..#.", //
                           ".....#.", //
                           "......#"});
    const spectra::feature_list list = features_of(picture);
    ASSERT_EQ(list.features.size(), 2u) << "the sample in the corner stands alone";
    EXPECT_EQ(list.dropped, 1u);
    const Feature &line = list.features[0], &block = list.features[1];
    EXPECT_EQ(line.bounds, CRect(5, 0, 7, 3));
    EXPECT_EQ(points(line.pixels.begin(), line.pixels.end()), points({{6, 0}, {5, 1}, {5, 2}}));
    EXPECT_EQ(line.contour, points({{6, 0}, {5, 1}, {5, 2}, {5, 1}, {6, 0}}));
    EXPECT_EQ(line.skeleton, points({{6, 0}, {5, 1}, {5, 2}}));
    EXPECT_EQ(points(block.pixels.begin(), block.pixels.end()), points({{1, 2}, {2, 2}, {1, 3}, {2, 3}}));
    EXPECT_EQ(block.contour, points({{1, 2}, {2, 2}, {2, 3}, {1, 3}, {1, 2}}));
    EXPECT_TRUE(block.pixels.contains({2, 3}));
    EXPECT_FALSE(block.pixels.contains({3, 3}));
    EXPECT_EQ(block.pixels.size(), 4u);
}

TEST(Features, LieWhereTheirRectangleLies)
{
    surface whole(40, 30);
    for (int x = 22; x < 28; ++x) whole.at(x, 17) = 5;
    spectra::feature_source source = source_of(whole);
    const CRect rect(20, 10, 40, 30);
    source.heights = {&whole.at(rect.left, rect.top), rect.Width(), rect.Height(), 80};
    source.origin = rect.TopLeft();
    primitives::bit_image mask;
    const auto list = spectra::feature_list::above(0, source, mask);
    ASSERT_EQ(list.features.size(), 1u);
    EXPECT_EQ(mask.width(), 20);
    EXPECT_EQ(list.features[0].bounds, CRect(22, 17, 28, 18));
    EXPECT_EQ(list.features[0].pixels.front(), (CPoint{22, 17}));
    EXPECT_EQ(list.features[0].contour.front(), (CPoint{22, 17}));
    EXPECT_EQ(list.features[0].skeleton.back(), (CPoint{27, 17}));
}

TEST(Metrics, AreThoseOfTheUnitOfXWhicheverWayTheAxesRun)
{
    // A block of 8 x 5 samples whose sides are 7 * 20 = 140 and 4 * 30 = 120 nm long.
    surface flat(20, 20);
    for (int y = 3; y < 8; ++y)
        for (int x = 5; x < 13; ++x) flat.at(x, y) = 2;
    const struct {
        VLAxis x, y;
    } cases[] = {{VLAxis(0, 20, "nm"), VLAxis(0, 30, "nm")},
                 {VLAxis(0, 20, "nm"), VLAxis(0, 0.03, "um")},
                 {VLAxis(0, 2e-8, "m"), VLAxis(0, 30, "nm")},
                 {VLAxis(9, -20, "nm"), VLAxis(5, 0.03, "um")},
                 {VLAxis(9, -20, "nm"), VLAxis(5, -30, "nm")}};
    for (const auto& [x, y] : cases) {
        spectra::feature_source source = source_of(flat);
        source.axes = {x, y, VLAxis(0, 0.5, "nm")};
        primitives::bit_image mask;
        const auto list = spectra::feature_list::above(0, source, mask);
        const auto& of = list.features.at(0).metrics;
        const double unit = std::fabs(x.scale) / 20.0; // of a nanometre
        EXPECT_NEAR(of[P_proj] / unit, 520.0, 1e-9);
        EXPECT_NEAR(of[S_px] / (unit * unit), 40 * 600.0, 1e-7);
        EXPECT_NEAR(of[V_px] / (unit * unit), 40 * 600.0, 1e-7) << "1 nm high";
        EXPECT_NEAR(of[FF_1], 2.0 * std::sqrt(std::numbers::pi * 28 * 600.0) / 520.0, 1e-12) << "a pure number";
    }
}

TEST(Metrics, HeightsCountFromTheZeroLevel)
{
    surface low(6, 3, -100);
    low.at(1, 1) = -50;
    low.at(2, 1) = -40;
    low.at(3, 1) = -30;
    spectra::feature_source source = source_of(low);
    source.axes.z = VLAxis(3, -0.5, "nm"); // higher samples are lower values
    primitives::bit_image mask;
    const auto list = spectra::feature_list::above(-60, source, mask);
    const auto& of = list.features.at(0).metrics;
    EXPECT_DOUBLE_EQ(of[H], 3.0) << "the highest sample is below the zero level";
    EXPECT_DOUBLE_EQ(of[H_av], -40 * -0.5 + 3);
    EXPECT_DOUBLE_EQ(of[V_px], 3 * (-40 * -0.5 + 3));
    EXPECT_NEAR(of[RMS_Z], 0.5 * std::sqrt(200.0 / 3.0), 1e-12);
    EXPECT_DOUBLE_EQ(of[RMS_H_av], of[RMS_Z]);
}

struct cap {
    double radius, height;
};

class SphericalCap : public testing::TestWithParam<cap> {};

TEST_P(SphericalCap, HasTheVolumeAreaAndHeightOfGeometry)
{
    const auto [radius, height] = GetParam();
    const double edge = std::sqrt(2.0 * radius * height - height * height), pi = std::numbers::pi;
    const int side = static_cast<int>(2 * edge) + 20;
    surface of(side, side);
    of.addCap(side / 2.0, side / 2.0, radius, height);
    const spectra::feature_list list = features_of(of);
    ASSERT_EQ(list.features.size(), 1u);
    const auto& metrics = list.features[0].metrics;
    const double volume = pi * height * height * (3.0 * radius - height) / 3.0;
    // Samples whose middle is inside; Gauss' circle problem leaves less than the edge's own samples, by far.
    EXPECT_NEAR(metrics[S_px], pi * edge * edge, 2.0 * edge);
    EXPECT_NEAR(metrics[V_px] / volume, 1.0, 0.005);
    EXPECT_NEAR(metrics[H], height, 0.02 + 1.0 / radius) << "the top lies between samples";
    // Around a disc the way from sample to sample is 8 r (1/sqrt(2) + (sqrt(2) - 1) (1 - 1/sqrt(2))) long.
    const double chain = 8.0 * (std::sqrt(0.5) + (std::sqrt(2.0) - 1.0) * (1.0 - std::sqrt(0.5)));
    EXPECT_NEAR(metrics[P_proj] / (chain * edge), 1.0, 1.5 / edge);
    EXPECT_NEAR(metrics[FF_1], 2.0 * pi / chain, 1.0 / edge);
    // A cap's heights are as frequent as each other on a paraboloid; here their mean is the volume over the area.
    EXPECT_NEAR(metrics[H_av], volume / (pi * edge * edge), 0.01 * height);
    EXPECT_LE(metrics[L_skel], 4.0) << "a disc is symmetric about one point";
}

INSTANTIATE_TEST_SUITE_P(Sizes, SphericalCap, testing::Values(cap{60, 20}, cap{100, 100}, cap{300, 40}, cap{150, 90}));

surface blobs(std::uint32_t seed, int dx, int dy, int width = 160, int height = 120)
{
    std::mt19937 random(seed);
    surface of(width, height);
    for (int i = 0; i < 40; ++i) {
        const int cx = 20 + static_cast<int>(random() % 90), cy = 15 + static_cast<int>(random() % 70);
        const int a = 1 + static_cast<int>(random() % 9), b = 1 + static_cast<int>(random() % 5);
        for (int y = -b; y <= b; ++y)
            for (int x = -a; x <= a; ++x)
                if (x * x * b * b + y * y * a * a <= a * a * b * b)
                    of.at(cx + x + dx, cy + y + dy) = static_cast<short>(1 + random() % 1000);
    }
    return of;
}

TEST(Features, MoveWithTheImage)
{
    for (std::uint32_t seed = 0; seed < 8; ++seed) {
        const auto still = features_of(blobs(seed, 0, 0)), moved = features_of(blobs(seed, 31, 22));
        ASSERT_EQ(still.features.size(), moved.features.size());
        for (std::size_t i = 0; i < still.features.size(); ++i) {
            const Feature &a = still.features[i], &b = moved.features[i];
            const auto shifted = [](points of) {
                for (CPoint& point : of) point = point + CSize{31, 22};
                return of;
            };
            EXPECT_EQ(shifted({a.pixels.begin(), a.pixels.end()}), points(b.pixels.begin(), b.pixels.end()));
            EXPECT_EQ(shifted(a.contour), b.contour);
            EXPECT_EQ(shifted(a.skeleton), b.skeleton);
            EXPECT_EQ(a.metrics, b.metrics);
        }
    }
}

TEST(Features, AreTheSameOnAnyNumberOfThreads)
{
    surface noise(700, 500);
    std::mt19937 random(4);
    for (short& each : noise.samples) each = static_cast<short>(random() % 1000);
    const auto one = features_of(noise, 700);
    ASSERT_GT(one.features.size(), 1000u);
    for (const unsigned threads : {2u, 3u, 8u}) {
        const auto several = features_of(noise, 700, threads);
        ASSERT_EQ(several.features.size(), one.features.size());
        EXPECT_EQ(several.dropped, one.dropped);
        for (std::size_t i = 0; i < one.features.size(); ++i) {
            ASSERT_EQ(several.features[i].contour, one.features[i].contour);
            ASSERT_EQ(several.features[i].skeleton, one.features[i].skeleton);
            ASSERT_EQ(several.features[i].metrics, one.features[i].metrics);
        }
    }
}

TEST(FeatureLevels, TakeTheLowerOfTwoEstimates)
{
    // 90 samples at 0 and 10 at 100: mean 10, deviation 30, zero level 0.
    surface few(10, 10);
    for (int x = 0; x < 10; ++x) few.at(x, 3) = 100;
    const spectra::feature_levels levels = spectra::find_levels(few.heights());
    EXPECT_EQ(levels.zeroLevel, 0);
    EXPECT_EQ(levels.threshold, 55) << "(100 + 10) / 2, below 2 * 30";
    // 99 samples at 0 and one at 100: mean 1, deviation sqrt(99) = 9.95.
    surface one(10, 10);
    one.at(4, 4) = 100;
    EXPECT_EQ(spectra::find_levels(one.heights()).threshold, 20) << "2 * 9.95, below (100 + 1) / 2";
    EXPECT_EQ(spectra::find_levels(few.heights(), 0.255).threshold, 26) << "halves go up";
    few.at(0, 0) = -1;
    EXPECT_EQ(spectra::find_levels(few.heights(), 0.5).threshold, 50) << "101 / 2 - 1 is 49.5";
    EXPECT_EQ(spectra::find_levels({}).threshold, 0);
}

} // namespace
