#include "support/sample_checks.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>

namespace test_support {

namespace {

const VLAxis& axis_of(const image_plane& plane, unsigned dimension)
{
    return plane.image->stream.get_dimension(dimension).get_axis(0);
}

/// Splits an SI prefix off: "µm" is "m" and 1e-6.
std::string split_units(const std::string& units, double& factor)
{
    static const struct {
        const char* text;
        double factor;
    } prefixes[] = {{"f", 1e-15}, {"p", 1e-12}, {"n", 1e-9}, {"\u00B5", 1e-6}, {"m", 1e-3}, {"k", 1e3}, {"M", 1e6}};
    factor = 1.0;
    if (units == "\u00B0") return "deg";
    for (const char* base : {"m", "V", "A", "N", "Hz", "s"}) {
        if (units == base) return units;
        for (const auto& prefix : prefixes) {
            if (units != std::string(prefix.text) + base) continue;
            factor = prefix.factor;
            return base;
        }
    }
    return units;
}

struct plane_summary {
    double minimum, maximum, mean;
};

plane_summary summarise(const image_plane& plane)
{
    plane_summary summary{plane.at(0, 0), plane.at(0, 0), 0.0};
    for (unsigned row = 0; row < plane.height(); ++row)
        for (unsigned column = 0; column < plane.width(); ++column) {
            const double value = plane.at(column, row);
            summary.minimum = std::min(summary.minimum, value);
            summary.maximum = std::max(summary.maximum, value);
            summary.mean += value;
        }
    summary.mean /= static_cast<double>(plane.width()) * plane.height();
    return summary;
}

void expect_near(const manifest_row& row, const char* column, double actual, double tolerance)
{
    const auto expected = row.number(column);
    if (!expected || std::isnan(*expected)) return; // not measured there
    EXPECT_NEAR(actual, *expected, tolerance) << column;
}

void expect_size(const manifest_row& row, const char* column, const VLAxis& axis, unsigned length)
{
    const auto expected = row.number(column);
    if (!expected) return;
    const double size = axis.scale * length * base_unit_factor(axis.get_units());
    EXPECT_NEAR(size, *expected, 1e-5 * std::fabs(*expected)) << column;
    EXPECT_EQ(base_unit(axis.get_units()), row.text("xy_unit")) << column;
}

} // namespace

unsigned image_plane::width() const { return image->stream.get_dimension(0).length; }

unsigned image_plane::height() const { return image->stream.get_dimension(1).length; }

double image_plane::at(unsigned column, unsigned row) const
{
    const auto* samples = static_cast<const std::int16_t*>(image->stream.array_data());
    const std::size_t index = (std::size_t{subimage} * height() + row) * width() + column;
    const VLAxis& axis = image->stream.values.get_axis(0);
    return axis.at(samples[index]) * base_unit_factor(axis.get_units());
}

double image_plane::step() const
{
    const VLAxis& axis = image->stream.values.get_axis(0);
    return std::fabs(axis.scale) * base_unit_factor(axis.get_units());
}

std::vector<image_plane> planes_of(const formats::recording& recording)
{
    std::vector<image_plane> planes;
    for (const auto& item : recording.items) {
        const auto* image = std::get_if<formats::recorded_image>(&item);
        if (!image || image->stream.get_dimensions_number() != 2) continue;
        const image_plane plane{image, 0};
        const unsigned samples = plane.width() * plane.height();
        for (unsigned i = 0; samples != 0 && i < image->stream.array_length() / samples; ++i)
            planes.push_back({image, i});
    }
    return planes;
}

double base_unit_factor(const std::string& units)
{
    double factor = 1.0;
    split_units(units, factor);
    return factor;
}

std::string base_unit(const std::string& units)
{
    double factor = 1.0;
    return split_units(units, factor);
}

void expect_plane(const manifest_row& row, const image_plane& plane, bool isFitted)
{
    ASSERT_EQ(plane.width(), row.number("nx").value_or(0));
    ASSERT_EQ(plane.height(), row.number("ny").value_or(0));
    expect_size(row, "x_size", axis_of(plane, 0), plane.width());
    expect_size(row, "y_size", axis_of(plane, 1), plane.height());
    EXPECT_EQ(base_unit(plane.image->stream.values.get_axis(0).get_units()), row.text("z_unit"));

    const double range = row.number("z_max").value_or(0) - row.number("z_min").value_or(0);
    const double tolerance = 1e-5 * range + (isFitted ? 0.5 * plane.step() : 0.0);
    const plane_summary summary = summarise(plane);
    expect_near(row, "z_min", summary.minimum, tolerance);
    expect_near(row, "z_max", summary.maximum, tolerance);
    expect_near(row, "z_mean", summary.mean, tolerance);
    const unsigned right = plane.width() - 1, top = plane.height() - 1;
    expect_near(row, "top_left", plane.at(0, top), tolerance);
    expect_near(row, "top_right", plane.at(right, top), tolerance);
    expect_near(row, "bottom_left", plane.at(0, 0), tolerance);
    expect_near(row, "bottom_right", plane.at(right, 0), tolerance);
}

} // namespace test_support
