#include "formats/scala/scala_data.h"

#include "base/text.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

namespace {

std::string extension_of(const std::string& name)
{
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos ? std::string() : name.substr(dot);
}

/// Sets travel between systems that see capitals differently.
std::unique_ptr<source> find_in_any_case(source& beside, const std::string& name)
{
    if (name.empty()) return nullptr;
    if (auto exact = beside.sibling(name)) return exact;
    for (const std::string& candidate : beside.siblings())
        if (base::equal_ignoring_case(candidate, name)) return beside.sibling(candidate);
    return nullptr;
}

/// The place of a grid's points, which are `pixels` apart, or spread over the whole side when that is 0.
VLAxis grid_axis(double offset, const std::optional<double>& size, double pixels, unsigned samples, unsigned points)
{
    if (!size) return {};
    const double length = pixels == 0.0 ? std::fabs(*size) : pixels * std::fabs(*size) / samples * points;
    return stated_side(offset, length, points, "nm");
}

VLAxis curve_axis(const scala_channel& channel)
{
    const double step = channel.end != channel.start && channel.points > 1
                            ? (channel.end - channel.start) / (channel.points - 1)
                            : channel.increment; // which may lack the sign
    return VLAxis(channel.start, step, scala_parameter_units(channel).c_str());
}

/// Points stand index after index, each a whole map; curves are wanted.
void gather_curves(std::span<const std::int16_t> maps, std::size_t points, std::span<std::int16_t> curves) noexcept
{
    const std::size_t places = curves.size() / points;
    for (std::size_t place = 0; place < places; ++place)
        for (std::size_t point = 0; point < points; ++point)
            curves[place * points + point] = maps[point * places + place];
}

} // namespace

std::unique_ptr<source> find_scala_data(source& beside, const std::string& parameterName, const scala_channel& channel)
{
    if (channel.fileName.empty()) return nullptr;
    if (auto written = find_in_any_case(beside, channel.fileName)) return written;
    const std::string stem = parameterName.substr(0, parameterName.rfind('.'));
    return find_in_any_case(beside, stem + extension_of(channel.fileName));
}

std::vector<extent> scala_extents(const scala_parameters& parameters, const scala_channel& channel)
{
    if (!channel.isSpectroscopy)
        return {
            {parameters.columns,
             grid_axis(parameters.xOffset, parameters.width, 0.0, parameters.columns, parameters.columns)},
            {parameters.rows, grid_axis(parameters.yOffset, parameters.height, 0.0, parameters.rows, parameters.rows)}};
    if (channel.points == 0 || !is_image_side(parameters.gridColumns) || !is_image_side(parameters.gridRows)) return {};
    return {{channel.points, curve_axis(channel)},
            {parameters.gridColumns, grid_axis(parameters.xOffset, parameters.width, parameters.gridStepX,
                                               parameters.columns, parameters.gridColumns)},
            {parameters.gridRows, grid_axis(parameters.yOffset, parameters.height, parameters.gridStepY,
                                            parameters.rows, parameters.gridRows)}};
}

std::string read_scala_samples(source& data, const scala_channel& channel, std::span<std::int16_t> out)
{
    const auto bytes = std::as_writable_bytes(out);
    if (!data.read(0, bytes)) return "cannot be read";
    to_native(bytes, 2, byte_order::big);
    if (!channel.isSpectroscopy) return {};
    const std::vector<std::int16_t> maps(out.begin(), out.end());
    gather_curves(maps, channel.points, out);
    return {};
}

std::string scala_parameter_units(const scala_channel& channel)
{
    return channel.parameter == "V" ? "V" : channel.parameter == "Z" ? "nm" : "";
}

} // namespace vldv::formats
