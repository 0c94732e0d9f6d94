#include "formats/shared/force_order.h"

#include "formats/recorded_values.h"
#include "formats/shared/curve_group.h"
#include "formats/shared/stream_shape.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace formats;
using enum contact_end;

const char* const orderKey = "\\Recorded order";

recorded_image curves(const std::vector<named_curve>& parts, const VLAxis& x = {}, const char* units = "nN",
                      const char* label = "Force")
{
    return make_curve_group(label, label, x, {1.0, 0.0, units, "hand"}, parts);
}

struct turned_case {
    const char* name;
    std::vector<contact_end> ends;
    std::vector<double> values;
    VLAxis axis;
    std::string order; ///< empty: no text
};

class OrderFromContact : public testing::TestWithParam<turned_case> {};

// An approach of 1 2 3 and a retract of 9 8, on an axis of 10 12 14 µm.
TEST_P(OrderFromContact, TurnsWhatEndsInContact)
{
    recorded_image image = curves({{"Approach", {1, 2, 3}}, {"Retract", {9, 8}}}, VLAxis(10, 2, "\u00B5m"));
    order_from_contact(image, GetParam().ends);
    EXPECT_EQ(physical(image.stream), GetParam().values);
    EXPECT_EQ(image.stream.get_dimension(0).get_axis(0), GetParam().axis);
    EXPECT_EQ(image.strings.contains(orderKey) ? image.strings.at(orderKey) : "", GetParam().order);
    EXPECT_EQ(image.strings.at("\\Curve lengths"), "3 2");
}

INSTANTIATE_TEST_SUITE_P(
    Ends, OrderFromContact,
    testing::Values(turned_case{"Unknown", {unknown, unknown}, {1, 2, 3, 9, 8, 8}, VLAxis(10, 2, "\u00B5m"), ""},
                    turned_case{"Stored",
                                {first, first},
                                {1, 2, 3, 9, 8, 8},
                                VLAxis(10, 2, "\u00B5m"),
                                "Approach: contact first; Retract: contact first"},
                    // Positions stay with their samples: 3 lies at 14 µm.
                    turned_case{"Both",
                                {last, last},
                                {3, 2, 1, 8, 9, 9},
                                VLAxis(14, -2, "\u00B5m"),
                                "Approach: free end first; Retract: free end first"},
                    turned_case{"ForAllAtOnce",
                                {last},
                                {3, 2, 1, 8, 9, 9},
                                VLAxis(14, -2, "\u00B5m"),
                                "Approach: free end first; Retract: free end first"},
                    // No axis could keep the positions of both.
                    turned_case{"InTime",
                                {last, first},
                                {3, 2, 1, 9, 8, 8},
                                VLAxis(0, 2, "\u00B5m"),
                                "Approach: free end first; Retract: contact first"},
                    turned_case{"OtherCount", {last, last, last}, {1, 2, 3, 9, 8, 8}, VLAxis(10, 2, "\u00B5m"), ""}),
    [](const auto& each) { return each.param.name; });

TEST(ForceOrder, TellsEachOrderOfSeveralCurves)
{
    recorded_image image = curves({{"Approach", {1, 2}}, {"Approach 2", {1, 2}}}, VLAxis(0, 1, "s"));
    order_from_contact(image, std::vector{contact_end::unclear, last});
    EXPECT_EQ(image.strings.at(orderKey), "Approach: some free end first, some not clear, as recorded");
}

TEST(ForceOrder, CurvesThatWereNotMeasuredNeitherTurnNorCount)
{
    recorded_image image = curves({{"Approach", {4, 5, 6}}, {"Retract", {}}}, VLAxis(0, 1, "s"));
    order_from_contact(image, std::vector{last, first});
    EXPECT_EQ(physical(image.stream), (std::vector<double>{6, 5, 4, 4, 4, 4})); // the rest is the lowest value
    EXPECT_EQ(image.stream.get_dimension(0).get_axis(0), VLAxis(2, -1, "s"));
    EXPECT_EQ(image.strings.at(orderKey), "Approach: free end first");
}

