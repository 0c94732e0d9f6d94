// What is done with features: filter, brush, removal, holes, heights of profiles, drawings.
#include "feature_fixture.h"
#include "spectra/figures/features/feature_brush.h"
#include "spectra/figures/features/feature_edit.h"
#include "spectra/figures/features/feature_filter.h"
#include "spectra/figures/features/feature_overlay.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>

namespace {

constexpr std::size_t area = 2;

std::vector<Feature> with_values(const std::vector<double>& values)
{
    std::vector<Feature> features(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) features[i].metrics[area] = values[i];
    return features;
}

std::string passing(const std::vector<Feature>& features, const spectra::feature_filter& filter,
                    std::optional<unsigned> bars = {})
{
    const auto distribution = spectra::distribute(features, area, bars);
    std::string out;
    for (const Feature& each : features) out += spectra::passes(each, distribution, filter) ? '1' : '0';
    return out;
}

TEST(FeatureFilter, KeepsWhatLiesBetweenTheDelimiters)
{
    const auto features = with_values({0, 1, 2, 3, 4, 5, 6, 7, 8}); // nine bins, a value each
    EXPECT_EQ(passing(features, {0.25, 0.75, true}), "001111100") << "bins 2 to 6";
    EXPECT_EQ(passing(features, {0.25, 0.75, false}), "110000011");
    EXPECT_EQ(passing(features, {0.75, 0.25, true}), "000000000") << "crossed";
    EXPECT_EQ(passing(features, {0.0625, 1.0, true}), "011111111") << "0.5 rounds to bin 1";
    EXPECT_EQ(passing(features, {0.5, 1.0, true}, 2), "000011111") << "two bins, the middle belongs to the upper";
    EXPECT_EQ(passing(with_values({7, 7}), {0.0, 0.0, true}), "11") << "without a range all are in the first bin";
    EXPECT_EQ(passing(with_values({7}), {0.25, 0.75, true}), "1");
}

TEST(FeatureFilter, CountsFeaturesIntoBins)
{
    const auto of = spectra::distribute(with_values({10, 11, 11, 20}), area, 3);
    EXPECT_EQ(of.bins, std::vector<std::uint32_t>({3, 0, 1}));
    EXPECT_EQ(of.peakCount, 3u);
    EXPECT_EQ(of.valueRange, 10.0);
    EXPECT_EQ(spectra::share_of(of, 15), 0.5);
    EXPECT_EQ(spectra::share_of(of, 99), 1.0);
    const auto none = spectra::distribute({}, area);
    EXPECT_EQ(none.bins, std::vector<std::uint32_t>({0}));
    EXPECT_EQ(none.valueRange, 1.0);
}

TEST(FeatureFilter, SortsBothWaysAndKeepsTheOrderOfEquals)
{
    auto features = with_values({3, 1, 2, 1, std::nan("")});
    for (std::size_t i = 0; i < features.size(); ++i) features[i].metrics[0] = static_cast<double>(i);
    const auto order = [&features] {
        std::vector<double> out;
        for (const Feature& each : features) out.push_back(each.metrics[0]);
        return out;
    };
    spectra::sort_features(features, area, false);
    EXPECT_EQ(order(), std::vector<double>({4, 1, 3, 2, 0}));
    spectra::sort_features(features, area, true);
    EXPECT_EQ(order(), std::vector<double>({0, 2, 1, 3, 4}));
}

int count(const primitives::bit_image& mask)
{
    int set = 0;
    for (int y = 0; y < mask.height(); ++y)
        for (int x = 0; x < mask.width(); ++x) set += mask.test(x, y);
    return set;
}

TEST(FeatureBrush, IsADiscThatIsCutAtTheEdge)
{
    for (const auto& [radius, cells] : {std::pair{0, 1}, {1, 5}, {2, 13}, {3, 29}, {-4, 1}}) {
        primitives::bit_image mask(90, 20);
        spectra::feature_brush(radius).stamp(mask, {60, 10}, {60, 10}, true);
        EXPECT_EQ(count(mask), cells) << radius;
        EXPECT_TRUE(mask.test(60, 10));
    }
    primitives::bit_image corner(10, 10);
    spectra::feature_brush(2).stamp(corner, {0, 0}, {0, 0}, true);
    EXPECT_EQ(count(corner), 6) << "a quarter with both axes";
    spectra::feature_brush(9).stamp(corner, {-30, -30}, {-30, -30}, true);
    EXPECT_EQ(count(corner), 6);
}

TEST(FeatureBrush, FollowsTheWayOfThePointer)
{
    primitives::bit_image mask(40, 40);
    spectra::feature_brush(0).stamp(mask, {3, 5}, {13, 5}, true);
    EXPECT_EQ(count(mask), 11);
    spectra::feature_brush(0).stamp(mask, {3, 5}, {13, 5}, false);
    EXPECT_EQ(count(mask), 0);
    spectra::feature_brush(0).stamp(mask, {0, 0}, {30, 30}, true);
    EXPECT_TRUE(mask.test(0, 0));
    EXPECT_TRUE(mask.test(30, 30)) << "42 steps of 1 / sqrt(2) each are 29.7 samples";
    EXPECT_EQ(count(mask), 31);
}

TEST(FeatureEdit, FlattensTheVeryPixels)
{
    surface of({"#..#", ".##.", "#..#"});
    const auto list = features_of(of);
    ASSERT_EQ(list.features.size(), 1u);
    spectra::flatten_feature(of.block(), list.features[0], -7);
    EXPECT_EQ(of.samples, std::vector<short>({-7, 0, 0, -7, 0, -7, -7, 0, -7, 0, 0, -7}));
}

std::vector<const Feature*> pointers_to(const spectra::feature_list& list)
{
    std::vector<const Feature*> out;
    for (const Feature& each : list.features) out.push_back(&each);
    return out;
}

TEST(FeatureEdit, FillsHolesAlikeInAnyOrderOfFeatures)
{
    // A ring around a ring, and a third one that reaches into the corner of the outer one's box.
    surface of({"........####", //
                "#####...#..#", //
                "#....#..####", //
                "#.....#.....", //
                "#.###..#....", //
                "#.#.#...#...", //
                "#.###....#..", //
                "#........#..", //
                "##########.."});
    of.at(9, 7) = -600;
    const auto list = features_of(of);
    ASSERT_EQ(list.features.size(), 3u);
    // The outer box: (27 + 8 + 3) * 10 - 600 over 80 samples is -2.75. That of the third: 100 - 600 over 12, -41.7.
    const std::vector<std::string> filled{"........####", //
                                          "#####...#tt#", //
                                          "#oooo#..####", //
                                          "#ooooo#.....", //
                                          "#oooooo#....", //
                                          "#ooooooo#...", //
                                          "#oooooooo#..", //
                                          "#oooooooo#..", //
                                          "##########.."};
    const std::map<char, short> heights{{'.', 0}, {'#', 10}, {'o', -3}, {'t', -42}};
    std::vector<short> expected;
    for (auto row = filled.rbegin(); row != filled.rend(); ++row)
        for (const char each : *row) expected.push_back(heights.at(each));
    std::vector<const Feature*> order = pointers_to(list);
    std::ranges::sort(order);
    do {
        surface made = of;
        spectra::fill_inner_areas(made.block(), order);
        EXPECT_EQ(made.samples, expected);
    } while (std::ranges::next_permutation(order).found);
}

TEST(FeatureEdit, ProfilesAreAsHighAsTheirRidge)
{
    surface of(10, 6);
    for (int y = 1; y < 5; ++y)
        for (int x = 3; x < 6; ++x) of.at(x, y) = static_cast<short>(x == 4 ? 100 + 10 * y : 50);
    const auto list = features_of(of);
    EXPECT_DOUBLE_EQ(spectra::profile_height(of.heights(), list.features[0], 0).value(), 125.0);
    EXPECT_DOUBLE_EQ(spectra::profile_height(of.heights(), list.features[0], 120).value(), 135.0) << "strictly above";
    EXPECT_FALSE(spectra::profile_height(of.heights(), list.features[0], 140));
    const Feature* const both[] = {&list.features[0], &list.features[0]};
    EXPECT_DOUBLE_EQ(spectra::average_profile_height(of.heights(), both, 0).value(), 125.0);
    EXPECT_FALSE(spectra::average_profile_height(of.heights(), both, 140));
    EXPECT_EQ(spectra::profile_height_text(125.0, 25, VLAxis(7, 0.125, "nm")), "<H>, nm: 12.5") << "no start is added";
}

TEST(FeatureOverlay, ShowsWhatPassesAndWhatDoesNot)
{
    surface of({"##..##", "##..##"});
    const auto list = features_of(of);
    const CRect working(1, 0, 6, 2);
    const auto isFirst = [&](const Feature& each) { return each.bounds.left == 0; };
    using bytes = std::vector<unsigned char>;
    const auto as_bytes = [](const spectra::feature_overlay& overlay) {
        return bytes(overlay.bytes().begin(), overlay.bytes().end());
    };
    auto masks = spectra::draw_features(list.features, isFirst, spectra::feature_mask_type::mask, working);
    EXPECT_EQ(as_bytes(masks.passing), bytes({0, 1, 1, 1, 1, 0, 1, 1, 1, 1}));
    EXPECT_EQ(as_bytes(masks.others), bytes({0, 0, 0, 1, 1, 0, 0, 0, 1, 1}));
    const auto lines = spectra::draw_features(list.features, isFirst, spectra::feature_mask_type::contour, working);
    EXPECT_EQ(as_bytes(lines.passing), bytes({1, 0, 0, 0, 0, 1, 0, 0, 0, 0}));
    EXPECT_EQ(as_bytes(lines.others), bytes({0, 0, 0, 1, 1, 0, 0, 0, 1, 1}));
    const auto bones = spectra::draw_features(list.features, isFirst, spectra::feature_mask_type::skeleton, working);
    int set = 0;
    for (const unsigned char each : bones.others.bytes()) set += each;
    EXPECT_EQ(set, static_cast<int>(list.features[1].skeleton.size()));
    const VLPluginDecoration record =
        masks.passing.record(VLAxis(100, 2, "nm"), VLAxis(0, 3, "nm"), spectra::featuresKey, 0x007F00);
    const auto& bitmap = *static_cast<const decoration_bitmap*>(record.data);
    EXPECT_EQ((std::array{bitmap.x0, bitmap.y0, bitmap.x1, bitmap.y1}), (std::array{102.0, 0.0, 112.0, 6.0}));
    EXPECT_EQ(record.type, DECORATION_BITMAP);
    EXPECT_EQ(bitmap.mode, 6u);
    primitives::bit_image painted(5, 2);
    painted.fill(1, 0, 2, true);
    EXPECT_EQ(as_bytes(spectra::draw_mask(painted, working)), bytes({1, 1, 1, 1, 1, 0, 0, 1, 1, 1}));
}

} // namespace
