#include "formats/shared/stream_shape.h"

#include "base/text.h"
#include "formats/shared/force/curve_lengths.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <new>

namespace vldv::formats {

namespace {

bool is_finite(double value) noexcept { return std::fabs(value) <= std::numeric_limits<double>::max(); }

} // namespace

VLAxis stated_side(double start, double length, unsigned points, const std::string& units)
{
    return {start, length < 0.0 ? sideBelowZero : length / points, units.c_str()};
}

void note_length(recorded_image& image, const std::string& field, double length, const std::string& text)
{
    if (std::isnan(length) && !text.empty())
        image.notes.push_back(field + " is \"" + text + "\"");
    else if (!is_finite(length) || length <= 0.0)
        image.notes.push_back(field + " is " + base::general(length));
}

void name_axis_fields(recorded_image& image, std::initializer_list<axis_fields> dimensions)
{
    const auto isUsable = [](double number) { return std::fabs(number) < absurdMagnitude; }; // false for NaN
    unsigned dimension = 0;
    for (const auto& [scale, start] : dimensions) {
        const VLAxis axis = image.stream.get_dimension(dimension++).get_axis(0);
        if (axis.scale == 0.0 || axis.scale == sideBelowZero || !isUsable(axis.scale))
            image.notes.push_back(std::string("it is told by ") + scale);
        else if (start && !isUsable(axis.start))
            image.notes.push_back(std::string("it is told by ") + start);
    }
}

recorded_image make_samples(const std::string& id, const std::string& label, std::span<const extent> dimensions,
                            unsigned frames, const value_scale& scale, SPMVarArrayType type)
{
    std::uint64_t length = frames;
    for (const extent& each : dimensions) {
        if (each.length != 0 && length > std::numeric_limits<unsigned>::max() / each.length)
            throw std::bad_array_new_length();
        length *= each.length;
    }
    recorded_image image;
    image.stream.Init(id.c_str(), label.c_str(), SPM_VAR_ARRAY, 0u, element_size(type));
    image.stream.set_array_type(type);
    image.stream.set_array(nullptr, static_cast<unsigned>(length), 0);
    for (const extent& each : dimensions) {
        SPMDataStream::dimension dimension;
        dimension.length = each.length;
        dimension.set_axis(0, each.axis);
        image.stream.set_dimension(image.stream.get_dimensions_number(), dimension);
    }
    image.stream.values.set_axis(0, VLAxis(scale.offset, scale.step, scale.units.c_str()));
    image.strings["\\Z scale"] = describe_scale(scale);
    return image;
}

void add_calibration(recorded_image& image, const value_scale& first, const value_scale& other)
{
    const VLAxis shown = image.stream.values.get_axis(0);
    const double slope = other.step / first.step;
    const VLAxis added(other.offset + (shown.start - first.offset) * slope, shown.scale * slope, other.units.c_str());
    if (!is_finite(added.start) || !is_finite(added.scale) || added.scale == 0.0) return;
    image.stream.values.set_axis(image.stream.values.get_axes_number(), added);
}

void name_subimages(recorded_image& image, std::span<const std::string> names)
{
    std::vector<smart_string> copies;
    for (const std::string& name : names) copies.emplace_back(name.c_str());
    image.stream.set_subimage_names(std::move(copies));
}

void note_curve_lengths(recorded_image& image, unsigned points, std::span<const unsigned> lengths)
{
    const auto isWhole = [&](unsigned length) { return length == points; };
    if (std::all_of(lengths.begin(), lengths.end(), isWhole)) return;
    std::string text;
    for (const unsigned length : lengths) {
        if (!text.empty()) text += ' ';
        text += std::to_string(length);
    }
    image.strings[curveLengthsKey] = text;
}

bool is_image_side(std::uint64_t length) noexcept { return length >= 1 && length <= 65536; }

} // namespace vldv::formats
