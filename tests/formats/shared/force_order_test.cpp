#include "formats/shared/force/force_order.h"

#include "formats/recorded_values.h"
#include "formats/shared/force/curve_group.h"
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

// An approach of 1 2 3 and a retract of 9 8, on an axis of 10 12 14 µm. Positions stay with their samples.
TEST(ForceOrder, TurnsWhatEndsInContact)
{
    const std::vector<double> stored{1, 2, 3, 9, 8, 8}, turned{3, 2, 1, 8, 9, 9};
    const std::string freeFirst = "Approach: free end first; Retract: free end first";
    const VLAxis axis(10, 2, "\u00B5m"), backwards(14, -2, "\u00B5m"), fromContact(0, 2, "\u00B5m");
    const struct {
        std::vector<contact_end> ends;
        std::vector<double> values;
        VLAxis axis;
        std::string order;
    } rows[] = {
        {{unknown, unknown}, stored, axis, ""},
        {{first, first}, stored, axis, "Approach: contact first; Retract: contact first"},
        {{last, last}, turned, backwards, freeFirst},
        {{last}, turned, backwards, freeFirst}, // for all at once
        // No axis could keep the positions of both.
        {{last, first}, {3, 2, 1, 9, 8, 8}, fromContact, "Approach: free end first; Retract: contact first"},
        {{last, last, last}, stored, axis, ""}, // another count
    };
    for (const auto& row : rows) {
        recorded_image image = curves({{"Approach", {1, 2, 3}}, {"Retract", {9, 8}}}, axis);
        order_from_contact(image, row.ends);
        EXPECT_EQ(physical(image.stream), row.values) << row.order;
        EXPECT_EQ(image.stream.get_dimension(0).get_axis(0), row.axis) << row.order;
        EXPECT_EQ(text_of(image, orderKey), row.order);
        EXPECT_EQ(text_of(image, "\\Curve lengths"), "3 2");
    }
}

TEST(ForceOrder, CurvesOfOneWayOrWithoutSamplesAreToldApart)
{
    recorded_image several = curves({{"Approach", {1, 2}}, {"Approach 2", {1, 2}}}, VLAxis(0, 1, "s"));
    order_from_contact(several, std::vector{contact_end::unclear, last});
    EXPECT_EQ(text_of(several, orderKey), "Approach: some free end first, some not clear, as recorded");

    recorded_image image = curves({{"Approach", {4, 5, 6}}, {"Retract", {}}}, VLAxis(0, 1, "s"));
    order_from_contact(image, std::vector{last, first}); // what was not measured neither turns nor counts
    EXPECT_EQ(physical(image.stream), (std::vector<double>{6, 5, 4, 4, 4, 4})); // the rest is the lowest value
    EXPECT_EQ(image.stream.get_dimension(0).get_axis(0), VLAxis(2, -1, "s"));
    EXPECT_EQ(text_of(image, orderKey), "Approach: free end first");
}

