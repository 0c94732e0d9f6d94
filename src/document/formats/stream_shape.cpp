#include "document/formats/stream_shape.h"

#include "document/formats/curve_lengths.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <new>
#include <type_traits>

namespace formats {

namespace {

bool is_finite(double value) noexcept { return std::fabs(value) <= std::numeric_limits<double>::max(); }

VLAxis usable_axis(const VLAxis& axis)
{
    return is_finite(axis.start) && is_finite(axis.scale) && axis.scale != 0.0 ? axis : VLAxis();
}

value_scale usable_scale(value_scale scale)
{
    if (!is_finite(scale.step) || scale.step == 0.0) scale.step = 1.0;
    if (!is_finite(scale.offset)) scale.offset = 0.0;
    return scale;
}

template <class T>
bool is_measured(T sample) noexcept
{
    if constexpr (std::is_floating_point_v<T>)
        return std::fabs(sample) <= std::numeric_limits<T>::max();
    else
        return true;
}

void count_voids(recorded_image& image, std::uint64_t count)
{
    if (count != 0) image.strings["\\Void points"] = std::to_string(count);
}

/// The number of the lowest physical value among those that `isVoid` does not name; 0 when there is none.
template <class T, class Predicate>
T lowest_number(const SPMDataStream& stream, std::span<const T> samples, Predicate isVoid)
{
    const bool isFalling = stream.values.get_axes_number() != 0 && stream.values.get_axis(0).scale < 0.0;
    T lowest{};
    bool any = false;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (isVoid(i)) continue;
        if (!any || (isFalling ? samples[i] > lowest : samples[i] < lowest)) lowest = samples[i];
        any = true;
    }
    return lowest;
}

/// The part of a range that lies in an array of this length.
void_range within(const void_range& range, std::size_t length) noexcept
{
    const std::uint64_t first = std::min<std::uint64_t>(range.first, length);
    return {first, std::min<std::uint64_t>(range.count, length - first)};
}

/// Replaces what was not measured. \return how many
template <class T>
std::uint64_t fill_voids(recorded_image& image, std::span<const void_range> voids)
{
    const std::span<T> samples = elements_of<T>(image);
    std::uint64_t unmeasured = 0;
    if constexpr (std::is_floating_point_v<T>)
        unmeasured = samples.size() - static_cast<std::size_t>(std::count_if(samples.begin(), samples.end(),
                                                                             [](T v) { return is_measured(v); }));
    if (voids.empty() && unmeasured == 0) return 0;
    std::vector<bool> isVoid(samples.size());
    for (const void_range& range : voids) {
        const void_range part = within(range, samples.size());
        const auto first = isVoid.begin() + static_cast<std::ptrdiff_t>(part.first);
        std::fill(first, first + static_cast<std::ptrdiff_t>(part.count), true);
    }
    for (std::size_t i = 0; i < samples.size(); ++i)
        if (!is_measured(samples[i])) isVoid[i] = true;
    const T lowest =
        lowest_number<T>(image.stream, samples, [&](std::size_t i) { return static_cast<bool>(isVoid[i]); });
    for (std::size_t i = 0; i < samples.size(); ++i)
        if (isVoid[i]) samples[i] = lowest;
    return static_cast<std::uint64_t>(std::count(isVoid.begin(), isVoid.end(), true));
}

std::uint64_t fill_voids_of_type(recorded_image& image, std::span<const void_range> voids)
{
    switch (image.stream.array_type()) {
    case SPM_ARRAY_INT8:
        return fill_voids<std::int8_t>(image, voids);
    case SPM_ARRAY_UINT8:
        return fill_voids<std::uint8_t>(image, voids);
    case SPM_ARRAY_INT16:
        return fill_voids<std::int16_t>(image, voids);
    case SPM_ARRAY_UINT16:
        return fill_voids<std::uint16_t>(image, voids);
    case SPM_ARRAY_INT32:
        return fill_voids<std::int32_t>(image, voids);
    case SPM_ARRAY_UINT32:
        return fill_voids<std::uint32_t>(image, voids);
    case SPM_ARRAY_INT64:
        return fill_voids<std::int64_t>(image, voids);
    case SPM_ARRAY_UINT64:
        return fill_voids<std::uint64_t>(image, voids);
    case SPM_ARRAY_FLOAT32:
        return fill_voids<float>(image, voids);
    case SPM_ARRAY_FLOAT64:
        return fill_voids<double>(image, voids);
    default:
        return 0;
    }
}

/// Unsigned 16-bit numbers keep every bit: they move down by 32768 and the axis up.
void shift_to_signed(SPMDataStream& stream)
{
    auto* samples = static_cast<std::uint16_t*>(stream.array_data());
    for (unsigned i = 0; i < stream.array_length(); ++i) samples[i] = static_cast<std::uint16_t>(samples[i] ^ 0x8000u);
    stream.set_array_type(SPM_ARRAY_INT16);
    for (unsigned i = 0; i < stream.values.get_axes_number(); ++i) {
        VLAxis axis = stream.values.get_axis(i);
        axis.start += 32768.0 * axis.scale;
        stream.values.set_axis(i, axis);
    }
}

bool exceeds_signed(const SPMDataStream& stream) noexcept
{
    const std::span samples(static_cast<const std::uint16_t*>(stream.array_data()), stream.array_length());
    return std::any_of(samples.begin(), samples.end(), [](std::uint16_t sample) { return sample > 32767; });
}

} // namespace

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
        dimension.set_axis(0, usable_axis(each.axis));
        image.stream.set_dimension(image.stream.get_dimensions_number(), dimension);
    }
    const value_scale usable = usable_scale(scale);
    image.stream.values.set_axis(0, VLAxis(usable.offset, usable.step, usable.units.c_str()));
    image.strings["\\Z scale"] = describe_scale(usable);
    return image;
}

void settle_samples(recorded_image& image, std::span<const void_range> voids)
{
    count_voids(image, fill_voids_of_type(image, voids));
    if (image.stream.array_type() == SPM_ARRAY_UINT16 && exceeds_signed(image.stream))
        return shift_to_signed(image.stream);
    image.stream.convert_stream(SPM_ARRAY_INT16);
}

void settle_markers(recorded_image& image, std::span<const std::int16_t> markers)
{
    const auto samples = elements_of<std::int16_t>(image);
    const auto isVoid = [&](std::size_t i) {
        return std::find(markers.begin(), markers.end(), samples[i]) != markers.end();
    };
    const std::int16_t lowest = lowest_number<std::int16_t>(image.stream, samples, isVoid);
    std::uint64_t count = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (!isVoid(i)) continue;
        samples[i] = lowest;
        ++count;
    }
    count_voids(image, count);
}

void add_calibration(recorded_image& image, const value_scale& first, const value_scale& other)
{
    const value_scale from = usable_scale(first), to = usable_scale(other);
    const VLAxis shown = image.stream.values.get_axis(0);
    const double slope = to.step / from.step;
    const VLAxis added(to.offset + (shown.start - from.offset) * slope, shown.scale * slope, to.units.c_str());
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

} // namespace formats
