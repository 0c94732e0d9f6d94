// Lengths and form factors of features do not depend on how the image lies.
#include "feature_fixture.h"
#include "formats/registry.h"
#include "spectra/figures/features/feature_levels.h"
#include "support/sample_checks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace {

enum metric : std::size_t { L_skel, P_proj, S_px, V_px, RMS_Z, FF_1, FF_2 };

/// Mirrored along rows (1), along columns (2), and then rows and columns exchanged (4).
surface laid(const surface& of, int position)
{
    const bool exchanges = (position & 4) != 0;
    surface out(exchanges ? of.height : of.width, exchanges ? of.width : of.height);
    for (int y = 0; y < of.height; ++y)
        for (int x = 0; x < of.width; ++x) {
            int toX = position & 1 ? of.width - 1 - x : x, toY = position & 2 ? of.height - 1 - y : y;
            if (exchanges) std::swap(toX, toY);
            out.at(toX, toY) = of.samples[static_cast<std::size_t>(y * of.width + x)];
        }
    return out;
}

/// What may not change, of all features in an order that tells nothing of their places. Rows are further apart than
/// columns are, or, when both are exchanged, the other way round.
std::vector<std::array<double, 5>> shapes_of(const surface& of, short threshold, bool exchanges = false)
{
    std::vector<std::array<double, 5>> shapes;
    spectra::feature_source source = source_of(of);
    (exchanges ? source.axes.x : source.axes.y).scale = 2.0;
    primitives::bit_image mask;
    for (const Feature& each : spectra::feature_list::above(threshold, source, mask).features)
        shapes.push_back(
            {each.metrics[S_px], each.metrics[P_proj], each.metrics[L_skel], each.metrics[FF_1], each.metrics[FF_2]});
    std::sort(shapes.begin(), shapes.end());
    return shapes;
}

/// \return how many features there are
std::size_t expect_same_shapes(const surface& of, short threshold)
{
    const auto shapes = shapes_of(of, threshold);
    for (int position = 1; position < 8; ++position)
        EXPECT_EQ(shapes_of(laid(of, position), threshold, position >= 4), shapes) << position;
    return shapes.size();
}

surface smooth_noise(std::uint32_t seed, int width, int height, int radius)
{
    std::mt19937 random(seed);
    surface noise(width, height), out(width, height);
    for (short& each : noise.samples) each = static_cast<short>(random() % 2000);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            int sum = 0, count = 0;
            for (int j = std::max(y - radius, 0); j <= std::min(y + radius, height - 1); ++j)
                for (int i = std::max(x - radius, 0); i <= std::min(x + radius, width - 1); ++i, ++count)
                    sum += noise.at(i, j);
            out.at(x, y) = static_cast<short>(sum / count);
        }
    return out;
}

TEST(FeatureShapes, OfRandomAreasStayWhenTheImageIsTurned)
{
    std::size_t count = 0;
    for (const int radius : {0, 1, 2, 4})
        for (std::uint32_t seed = 0; seed < 4; ++seed) {
            const surface of = smooth_noise(seed, 130, 90, radius);
            count += expect_same_shapes(of, static_cast<short>(radius == 0 ? 1300 : 1020));
        }
    EXPECT_GT(count, 1000u);
}

surface surface_of(const test_support::image_plane& plane)
{
    surface of(static_cast<int>(plane.width()), static_cast<int>(plane.height()));
    const auto* const samples = static_cast<const short*>(plane.image->stream.array_data());
    std::copy_n(samples + of.samples.size() * plane.subimage, of.samples.size(), of.samples.begin());
    return of;
}

