#include "sample_objects.h"

#include "base/text.h"
#include "formats/pictures/picture_fixture.h"
#include "recorded_values.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>
#include <sstream>

namespace test_support {

namespace {

using formats::recorded_image;
using formats::recording;

bool is_fitted(const sample_set& set, const manifest_row& row) { return row.text("file").ends_with(set.fitted); }

/// The row in base units, whatever units the list states its numbers in, and without what its reader gets wrong.
manifest_row corrected(manifest_row row)
{
    const auto rebase = [&](const std::string& unitColumn, std::initializer_list<const char*> columns) {
        std::string& units = row.cells[unitColumn];
        if (units == "um") units = "\u00B5m";
        for (const char* column : columns)
            if (const auto number = row.number(column))
                row.cells[column] = base::shortest(*number * base_unit_factor(units));
        units = base_unit(units);
    };
    rebase("xy_unit", {"x_size", "y_size"});
    rebase("z_unit", {"z_min", "z_max", "z_mean", "top_left", "top_right", "bottom_left", "bottom_right"});
    // The size of a profile is scale * n in the list, one step more than from its first to its last point.
    if (row.text("file").ends_with(".pro"))
        row.cells["x_size"] = base::shortest(*row.number("x_size") * (*row.number("nx") - 1) / *row.number("nx"));
    if (row.text("file") != "test_mdt.mdt" || row.text("kind") != "image") return row;
    // The size of an array is scale * (n - 1) in the list, one pixel less than it covers.
    for (const auto& [size, count] : {std::pair("x_size", "nx"), std::pair("y_size", "ny")})
        row.cells[size] = base::shortest(*row.number(size) * *row.number(count) / (*row.number(count) - 1));
    return row;
}

/// Whether an image has the channel and direction of a title: "Height (retrace)", "Z-Axis forward", "Z (Backward)".
bool has_name(const image_plane& plane, std::string name)
{
    bool isReverse = false;
    for (const std::string ending : {" (retrace)", " backward", " (Backward)", " forward", " (Forward)"}) {
        if (!name.ends_with(ending)) continue;
        name.resize(name.size() - ending.size());
        isReverse = base::lower_ascii(ending).find("forward") == std::string::npos;
    }
    const auto names = plane.image->stream.subimage_names();
    const std::string direction = plane.subimage < names.size() ? names[plane.subimage].text : "";
    return name == plane.image->stream.get_description() && (direction == "Reverse") == isReverse;
}

/// By name the one whose corner is nearest, as two channels of a file may share a name.
const image_plane* find_plane(const sample_set& set, const manifest_row& row, std::size_t place,
                              const std::vector<image_plane>& planes)
{
    if (!set.byName) return place < planes.size() ? &planes[place] : nullptr;
    const auto distance = [&](const image_plane& plane) {
        return std::fabs(plane.at(0, 0) - *row.number("bottom_left"));
    };
    const image_plane* nearest = nullptr;
    for (const image_plane& plane : planes)
        if (has_name(plane, row.text("name")) && (!nearest || distance(plane) < distance(*nearest))) nearest = &plane;
    return nearest;
}

/// Titles of the list hold the label. Heights without one are "Topography" there; NanoScope's stand in a field.
void expect_label(const manifest_row& row, const recorded_image& image)
{
    const std::string name = row.text("name"), label = image.stream.get_description();
    const auto field = image.strings.find("@2:Image Data");
    const bool hasField = field != image.strings.end(), isNamed = !name.empty() && name != "Topography";
    if (hasField) { EXPECT_THAT(field->second, testing::HasSubstr(name)); }
    if (!hasField && isNamed) { EXPECT_THAT(name, testing::HasSubstr(label)); }
}

void expect_image(const sample_set& set, manifest_row row, std::size_t place, const recording& content)
{
    const auto planes = planes_of(content);
    const image_plane* plane = find_plane(set, row, place, planes);
    ASSERT_TRUE(plane);
    expect_label(row, *plane->image);
    // The list's reader fills points that were not measured from their neighbours.
    if (plane->image->strings.contains("\\Void points")) row.cells.erase("z_mean");
    expect_plane(row, *plane, is_fitted(set, row));
}

std::vector<const recorded_image*> images_of(const recording& content)
{
    std::vector<const recorded_image*> images;
    for (const auto& item : content.items)
        if (const auto* image = std::get_if<recorded_image>(&item)) images.push_back(image);
    return images;
}

const recorded_image* parameter_of(const recorded_image& image, const recording& content)
{
    const char* name = image.stream.get_parameter_stream();
    for (const recorded_image* each : images_of(content))
        if (name && std::string(name) == each->stream.get_name()) return each;
    return nullptr;
}

/// Samples that a row of curves tells of.
struct curve_samples {
    const recorded_image* image = nullptr;
    std::size_t first = 0, count = 0;
    bool isWhole = false; ///< all of the image's parts
};

std::size_t stored_samples(const recorded_image& image)
{
    const auto lengths = image.strings.find("\\Curve lengths");
    if (lengths == image.strings.end()) return image.stream.array_length();
    std::istringstream text(lengths->second);
    return std::accumulate(std::istream_iterator<std::size_t>(text), {}, std::size_t{0});
}

/// "curve 1 segment 0" of a label.
curve_samples find_segment(const manifest_row& row, const recording& content, unsigned number, unsigned segment)
{
    for (const recorded_image* image : images_of(content)) {
        if (row.text("name") != image->stream.get_description()) continue;
        const SPMDataStream& stream = image->stream;
        const std::size_t columns = stream.get_dimensions_number() == 3 ? stream.get_dimension(1).length : 1;
        EXPECT_LT(number, columns);
        return {image, (segment * columns + number) * stream.get_dimension(0).length,
                static_cast<std::size_t>(*row.number("nx"))};
    }
    return {};
}

/// The number counts images, or the parts of the first one.
curve_samples find_curve(const manifest_row& row, const recording& content)
{
    unsigned number = 0, segment = 0;
    if (std::sscanf(row.text("object").c_str(), "curve %u segment %u", &number, &segment) == 2)
        return find_segment(row, content, number, segment);
    auto curves = images_of(content);
    std::erase_if(curves, [](const recorded_image* image) { return image->stream.get_dimensions_number() != 1; });
    if (curves.size() > 1 && parameter_of(*curves[1], content) == curves[0]) curves.erase(curves.begin()); // x
    const auto index = static_cast<std::size_t>(*row.number("object")),
               points = static_cast<std::size_t>(*row.number("nx"));
    if (index < curves.size() && stored_samples(*curves[index]) == points * static_cast<std::size_t>(*row.number("ny")))
        return {curves[index], 0, curves[index]->stream.array_length(), true};
    if (curves.empty() || index >= curves[0]->stream.subimage_names().size()) return {};
    EXPECT_TRUE(row.text("name").ends_with(curves[0]->stream.subimage_names()[index].text));
    return {curves[0], index * points, points};
}

/// The value axis in these units, else the first.
VLAxis axis_in(const SPMDataStream& stream, const std::string& units)
{
    for (unsigned i = 0; i < stream.values.get_axes_number(); ++i)
        if (base_unit(stream.values.get_axis(i).get_units()) == units) return stream.values.get_axis(i);
    return stream.values.get_axis(0);
}

/// Numbers in base units, without what parts are padded with when the image is taken whole.
std::vector<double> numbers_of(const curve_samples& curve, const VLAxis& axis)
{
    const auto* raw = static_cast<const std::int16_t*>(curve.image->stream.array_data()) + curve.first;
    std::vector<double> numbers(curve.count);
    std::transform(raw, raw + curve.count, numbers.begin(),
                   [&](std::int16_t sample) { return axis.at(sample) * base_unit_factor(axis.get_units()); });
    const auto lengths = curve.image->strings.find("\\Curve lengths");
    if (!curve.isWhole || lengths == curve.image->strings.end()) return numbers;
    std::vector<double> stored;
    std::istringstream text(lengths->second);
    auto part = numbers.begin();
    for (std::ptrdiff_t length = 0; text >> length; part += curve.image->stream.get_dimension(0).length)
        stored.insert(stored.end(), part, part + length);
    return stored;
}

void expect_values(const sample_set& set, const manifest_row& row, const curve_samples& curve)
{
    const VLAxis axis = axis_in(curve.image->stream, row.text("z_unit"));
    if (!set.isText) { EXPECT_EQ(base_unit(axis.get_units()), row.text("z_unit")); }
    const std::vector<double> numbers = numbers_of(curve, axis);
    const double step = std::fabs(axis.scale) * base_unit_factor(axis.get_units());
    const double tolerance = 1e-5 * (*row.number("z_max") - *row.number("z_min")) +
                             (is_fitted(set, row) ? 0.5001 * step : 0.0) +
                             (set.isText ? 1e-6 * std::fabs(*row.number("z_max")) : 0.0);
    EXPECT_NEAR(std::ranges::min(numbers), *row.number("z_min"), tolerance);
    EXPECT_NEAR(std::ranges::max(numbers), *row.number("z_max"), tolerance);
    if (!row.number("z_mean")) return;
    const double mean = std::accumulate(numbers.begin(), numbers.end(), 0.0) / static_cast<double>(numbers.size());
    EXPECT_NEAR(mean, *row.number("z_mean"), tolerance);
}

void expect_extent(const sample_set& set, const manifest_row& row, const curve_samples& curve, const recording& content)
{
    if (!row.number("x_size")) return;
    const VLAxis& x = curve.image->stream.get_dimension(0).get_axis(0);
    const double size = *row.number("x_size");
    double extent = std::fabs(x.scale) * base_unit_factor(x.get_units()) * (*row.number("nx") - 1);
    const recorded_image* parameter = parameter_of(*curve.image, content);
    const VLAxis measured = parameter ? parameter->stream.values.get_axis(0) : VLAxis();
    if (parameter && (set.isText || base_unit(measured.get_units()) == row.text("xy_unit"))) {
        const auto numbers = numbers_of({parameter, curve.first, curve.count, curve.isWhole}, measured);
        extent = std::ranges::max(numbers) - std::ranges::min(numbers);
    } else if (!set.isText) {
        EXPECT_EQ(base_unit(x.get_units()), row.text("xy_unit"));
    }
    EXPECT_NEAR(extent, size, (set.isText ? 2e-5 : 1e-5) * size);
}

void expect_curve(const sample_set& set, const manifest_row& row, const recording& content)
{
    const curve_samples curve = find_curve(row, content);
    ASSERT_TRUE(curve.image);
    ASSERT_LE(curve.first + curve.count, curve.image->stream.array_length());
    expect_values(set, row, curve);
    expect_extent(set, row, curve, content);
    if (row.text("kind") == "curveset") {
        EXPECT_EQ(curve.image->stream.get_dimension(0).length, row.number("nx"));
        EXPECT_EQ(curve.image->stream.subimage_names().size(), row.number("ny"));
    }
}

/// Maps of curves. A "summary" tells of the whole map that a sample was cut out of.
void expect_map(const sample_set& set, const manifest_row& row, const recording& content)
{
    const auto images = images_of(content);
    const auto map = std::ranges::find_if(
        images, [](const recorded_image* image) { return image->stream.get_dimensions_number() == 3; });
    ASSERT_NE(map, images.end());
    const SPMDataStream& stream = (*map)->stream;
    for (const auto& [size, count, dimension] : {std::tuple("x_size", "nx", 1u), std::tuple("y_size", "ny", 2u)}) {
        const VLAxis& axis = stream.get_dimension(dimension).get_axis(0);
        const double step = *row.number(size) / *row.number(count);
        EXPECT_NEAR(std::fabs(axis.scale) * base_unit_factor(axis.get_units()), step, 1e-5 * step);
        if (row.text("kind") != "summary") { EXPECT_EQ(stream.get_dimension(dimension).length, row.number(count)); }
    }
    if (row.text("kind") != "summary") expect_values(set, row, {*map, 0, stream.array_length(), true});
}

/// Levels that a file may differ by: lossy ones by what decoders are allowed, 5-6-5 by the way of rounding to 8 bits.
double level_tolerance(const manifest_row& row)
{
    return row.text("note").starts_with("lossy") ? 2.0 : row.text("file") == "rgb16-565.bmp" ? 1.0 : 0.0;
}

void expect_corner(const manifest_row& row, const char* column, const colour& actual)
{
    const std::string text = row.text(column);
    if (text.empty()) return;
    std::vector<double> levels;
    for (const std::string_view part : base::split(text, ',')) levels.push_back(base::whole_number(part).value_or(-1));
    if (levels.size() == 1) levels = {levels[0], levels[0], levels[0]};
    ASSERT_EQ(levels.size(), 3u);
    const double tolerance = level_tolerance(row);
    EXPECT_NEAR(actual.red, levels[0], tolerance) << column;
    EXPECT_NEAR(actual.green, levels[1], tolerance) << column;
    EXPECT_NEAR(actual.blue, levels[2], tolerance) << column;
}

void expect_picture(const manifest_row& row, const formats::picture& picture)
{
    const int width = picture.header.biWidth, height = picture.header.biHeight;
    ASSERT_EQ(width, row.number("nx"));
    ASSERT_EQ(height, row.number("ny"));
    // The list's reader loses its way in this code: the picture has no black right side.
    if (row.text("file") == "pal4rle.bmp") return;
    expect_corner(row, "top_left", pixel_of(picture, 0, 0));
    expect_corner(row, "top_right", pixel_of(picture, width - 1, 0));
    expect_corner(row, "bottom_left", pixel_of(picture, 0, height - 1));
    expect_corner(row, "bottom_right", pixel_of(picture, width - 1, height - 1));
    int low = 255, high = 0;
    double sum = 0.0;
    for (const colour& pixel : pixels_of(picture)) {
        low = std::min({low, pixel.red, pixel.green, pixel.blue});
        high = std::max({high, pixel.red, pixel.green, pixel.blue});
        sum += pixel.red + pixel.green + pixel.blue;
    }
    const double tolerance = level_tolerance(row);
    EXPECT_NEAR(low, row.number("z_min").value_or(-1), tolerance);
    EXPECT_NEAR(high, row.number("z_max").value_or(-1), tolerance);
    EXPECT_NEAR(sum / (3.0 * width * height), row.number("z_mean").value_or(-1), std::max(1e-5, tolerance / 2));
}

} // namespace

void expect_object(const sample_set& set, const manifest_row& listed, std::size_t place, const recording& content)
{
    const std::string kind = listed.text("kind");
    const manifest_row row = set.isText ? listed : corrected(listed);
    if (kind == "image") return expect_image(set, row, place, content);
    if (kind == "curve" || kind == "curveset") return expect_curve(set, row, content);
    if (kind != "picture") {
        if (row.number("nx")) expect_map(set, row, content);
        return;
    }
    ASSERT_LT(place, content.items.size());
    const auto planes = planes_of(content);
    if (const auto* picture = std::get_if<formats::picture>(&content.items[place]))
        expect_picture(row, *picture);
    else
        expect_plane(row, planes.at(place), row.text("name") == "mode F");
}

} // namespace test_support
