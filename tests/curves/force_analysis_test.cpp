#include "curves/force_analysis.h"

#include "curves/force_source.h"
#include "document/StorageDoc.h"
#include "document/fixtures.h"
#include "document/formats/force_order.h"

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
                  short_ = heights("Short", {3}, 1);
    const char* names[] = {"Approach", "Pause", "Retract"};
    force.set_subimage_names(names, 3);
    force.set_parameter_stream("Sensor");
    SPMDataStream other = force;
    other.set_name("Other");
    other.set_parameter_stream("Short");
    SPMDataStream lost = force;
    lost.set_name("Lost");
    lost.set_parameter_stream("Nobody");
    const SPMDataStream streams[] = {force, sensor, short_, other, lost};
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