TEST(ForceOrder, WhatWasNotMeasuredTurnsWithItsCurve)
{
    const struct {
        std::vector<contact_end> ends;
        const char* voids; ///< the first of either curve before
    } cases[] = {{{first, first}, "of 6: 0-0 3-3"}, {{last, first}, "of 6: 2-2 3-3"}, {{first, last}, "of 6: 0-0 4-4"}};
    for (const auto& each : cases) {
        recorded_image image = curves({{"Approach", {NAN, 5, 6}}, {"Retract", {NAN, 8}}});
        order_from_contact(image, each.ends);
        EXPECT_EQ(image.strings.at("\\Void samples"), each.voids);
    }
}

TEST(ForceOrder, AContactIsFoundFromNamesAndPositions)
{
    EXPECT_EQ(contact_in_time(way_of_part("Approach")), last);
    EXPECT_EQ(contact_in_time(way_of_part("Curve 3, Retract 2")), first);
    for (const char* name : {"Pause", "Dwell", "Modulation", "Segment", ""})
        EXPECT_EQ(contact_in_time(way_of_part(name)), unknown) << name;
    EXPECT_EQ(contact_by_position(5.0, -1.0, 4.0), first);
    EXPECT_EQ(contact_by_position(5.0, -1.0, -3.0), last);
    EXPECT_EQ(contact_by_position(1.0, 3.0, 2.0), unknown);
    EXPECT_EQ(contact_by_position(NAN, 3.0, 2.0), unknown);
}

/// Free at 0 with a ripple, then in contact over the last `share` of 200 samples, up to 100.
std::vector<double> approach(double ripple, double height = 100.0, double share = 0.3)
{
    std::vector<double> forces;
    for (int i = 0; i < 200; ++i) {
        const double depth = i / 199.0 - (1.0 - share);
        forces.push_back((i % 2 ? ripple : -ripple) + std::max(0.0, depth) * height / share);
    }
    return forces;
}

/// A retract from a contact of 10 down to an adhesion of -90 over 20 of 200 samples, then free.
std::vector<double> sticky()
{
    std::vector<double> forces;
    for (int i = 0; i < 200; ++i) forces.push_back((i % 2 ? 0.1 : -0.1) + (i <= 20 ? 10.0 - 5.0 * i : 0.0));
    return forces;
}

std::vector<double> reversed(std::vector<double> values)
{
    std::reverse(values.begin(), values.end());
    return values;
}

TEST(ForceOrder, ForcesTellTheContactOnlyWhenTheyAreClear)
{
    EXPECT_EQ(contact_by_force(approach(1.0)), last);
    EXPECT_EQ(contact_by_force(reversed(approach(1.0))), first);
    EXPECT_EQ(contact_by_force(approach(10.0)), unknown); // steps of 20, the tenth is about 80 higher
    EXPECT_EQ(contact_by_force(std::vector<double>(200, 3.0)), unknown);
    EXPECT_EQ(contact_by_force(std::vector<double>{0, 0, 9}), unknown); // too few
    EXPECT_EQ(contact_by_force(sticky()), first);
    EXPECT_EQ(contact_by_force(reversed(sticky())), last);
    EXPECT_EQ(contact_by_force(approach(1.0, -100.0)), unclear);  // an inverted deflection, or it ends in adhesion
    EXPECT_EQ(contact_by_force(approach(0.0, 100.0, 1.0)), last); // never free: the higher end
}

struct unordered_case {
    const char* name;
    std::vector<std::pair<const char*, std::vector<double>>> columns; ///< labels, and forces
    VLAxis x;
    std::vector<bool> turned;
    const char *units = "nN", *order = ""; ///< of the last column
};

class OrderByForces : public testing::TestWithParam<unordered_case> {};

