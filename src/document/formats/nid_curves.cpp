#include "document/formats/nid_curves.h"

#include "base/text.h"
#include "document/formats/stream_shape.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace formats {

namespace {

constexpr std::string_view lineKey = "LineDim";

/// Splits "LineDim12Range" into its number and what follows it.
std::optional<std::pair<unsigned, std::string_view>> split_line_key(std::string_view key)
{
    if (!key.starts_with(lineKey)) return std::nullopt;
    key.remove_prefix(lineKey.size());
    const std::size_t digits = std::min(key.find_first_not_of("0123456789"), key.size());
    const auto number = base::whole_integer(key.substr(0, digits));
    if (!number || *number < 0 || *number > 0xFFFFFF) return std::nullopt;
    return std::pair{static_cast<unsigned>(*number), key.substr(digits)};
}

/// The range of every line; those without keys of their own have that of dimension 0.
std::vector<nid_line> lines_of(const nid_channel& channel, const nid_range& common)
{
    std::vector<nid_line> lines(channel.lines, nid_line{common.start, common.range, channel.points});
    for (const auto& [key, value] : channel.section->entries) {
        const auto split = split_line_key(key);
        const auto number = base::whole_number(value);
        if (!split || split->first >= channel.lines || !number || !std::isfinite(*number)) continue;
        nid_line& line = lines[split->first];
        if (split->second == "Min") line.start = *number;
        if (split->second == "Range") line.range = *number;
        if (split->second == "Points" && *number >= 1.0 && *number < channel.points)
            line.points = static_cast<unsigned>(*number);
    }
    return lines;
}

VLAxis axis_of(double start, double range, unsigned points, const std::string& units)
{
    return points > 1 ? VLAxis(start, range / (points - 1), units.c_str()) : VLAxis(start, 1.0, units.c_str());
}

/// "P12=1e-6;2e-6;0": number 12, first two coordinates.
struct curve_position {
    unsigned number;
    double x, y;
    std::size_t order = 0; ///< in the file
};

std::optional<curve_position> parse_position(const std::string& key, const std::string& value)
{
    const std::size_t digits = key.find_last_not_of("0123456789") + 1;
    const auto number = base::whole_integer(std::string_view(key).substr(digits));
    const auto parts = base::split(value, ';');
    if (!number || *number < 0 || *number > 0xFFFFFF || parts.size() < 2) return std::nullopt;
    const auto x = base::whole_number(parts[0]), y = base::whole_number(parts[1]);
    if (!x || !y) return std::nullopt;
    return curve_position{static_cast<unsigned>(*number), *x, *y};
}

} // namespace

std::optional<point_grid> find_nid_grid(const nid_header& header, unsigned curves)
{
    std::vector<curve_position> positions;
    for (const auto& [name, section] : header.sections) {
        if (!name.starts_with("DataSet\\SpecInfos")) continue;
        for (const auto& [key, value] : section.entries)
            if (auto position = parse_position(key, value)) {
                position->order = positions.size();
                positions.push_back(*position);
            }
    }
    if (positions.size() != curves) return std::nullopt;
    std::sort(positions.begin(), positions.end(), [](const curve_position& a, const curve_position& b) {
        return a.number != b.number ? a.number < b.number : a.order < b.order;
    });
    std::vector<double> x, y;
    for (const curve_position& position : positions) {
        x.push_back(position.x);
        y.push_back(position.y);
    }
    return find_grid(x, y);
}

std::vector<extent> nid_curve_layout::extents() const
{
    if (!grid) return {{points, x}};
    return {{points, x},
            {static_cast<unsigned>(grid->width), VLAxis(grid->x0, grid->stepX, "")},
            {static_cast<unsigned>(grid->height), VLAxis(grid->y0, grid->stepY, "")}};
}

std::size_t nid_curve_layout::place_of(std::size_t curve) const noexcept
{
    return grid ? curve - curve % lines + grid->nodes[curve % lines] : curve;
}

std::vector<std::string> nid_curve_layout::subimage_names(const nid_channel& first) const
{
    if (!first.is_spectroscopy() || first.direction() == scan_direction::unknown) return {};
    const bool startsReverse = first.direction() == scan_direction::reverse;
    std::vector<std::string> names;
    for (unsigned direction = 0; direction < directions; ++direction) {
        const std::string name = startsReverse || direction == 1 ? "Retract" : "Approach";
        if (grid || lines == 1)
            names.push_back(name);
        else
            for (unsigned line = 0; line < lines; ++line) names.push_back(name + " " + std::to_string(line + 1));
    }
    return names;
}

nid_curve_layout lay_out_curves(const nid_header& header, std::span<const nid_channel* const> channels)
{
    const nid_channel& channel = *channels.front();
    const nid_range common = nid_dimension(*channel.section, "Dim0");
    nid_curve_layout layout;
    layout.points = channel.points;
    layout.lines = channel.lines;
    layout.directions = static_cast<unsigned>(channels.size());
    if (channel.lines > 1 && channel.is_spectroscopy()) layout.grid = find_nid_grid(header, channel.lines);
    for (const nid_channel* each : channels) {
        const auto lines = lines_of(*each, common);
        layout.curves.insert(layout.curves.end(), lines.begin(), lines.end());
    }
    const nid_line& first = layout.curves.front();
    layout.hasOwnAxes = std::ranges::any_of(layout.curves, [&](const nid_line& curve) { return curve != first; });
    layout.x = axis_of(first.start, first.range, first.points, common.units);
    return layout;
}

void arrange_curves(const nid_curve_layout& layout, recorded_image& image)
{
    const std::size_t element = image.stream.array_element_size(), curveBytes = layout.points * element;
    const std::span samples(static_cast<std::byte*>(image.stream.array_data()), layout.curves.size() * curveBytes);
    const std::vector<std::byte> stored(samples.begin(), samples.end());
    std::vector<unsigned> lengths(layout.curves.size());
    for (std::size_t i = 0; i < layout.curves.size(); ++i) {
        const std::size_t place = layout.place_of(i), length = layout.curves[i].points;
        const auto curve = samples.subspan(place * curveBytes, curveBytes);
        std::memcpy(curve.data(), stored.data() + i * curveBytes, length * element);
        for (std::size_t point = length; point < layout.points; ++point)
            std::memcpy(curve.data() + point * element, curve.data() + (length - 1) * element, element);
        lengths[place] = layout.curves[i].points;
    }
    note_curve_lengths(image, layout.points, lengths);
}

recorded_image make_positions(const nid_curve_layout& layout, const nid_channel& channel, const std::string& id)
{
    const nid_range common = nid_dimension(*channel.section, "Dim0");
    const value_scale scale{1.0, 0.0, common.units, "LineDim, Dim0"};
    std::string name = channel.section->text("Dim0Name");
    if (name.empty()) name = "Position";
    recorded_image image = make_samples(id, name, layout.extents(), layout.subimages(), scale, SPM_ARRAY_FLOAT64);
    const auto positions = elements_of<double>(image);
    for (std::size_t i = 0; i < layout.curves.size(); ++i) {
        const nid_line& own = layout.curves[i];
        const VLAxis axis = axis_of(own.start, own.range, own.points, common.units);
        const auto curve = positions.subspan(layout.place_of(i) * layout.points, layout.points);
        for (std::size_t point = 0; point < curve.size(); ++point)
            curve[point] = axis.at(static_cast<double>(std::min<std::size_t>(point, own.points - 1)));
    }
    settle_samples(image);
    return image;
}

} // namespace formats
