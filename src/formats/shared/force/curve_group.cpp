#include "formats/shared/force/curve_group.h"

#include "formats/shared/point_grid.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cassert>

namespace vldv::formats {

namespace {

void pad_into(std::span<double> out, const std::vector<double>& values)
{
    std::copy(values.begin(), values.end(), out.begin());
    const double last = values.empty() ? 0.0 : values.back();
    std::fill(out.begin() + static_cast<std::ptrdiff_t>(values.size()), out.end(), last);
}

} // namespace

bool is_modest_padding(std::uint64_t paddedSamples, std::uint64_t samples) noexcept
{
    constexpr std::uint64_t spare = 1u << 20, factor = 16;
    return paddedSamples <= spare || paddedSamples / factor <= samples;
}

bool is_modest_padding(std::span<const named_curve> curves) noexcept
{
    std::uint64_t longest = 0, samples = 0;
    for (const named_curve& curve : curves) {
        longest = std::max<std::uint64_t>(longest, curve.values.size());
        samples += curve.values.size();
    }
    return is_modest_padding(longest * curves.size(), samples);
}

recorded_image make_curve_group(const std::string& id, const std::string& label, const VLAxis& x,
                                const value_scale& scale, std::span<const named_curve> curves)
{
    std::size_t points = 0;
    for (const named_curve& curve : curves) points = std::max(points, curve.values.size());
    assert(points != 0 && "a curve with values");
    const extent length[] = {{static_cast<unsigned>(points), x}};
    recorded_image image =
        make_samples(id, label, length, static_cast<unsigned>(curves.size()), scale, SPM_ARRAY_FLOAT64);
    auto rest = elements_of<double>(image);
    std::vector<unsigned> lengths;
    std::vector<std::string> names;
    std::vector<void_range> voids;
    for (const named_curve& curve : curves) {
        if (curve.values.empty()) voids.push_back({image.stream.array_length() - rest.size(), points});
        pad_into(rest.first(points), curve.values);
        rest = rest.subspan(points);
        lengths.push_back(static_cast<unsigned>(curve.values.size()));
        names.push_back(curve.name);
    }
    settle_samples(image, voids);
    note_curve_lengths(image, static_cast<unsigned>(points), lengths);
    if (std::any_of(names.begin(), names.end(), [](const std::string& name) { return !name.empty(); }))
        name_subimages(image, names);
    return image;
}

std::vector<recorded_image> make_curves_over(const curve_positions& positions, const std::string& label,
                                             const value_scale& scale, std::span<const named_curve> curves,
                                             std::vector<std::string>& ids)
{
    const std::vector<double>& first = positions.curves.front().values;
    const bool isCommon =
        std::ranges::all_of(positions.curves, [&](const named_curve& each) { return each.values == first; });
    const auto steps = isCommon ? find_even_steps(first) : std::nullopt;
    const VLAxis axis = steps ? VLAxis(steps->start, steps->step, positions.scale.units.c_str()) : VLAxis();
    std::vector<recorded_image> images;
    recorded_image image = make_curve_group(unique_id(label, ids), label, axis, scale, curves);
    if (!steps) {
        const std::string id = unique_id(positions.id, ids);
        images.push_back(make_curve_group(id, positions.label, VLAxis(), positions.scale, positions.curves));
        image.stream.set_parameter_stream(id.c_str());
    }
    images.push_back(std::move(image));
    return images;
}

} // namespace vldv::formats
