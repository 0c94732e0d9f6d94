#include "curves/figures/force/force_analysis.h"

#include "curves/figures/force/force_map.h"
#include "curves/figures/force/force_source.h"
#include "document/StorageDoc.h"
#include "document/fixtures.h"
#include "formats/shared/force/force_order.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

TEST(SlopeUnits, NameWhatTheyAreMeasuredAgainst)
{
    const struct {
        const char *values, *x, *units, *name;
    } rows[] = {{"nN", "nm", "nN/nm", "dF/dZ"}, {"N", "s", "N/s", "dF/dt"},       {"N", "V", "N/V", "dF/dX"},
                {"", "nm", "1/nm", "dF/dZ"},    {"nN", "", "nN/sample", "dF/dX"}, {"", "", "1/sample", "dF/dX"}};
    for (const auto& row : rows) {
        EXPECT_EQ(curves::slope_units(row.values, VLAxis(0, 1, row.x)), row.units);
        EXPECT_STREQ(curves::slope_name(row.x), row.name);
    }
    EXPECT_EQ(curves::slope_units("nN", VLAxis(0, 8, "")), "nN/x"); // not a count of samples
}

TEST(ForceChannels, AreForcesAndVerticalDeflections)
{
    const struct {
        const char *label, *units;
        bool isForce;
    } rows[] = {{"Force", "nm", true},          {"vDeflection", "V", true},     {"Deflection Error", "nm", true},
                {"Signal", "pN", true},         {"hDeflection", "V", false},    {"Friction force", "nN", false},
                {"Height Sensor", "nm", false}, {"Lateral Force", "nN", false}, {"time", "s", false}};
    for (const auto& row : rows) {
        SPMDataStream stream = heights("id", {4});
        stream.set_description(row.label);
        stream.values.set_axis(0, VLAxis(0, 1, row.units));
        EXPECT_EQ(formats::holds_forces(stream), row.isForce) << row.label;
    }
    for (const char* name : {"Pause", "Pause 2", "Dwell", "Hold", "Modulation"})
        EXPECT_TRUE(curves::is_held_part(name)) << name;
    for (const char* name : {"Approach", "Retract 2", "", static_cast<const char*>(nullptr)})
        EXPECT_FALSE(curves::is_held_part(name));
}

/// 100 samples in contact that fall by 3 each, then 200 free ones at 0.
std::vector<std::int16_t> contact()
{
    std::vector<std::int16_t> samples;
    for (int i = 0; i < 300; ++i) samples.push_back(static_cast<std::int16_t>(i < 100 ? 3 * (100 - i) : 0));
    return samples;
}

TEST(ForceAnalysis, GoesOverTheAxisOrTheParameterStream)
{
    const std::vector<std::int16_t> raw = contact();
    std::vector<std::int16_t> falling;
    for (int i = 0; i < 300; ++i) falling.push_back(static_cast<std::int16_t>(-2 * i));
    const VLAxis newtons(0.0, 0.5, "nN");
    const curves::force_analysis along = curves::analyse_force({raw, newtons, {}, VLAxis(0.0, 4.0, "nm")});
    ASSERT_TRUE(along.slope && along.minimum);
    EXPECT_NEAR(*along.slope, -3 * 0.5 / 4.0, 0.01);
    EXPECT_NEAR(*along.minimum, 0.0, 1.5);
    const curves::force_analysis over = curves::analyse_force({raw, newtons, falling, VLAxis(7.0, 0.25, "nm")});
    ASSERT_TRUE(over.slope && over.minimum);
    EXPECT_NEAR(*over.slope, 3 * 0.5 / (2 * 0.25), 0.05); // x falls by 0.5 nm a sample

    const std::vector<std::int16_t> flat(300, 9);
    const curves::force_analysis nothing = curves::analyse_force({flat, newtons, {}, VLAxis()});
    EXPECT_FALSE(nothing.slope);
    EXPECT_FALSE(nothing.minimum);
    EXPECT_EQ(nothing.lowest, 4.5);
    EXPECT_FALSE(curves::analyse_force({}).slope);
}