TEST_P(OrderByForces, TakesColumnsOverOneAxisTogether)
{
    const unordered_case& now = GetParam();
    recording content;
    for (const auto& [label, values] : now.columns)
        content.items.emplace_back(curves({{"", values}}, now.x, now.units, label));
    order_by_forces(content);
    for (std::size_t i = 0; i < now.columns.size(); ++i) {
        const auto& values = now.columns[i].second;
        const std::vector<double> found = physical(item(content, i).stream),
                                  meant = now.turned[i] ? reversed(values) : values;
        for (const std::size_t at : {0u, 3u, 199u}) EXPECT_NEAR(found[at], meant[at], 0.01) << i << ' ' << at;
    }
    const auto& texts = item(content, now.columns.size() - 1).strings;
    EXPECT_EQ(texts.contains(orderKey) ? texts.at(orderKey) : "", now.order);
    EXPECT_EQ(content.warnings.size(), std::string(now.order).starts_with("not clear") ? 1u : 0u);
}

const VLAxis nm(0, 1, "nm"), seconds(0, 1, "s");

INSTANTIATE_TEST_SUITE_P(
    Columns, OrderByForces,
    testing::Values(
        unordered_case{"StickyRetract",
                       {{"Force approach", reversed(approach(0.1, 10.0))}, {"Force retract", sticky()}},
                       nm,
                       {false, false},
                       "nN",
                       "contact first, as the forces tell"},
        // What is clear in one curve holds for its partner, which touches hardly.
        unordered_case{"Partner",
                       {{"Force approach", approach(0.1, 10.0)}, {"Force retract", approach(0.1, -10.0, 0.05)}},
                       nm,
                       {true, true},
                       "nN",
                       "free end first, as the forces tell"},
        unordered_case{"EachInTime",
                       {{"Force approach", approach(0.1)}, {"Force retract", sticky()}},
                       nm,
                       {true, false},
                       "nN",
                       "contact first, as forces and names tell"},
        unordered_case{"Contradiction",
                       {{"Force retract", approach(0.1)}, {"Force approach", sticky()}},
                       nm,
                       {false, false},
                       "nN",
                       "not clear, as recorded"},
        unordered_case{"Inverted", {{"Deflection", approach(0.1, -50.0)}}, nm, {false}, "V", "not clear, as recorded"},
        unordered_case{
            "Clock", {{"Force", approach(0.1)}}, seconds, {true}, "nN", "free end first, as forces and names tell"},
        unordered_case{"NamesOnAClock",
                       {{"Force approach", std::vector<double>(200, 1.0)}},
                       seconds,
                       {true},
                       "nN",
                       "free end first, as forces and names tell"},
        unordered_case{
            "NamesAgainstForces", {{"Retract force", approach(0.1)}}, seconds, {false}, "nN", "not clear, as recorded"},
        unordered_case{
            "NoUnits", {{"Force", approach(0.1)}}, VLAxis(0, 1, ""), {true}, "", "free end first, as the forces tell"}),
    [](const auto& each) { return each.param.name; });

TEST(ForceOrder, AVolumeIsOrderedByMostOfItsCurves)
{
    const extent shape[] = {{200, VLAxis(0, 1, "nm")}, {2, VLAxis(0, 1, "nm")}, {2, VLAxis(0, 1, "nm")}};
    recorded_image volume = make_samples("Force", "Force", shape, 1, {0.01, 0.0, "nN", "hand"});
    const std::vector<double> curve = approach(1.0);
    for (std::size_t i = 0; i < 800; ++i) // the last one tells nothing
        elements_of<std::int16_t>(volume)[i] = static_cast<std::int16_t>(i < 600 ? 100.0 * curve[i % 200] : 5.0);
    recording content;
    content.items.emplace_back(std::move(volume));
    order_by_forces(content);
    EXPECT_GT(physical(item(content, 0).stream)[400], 90.0);
    EXPECT_EQ(item(content, 0).stream.get_dimension(0).get_axis(0), VLAxis(199, -1, "nm"));
}