TEST(ForceOrder, WhatWasNotMeasuredTurnsWithItsCurve)
{
    const std::pair<std::vector<contact_end>, const char*> cases[] = {// the first of either curve before
                                                                      {{first, first}, "of 6: 0-0 3-3"},
                                                                      {{last, first}, "of 6: 2-2 3-3"},
                                                                      {{first, last}, "of 6: 0-0 4-4"}};
    for (const auto& [ends, voids] : cases) {
        recorded_image image = curves({{"Approach", {NAN, 5, 6}}, {"Retract", {NAN, 8}}});
        order_from_contact(image, ends);
        EXPECT_EQ(text_of(image, "\\Void samples"), voids);
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

recording of_images(std::vector<recorded_image> images)
{
    recording content;
    for (recorded_image& each : images) content.items.emplace_back(std::move(each));
    return content;
}

TEST(ForceOrder, ColumnsOverOneAxisAreTakenTogether)
{
    const VLAxis nm(0, 1, "nm"), seconds(0, 1, "s");
    const std::string contactFirst = "contact first, as the forces tell",
                      freeFirst = "free end first, as the forces tell";
    const std::string unclearOrder = "not clear, as recorded", named = ", as forces and names tell";
    const struct {
        std::vector<std::pair<const char*, std::vector<double>>> columns; ///< labels, and forces
        std::vector<bool> turned;
        std::string order; ///< of the last column
        VLAxis x = {0, 1, "nm"};
        const char* units = "nN";
    } rows[] = {
        {{{"Force approach", reversed(approach(0.1, 10.0))}, {"Force retract", sticky()}},
         {false, false},
         contactFirst},
        // What is clear in one curve holds for its partner, which touches hardly.
        {{{"Force approach", approach(0.1, 10.0)}, {"Force retract", approach(0.1, -10.0, 0.05)}},
         {true, true},
         freeFirst},
        {{{"Force approach", approach(0.1)}, {"Force retract", sticky()}},
         {true, false},
         "contact first" + named}, // in time
        {{{"Force retract", approach(0.1)}, {"Force approach", sticky()}}, {false, false}, unclearOrder},
        {{{"Deflection", approach(0.1, -50.0)}}, {false}, unclearOrder, nm, "V"}, // inverted
        {{{"Force", approach(0.1)}}, {true}, "free end first" + named, seconds},
        {{{"Force approach", std::vector<double>(200, 1.0)}}, {true}, "free end first" + named, seconds},
        {{{"Retract force", approach(0.1)}}, {false}, unclearOrder, seconds},
        {{{"Force", approach(0.1)}}, {true}, freeFirst, {0, 1, ""}, ""},
    };
    for (const auto& row : rows) {
        std::vector<recorded_image> images;
        for (const auto& [label, values] : row.columns)
            images.push_back(curves({{"", values}}, row.x, row.units, label));
        recording content = of_images(std::move(images));
        order_by_forces(content);
        SCOPED_TRACE(row.columns[0].first + row.order);
        for (std::size_t i = 0; i < row.columns.size(); ++i) {
            const std::vector<double>& values = row.columns[i].second;
            const auto found = physical(item(content, i).stream), meant = row.turned[i] ? reversed(values) : values;
            for (const std::size_t at : {0u, 3u, 199u}) EXPECT_NEAR(found[at], meant[at], 0.01) << i << ' ' << at;
        }
        EXPECT_EQ(text_of(item(content, row.columns.size() - 1), orderKey), row.order);
        EXPECT_EQ(content.warnings.size(), row.order == unclearOrder ? 1u : 0u);
    }
}

TEST(ForceOrder, AVolumeIsOrderedByMostOfItsCurves)
{
    const extent shape[] = {{200, VLAxis(0, 1, "nm")}, {2, VLAxis(0, 1, "nm")}, {2, VLAxis(0, 1, "nm")}};
    recorded_image volume = make_samples("Force", "Force", shape, 1, {0.01, 0.0, "nN", "hand"});
    const std::vector<double> curve = approach(1.0);
    for (std::size_t i = 0; i < 800; ++i) // the last one tells nothing
        elements_of<std::int16_t>(volume)[i] = static_cast<std::int16_t>(i < 600 ? 100.0 * curve[i % 200] : 5.0);
    recording content = of_images({volume});
    order_by_forces(content);
    EXPECT_GT(physical(item(content, 0).stream)[400], 90.0);
    EXPECT_EQ(item(content, 0).stream.get_dimension(0).get_axis(0), VLAxis(199, -1, "nm"));
}

TEST(ForceOrder, WhatNoFileTellsIsTakenFromTheForces)
{
    const VLAxis nm(0, 1, "nm");
    const std::vector<named_curve> parts{{"Forward", approach(1.0)}, {"Reverse", approach(1.0, 80.0)}};
    recording told = of_images({curves(parts, nm)});
    order_by_forces(told);
    EXPECT_GT(physical(item(told, 0).stream)[0], 90.0);
    EXPECT_GT(physical(item(told, 0).stream)[200], 70.0);
    EXPECT_EQ(item(told, 0).stream.get_dimension(0).get_axis(0), VLAxis(199, -1, "nm"));

    recorded_image ordered = curves(parts, nm), elsewhere = curves(parts, VLAxis(0, 1, "V")); // no ramp of the probe
    ordered.strings[orderKey] = "contact first";
    for (const recorded_image& each :
         {elsewhere, curves(parts, nm, "V", "Amplitude"), curves(parts, nm, "N", "Friction force"), ordered}) {
        recording content = of_images({each});
        order_by_forces(content);
        EXPECT_EQ(physical(item(content, 0).stream), physical(curves(parts).stream));
    }

    std::vector<double> falling; // contact first; a fifth of it is missing, which a line would make look at rest
    for (int i = 0; i < 100; ++i) falling.push_back(i < 20 ? NAN : std::max(60.0 - i, 0.0) + 0.01 * (i % 3));
    recording gap = of_images({curves({{"", falling}}, nm)});
    order_by_forces(gap);
    EXPECT_EQ(text_of(item(gap, 0), orderKey), "contact first, as the forces tell");
}

TEST(ForceOrder, WhatIsMeasuredAgainstTheSamePositionsTurnsWithThem)
{
    std::vector<double> up, other;
    for (int i = 0; i < 200; ++i) up.push_back(i + 0.1 * (i % 3)), other.push_back(i);
    recording content = of_images({curves({{"", up}}, {}, "nm", "Z"), curves({{"", approach(1.0)}}, {}, "V", "DFL"),
                                   curves({{"", other}}, {}, "V", "Phase"),
                                   curves({{"", up}}, {}, "nm", "Raw")}); // measured beside the positions
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