TEST(ForceSource, PairsCurvesWithWhatTheyAreMeasuredAgainst)
{
    CHeadlessHost host;
    CWinApp app(host);
    CStorageDoc document;
    SPMDataStream force = heights("Force", {5}, 3), sensor = heights("Sensor", {5}, 3),
                  shortPart = heights("Short", {3}, 1);
    const char* names[] = {"Approach", "Pause", "Retract"};
    force.set_subimage_names(names, 3);
    force.set_parameter_stream("Sensor");
    SPMDataStream other = force;
    other.set_name("Other");
    other.set_parameter_stream("Short");
    SPMDataStream lost = force;
    lost.set_name("Lost");
    lost.set_parameter_stream("Nobody");
    const SPMDataStream streams[] = {force, sensor, shortPart, other, lost};
    document.AddNewImages(streams, 5);
    document.setString("\\Curve lengths", "5 4 0", 0);
    document.setString("\\Curve lengths", "3 5 5", 1);
    const auto sizes = [&](unsigned image) {
        std::vector<std::pair<std::size_t, std::size_t>> out;
        for (const curves::placed_curve& each : curves::force_curves_of(document, image).curves)
            out.emplace_back(each.samples.raw.size(), each.samples.places.size());
        return out;
    };
    using pairs = std::pair<std::size_t, std::size_t>;
    EXPECT_THAT(sizes(0), ElementsAre(pairs{3, 3}, pairs{4, 4}, pairs{0, 0}));
    EXPECT_THAT(sizes(3), ElementsAre(pairs{3, 3}, pairs{3, 3}, pairs{3, 3})); // one for all, up to the shorter
    EXPECT_THAT(sizes(4), ElementsAre(pairs{5, 0}, pairs{5, 0}, pairs{5, 0}));
    const curves::force_image image = curves::force_curves_of(document, 0);
    EXPECT_EQ(image.x, sensor.values.get_axis(0));
    EXPECT_EQ(image.curves[2].samples.x, sensor.values.get_axis(0));
    EXPECT_TRUE(image.curves[1].isHeld);
    EXPECT_FALSE(image.curves[2].isHeld);
}

TEST(ForceSource, WhatWasNotMeasuredIsNotAnalysed)
{
    struct void_case {
        int first, last;
        bool hasContact, isFree;
    };
    // Falls by 0.8 nN a nm from 60 nN down to 0 at 75 nm; what is missing lies on a line between its ends.
    const void_case cases[] = {{0, 0, true, true}, {0, 39, true, true}, {70, 199, true, false}, {3, 120, false, true}};
    CHeadlessHost host;
    CWinApp app(host);
    SPMDataStream volume = heights("Force", {200, 4, 1}), places = heights("Height", {200, 4, 1});
    std::string told = "of 800:";
    std::vector<formats::void_range> ranges;
    for (int k = 0; k < 4; ++k) {
        auto* const y = static_cast<short*>(volume.array_data()) + 200 * k;
        auto* const x = static_cast<short*>(places.array_data()) + 200 * k;
        const auto [first, last, hasContact, isFree] = cases[k];
        for (int i = 0; i < 200; ++i) {
            x[i] = static_cast<short>(i);
            y[i] = static_cast<short>(std::max(600 - 8 * i, 0));
        }
        const int from = first ? y[first - 1] : y[last + 1], to = last < 199 ? y[last + 1] : from;
        for (int i = first; i <= last; ++i)
            y[i] = static_cast<short>(std::lround(from + (to - from) * (i - first + 1.0) / (last - first + 2.0)));
        ranges.push_back({static_cast<std::uint64_t>(200 * k + first), static_cast<std::uint64_t>(last - first + 1)});
        told += " " + std::to_string(200 * k + first) + "-" + std::to_string(200 * k + last);
    }
    volume.values.set_axis(0, VLAxis(0, 0.1, "nN"));
    places.values.set_axis(0, VLAxis(0, 1, "nm"));
    volume.get_dimension(0).set_axis(0, VLAxis(0, 1, "nm"));
    SPMDataStream over = volume;
    over.set_name("Over");
    over.set_parameter_stream("Height");
    const SPMDataStream streams[] = {volume, over, places};
    CStorageDoc document;
    document.AddNewImages(streams, 3);
    for (const unsigned image : {0u, 1u}) {
        document.setString("\\Void samples", told.c_str(), image);
        const curves::force_image read = curves::force_curves_of(document, image);
        for (std::size_t k = 0; k < 4; ++k) {
            const curves::force_analysis found = curves::analyse_force(read.curves[k].samples);
            EXPECT_EQ(read.curves[k].voids, static_cast<std::size_t>(cases[k].last - cases[k].first + 1));
            ASSERT_EQ(found.slope.has_value(), cases[k].hasContact) << k;
            EXPECT_EQ(found.minimum.has_value(), cases[k].isFree) << k;
            if (!found.slope) continue;
            EXPECT_NEAR(*found.slope, -0.8, 0.02) << k;
            EXPECT_NEAR(found.stats.slant_a, 60.0, 1.0) << k;
            EXPECT_GT(found.stats.slant_first, k == 1 ? 39 : -1);
        }
        const SPMDataStream* const x = image == 1 ? &places : nullptr;
        const curves::force_maps maps = curves::map_forces(curves::volume_of(volume, 0, x, nullptr, nullptr, ranges));
        EXPECT_EQ(maps.rigidity.voids, 1u);
        EXPECT_EQ(maps.adhesion.voids, 1u);
        EXPECT_NEAR(maps.rigidity.values.at(maps.rigidity.samples[1]), -0.8, 0.02);
    }
}