recording with_forces(recorded_image image)
{
    recording content;
    content.items.emplace_back(std::move(image));
    return content;
}

TEST(ForceOrder, WhatWasNotMeasuredTellsNothing)
{
    std::vector<double> falling; // contact first; a fifth of it is missing, which a line would make look at rest
    for (int i = 0; i < 100; ++i) falling.push_back(i < 20 ? NAN : std::max(60.0 - i, 0.0) + 0.01 * (i % 3));
    recording content;
    content.items.emplace_back(curves({{"", falling}}, VLAxis(0, 1, "nm")));
    order_by_forces(content);
    EXPECT_EQ(std::get<recorded_image>(content.items[0]).strings[orderKey], "contact first, as the forces tell");
}

TEST(ForceOrder, WhatNoFileTellsIsTakenFromTheForces)
{
    const std::vector<named_curve> parts{{"Forward", approach(1.0)}, {"Reverse", approach(1.0, 80.0)}};
    recording told = with_forces(curves(parts, VLAxis(0, 1, "nm")));
    order_by_forces(told);
    const recorded_image& image = item(told, 0);
    EXPECT_GT(physical(image.stream)[0], 90.0);
    EXPECT_GT(physical(image.stream)[200], 70.0);
    EXPECT_EQ(image.stream.get_dimension(0).get_axis(0), VLAxis(199, -1, "nm"));
    EXPECT_EQ(image.strings.at(orderKey), "free end first, as the forces tell");

    const std::vector<double> before = physical(curves(parts).stream);
    recorded_image ordered = curves(parts, VLAxis(0, 1, "nm"));
    ordered.strings[orderKey] = "contact first";
    recorded_image others[] = {curves(parts, VLAxis(0, 1, "V")),                    // no ramp of the probe
                               curves(parts, VLAxis(0, 1, "nm"), "V", "Amplitude"), // no force
                               curves(parts, VLAxis(0, 1, "nm"), "N", "Friction force"), std::move(ordered)};
    for (recorded_image& each : others) {
        recording content = with_forces(std::move(each));
        order_by_forces(content);
        EXPECT_EQ(physical(item(content, 0).stream), before) << item(content, 0).stream.get_description();
    }
}

TEST(ForceOrder, WhatIsMeasuredAgainstTheSamePositionsTurnsWithThem)
{
    std::vector<double> up, other;
    for (int i = 0; i < 200; ++i) up.push_back(i + 0.1 * (i % 3)), other.push_back(i);
    recording content = with_forces(curves({{"", up}}, {}, "nm", "Z"));
    content.items.emplace_back(curves({{"", approach(1.0)}}, {}, "V", "DFL"));
    content.items.emplace_back(curves({{"", other}}, {}, "V", "Phase"));
    content.items.emplace_back(curves({{"", up}}, {}, "nm", "Raw")); // measured beside the positions
    for (const std::size_t k : {1u, 2u}) std::get<recorded_image>(content.items[k]).stream.set_parameter_stream("Z");
    order_by_forces(content);
    EXPECT_NEAR(physical(item(content, 0).stream)[0], 199.1, 0.01);
    EXPECT_GT(physical(item(content, 1).stream)[0], 90.0);
    EXPECT_EQ(physical(item(content, 2).stream)[0], 199.0);
    EXPECT_NEAR(physical(item(content, 3).stream)[0], 199.1, 0.01);
    EXPECT_EQ(item(content, 1).stream.get_dimension(0).get_axis(0), VLAxis()); // counts samples as before
}

TEST(ForceOrder, VerticalDeflectionsAreKnownByTheirNames)
{
    for (const char* name : {"vDeflection", "Deflection Error", "Defl", "DFL", "Deflection"})
        EXPECT_TRUE(is_deflection_name(name)) << name;
    for (const char* name : {"hDeflection", "Lateral Deflection", "Height", "Friction force", ""})
        EXPECT_FALSE(is_deflection_name(name)) << name;
}

} // namespace