TEST(FeatureShapes, OfRecordedSurfacesStayWhenTheImageIsTurned)
{
    constexpr std::array<std::array<const char*, 2>, 6> files{{{"jpk", "file.jpk"},
                                                               {"nanoscope", "di-1.di"},
                                                               {"mdt", "test_structure.mdt"},
                                                               {"nid", "NanoSurf_20160301.nid"},
                                                               {"hdf", "VeecoHDF.hdf"},
                                                               {"text", "matrix-3.txt"}}};
    std::size_t count = 0;
    for (const auto& [folder, name] : files) {
        const std::vector<std::byte> bytes = test_support::read_sample(folder, name);
        if (bytes.empty()) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES;
        formats::memory_source source(bytes, name);
        const formats::format_row* const format =
            formats::find_format(std::span(bytes).first(std::min(bytes.size(), formats::sniffBytes)), name);
        ASSERT_TRUE(format) << name;
        const auto content = format->read(source);
        ASSERT_TRUE(content) << name;
        for (const test_support::image_plane& plane : test_support::planes_of(*content)) {
            const surface of = surface_of(plane);
            for (const auto level : {std::optional<double>{}, std::optional(0.5)}) {
                SCOPED_TRACE(name);
                count += expect_same_shapes(of, spectra::find_levels(of.heights(), level).threshold);
            }
        }
    }
    EXPECT_GT(count, 3000u);
}

TEST(FeatureShapes, ThatLookTheSameExchangedStayWithTheirSteps)
{
    for (int radius = 1; radius <= 20; ++radius) {
        surface disc(50, 45);
        for (int y = -radius; y <= radius; ++y)
            for (int x = -radius; x <= radius; ++x)
                if (x * x + y * y <= radius * radius) disc.at(25 + x, 21 + y) = 10;
        EXPECT_EQ(expect_same_shapes(disc, 0), 1u);
    }
    const surface picture({"............", //
                           ".#..##.###..", //
                           ".##.##.###..", // two that are equal to themselves about one diagonal or the other
                           ".......###..", //
                           ".###........", //
                           ".##.........", //
                           ".#..........", //
                           "............"});
    EXPECT_EQ(expect_same_shapes(picture, 0), 4u);
}

TEST(FeatureShapes, OfThinLinesAreTheirLengthTwice)
{
    for (int slope = -20; slope <= 20; ++slope) {
        surface flat(70, 90);
        for (int i = 0; i <= 40; ++i) flat.at(10 + i, 45 + static_cast<int>(std::lround(i * slope / 20.0))) = 100;
        const auto list = features_of(flat);
        ASSERT_EQ(list.features.size(), 1u);
        const int aslant = std::abs(slope) * 2;
        const double length = 40 - aslant + aslant * std::sqrt(2.0);
        EXPECT_NEAR(list.features[0].metrics[L_skel], length, 1e-9) << slope;
        EXPECT_NEAR(list.features[0].metrics[P_proj], 2 * length, 1e-9) << slope;
        EXPECT_EQ(list.features[0].metrics[FF_2], 1.0) << slope;
    }
}

TEST(FeatureShapes, GoRoundAllBranches)
{
    // Three arms of 30 samples from the middle: two up and aslant, one down, whose lowest sample a scan meets first.
    surface fork(80, 80), turned(80, 80);
    for (int i = 0; i <= 30; ++i)
        fork.at(40 - i, 40 + i) = fork.at(40 + i, 40 + i) = fork.at(40, 40 - i) = turned.at(40 - i, 40 - i) =
            turned.at(40 + i, 40 - i) = turned.at(40, 40 + i) = 100;
    const double length = 30 + 60 * std::sqrt(2.0);
    for (const surface* const each : {&fork, &turned}) {
        const auto list = features_of(*each);
        ASSERT_EQ(list.features.size(), 1u);
        EXPECT_NEAR(list.features[0].metrics[L_skel], length, 1e-9);
        EXPECT_NEAR(list.features[0].metrics[P_proj], 2 * length, 1e-9);
    }
    // Two squares of 11 x 11 samples that touch by a corner, which the scan meets first in one position.
    surface squares(40, 40), others(40, 40);
    for (int y = 0; y <= 10; ++y)
        for (int x = 0; x <= 10; ++x)
            if (x % 10 == 0 || y % 10 == 0)
                squares.at(5 + x, 5 + y) = squares.at(16 + x, 16 + y) = others.at(16 + x, 5 + y) =
                    others.at(5 + x, 16 + y) = 100;
    for (const surface* const each : {&squares, &others})
        EXPECT_NEAR(features_of(*each).features.at(0).metrics[P_proj], 80 + 2 * std::sqrt(2.0), 1e-9)
            << "the outside alone: holes are no part of it";
}

} // namespace