/// The figures of a curve that has samples before and behind it that were not measured. Over positions when there are.
curves::force_analysis between_voids(std::vector<short> y, std::vector<short> x, int head, int tail, double step)
{
    const auto length = static_cast<unsigned>(head + static_cast<int>(y.size()) + tail);
    const auto put = [&](std::vector<short>& row, SPMDataStream& stream) {
        row.insert(row.begin(), static_cast<std::size_t>(head), row.front());
        row.resize(length, row.back());
        std::ranges::copy(row, static_cast<short*>(stream.array_data()));
    };
    SPMDataStream force = heights("Force", {length}, 1), height = heights("Height", {length}, 1);
    put(y, force);
    force.values.set_axis(0, VLAxis(0, 0.1, "nN"));
    height.values.set_axis(0, VLAxis(0, 0.25, "nm"));
    force.get_dimension(0).set_axis(0, VLAxis(3, step, "nm"));
    if (!x.empty()) {
        put(x, height);
        force.set_parameter_stream("Height");
    }
    const SPMDataStream streams[] = {force, height};
    CStorageDoc document;
    document.AddNewImages(streams, 2);
    std::string told = "of " + std::to_string(length) + ":";
    if (head) told += " 0-" + std::to_string(head - 1);
    if (tail) told += " " + std::to_string(length - static_cast<unsigned>(tail)) + "-" + std::to_string(length - 1);
    if (head + tail) document.setString("\\Void samples", told.c_str(), 0);
    return curves::analyse_force(curves::force_curves_of(document, 0).curves.at(0).samples, {1.0, 1.0, 5});
}

TEST(ForceSource, AVoidHeadOrTailChangesNoFigure)
{
    CHeadlessHost host;
    CWinApp app(host);
    int compared = 0;
    for (const int n : {60, 200, 320})
        for (const int dip : {0, 12}) // below the free stretch, as of a retract
            for (const double step : {0.5, -0.5})
                for (const bool isOver : {false, true}) {
                    std::vector<short> y, x;
                    for (int i = 0; i < n; ++i) {
                        y.push_back(static_cast<short>((i < n / 3 + dip ? 20 * (n / 3 - i) : 0) + i * 7 % 5));
                        if (isOver) x.push_back(static_cast<short>((step < 0 ? -1 : 1) * (4 * i + i % 2)));
                    }
                    const curves::force_analysis cut = between_voids(y, x, 0, 0, step);
                    if (!cut.slope || !cut.minimum) continue; // the shortest, with a dip
                    ++compared;
                    for (const auto& [head, tail] : {std::pair{1, 0}, {9, 0}, {0, 30}, {80, 0}, {70, 300}}) {
                        const curves::force_analysis all = between_voids(y, x, head, tail, step);
                        EXPECT_EQ(all.slope, cut.slope) << n << dip << isOver << head;
                        EXPECT_EQ(all.minimum, cut.minimum);
                        EXPECT_EQ(all.areas, cut.areas);
                        EXPECT_EQ(all.stats.zero_rms, cut.stats.zero_rms);
                        const double shift = isOver ? 0.0 : head; // of the numbers that lines run over
                        EXPECT_EQ(all.stats.slant_a, cut.stats.slant_a - cut.stats.slant_b * shift);
                        EXPECT_EQ(all.stats.zero_a, cut.stats.zero_a - cut.stats.zero_b * shift);
                        EXPECT_EQ(all.stats.slant_first, cut.stats.slant_first + head);
                        EXPECT_EQ(all.stats.zero_first, cut.stats.zero_first + head);
                        EXPECT_EQ(all.stats.min_index, cut.stats.min_index + head);
                        ASSERT_EQ(all.stats.local_minima.size(), cut.stats.local_minima.size());
                        for (std::size_t k = 0; k < all.stats.local_minima.size(); ++k)
                            EXPECT_EQ(all.stats.local_minima[k], cut.stats.local_minima[k] + head);
                    }
                }
    EXPECT_GE(compared, 20); // of 24
}

TEST(ForceSource, WhatOnlyTellsPlacesIsNoForce)
{
    CHeadlessHost host;
    CWinApp app(host);
    CStorageDoc document;
    SPMDataStream force = heights("Deflection", {5}), ramp = heights("Deflection_position", {5}),
                  sensor = heights("Deflection Sensor", {5}), other = heights("Current", {5});
    for (SPMDataStream* each : {&force, &sensor}) each->set_description("Deflection");
    force.set_parameter_stream("Nobody"); // the id of the ramp tells nothing where there is a label
    other.set_parameter_stream("Deflection Sensor");
    const SPMDataStream streams[] = {force, ramp, sensor, other, heights("Force map", {5, 4})};
    document.AddNewImages(streams, 5);
    std::vector<bool> found;
    for (unsigned i = 0; i < 5; ++i) found.push_back(curves::is_force_image(document, i));
    EXPECT_THAT(found, ElementsAre(true, false, false, false, false));
}

} // namespace
