#include "formats/nid/nid_curves.h"

#include "base/text.h"
#include "formats/shared/sample_numbers.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/stream_shape.h"

#include <algorithm>
#include <cmath>

namespace vldv::formats {

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
base::read_result<std::vector<nid_line>> lines_of(const nid_channel& channel)
{
    const nid_range common = nid_dimension(*channel.section, "Dim0");
    std::vector<nid_line> lines(channel.lines, nid_line{common.start, common.range, channel.points});
    for (const auto& [key, value] : channel.section->entries) {
        const auto split = split_line_key(key);
        if (!split || split->first >= channel.lines) continue;
        nid_line& line = lines[split->first];
        if (split->second == "Points") {
            const auto count = stated_count(value, channel.points);
            if (!count)
                return base::read_error{channel.offset,
                                        "section [" + channel.sectionName + "]: " + key + " is not from 0 to Points"};
            line.points = static_cast<unsigned>(*count);
            continue;
        }
        const auto number = lone_number(value);
        if (!number || !std::isfinite(*number))
            return base::read_error{channel.offset,
                                    "section [" + channel.sectionName + "]: " + key + " is no number or infinite"};
        if (split->second == "Min") line.start = *number;
        if (split->second == "Range") line.range = *number;
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
    const auto x = lone_number(parts[0]), y = lone_number(parts[1]);
    if (!x || !y) return std::nullopt;
    return curve_position{static_cast<unsigned>(*number), *x, *y};
}

/// All positions of a file, by their numbers.
std::vector<curve_position> parse_positions(const nid_header& header)
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
    std::sort(positions.begin(), positions.end(), [](const curve_position& a, const curve_position& b) {
        return a.number != b.number ? a.number < b.number : a.order < b.order;
    });
    return positions;
}

std::vector<std::string> names_of_subimages(const nid_curve_layout& layout, const nid_channel& first)
{
    if (first.direction() == scan_direction::unknown) return {};
    const bool startsReverse = first.direction() == scan_direction::reverse;
    std::vector<std::string> names;
    for (unsigned direction = 0; direction < layout.directions; ++direction) {
        const bool isReverse = startsReverse || direction == 1;
        const std::string name =
            first.isSpectroscopy() ? (isReverse ? "Retract" : "Approach") : (isReverse ? "Reverse" : "Forward");
        if (layout.grid || layout.lines == 1)
            names.push_back(name);
        else
            for (unsigned line = 0; line < layout.lines; ++line) names.push_back(name + " " + std::to_string(line + 1));
    }
    return names;
}

/// Finds the lines behind the last one measured, unless they hold something: a map that starts again counts anew.
void find_unmeasured(const nid_channel& channel, std::span<const std::byte> stored, std::span<nid_line> lines)
{
    const std::size_t lineBytes = std::size_t{channel.points} * channel.sampleBytes;
    for (std::size_t line = channel.measuredLines; line < lines.size(); ++line) {
        const auto samples = stored.subspan(line * lineBytes, std::size_t{lines[line].points} * channel.sampleBytes);
        if (is_uniform(samples, channel.sampleBytes)) lines[line].points = 0;
    }
}

/// Copies a curve to its place, the rest with its last value.
void place_curve(std::span<const std::byte> stored, std::span<std::byte> place, std::size_t sampleBytes)
{
    std::ranges::copy(stored, place.begin());
    if (stored.empty()) return;
    const auto last = stored.last(sampleBytes);
    for (std::size_t at = stored.size(); at < place.size(); at += sampleBytes)
        std::ranges::copy(last, place.begin() + static_cast<std::ptrdiff_t>(at));
}

/// What curves and their positions have in common once their samples are in place.
void finish_curves(const nid_curve_layout& layout, recorded_image& image)
{
    std::vector<void_range> voids;
    std::vector<unsigned> lengths(layout.curves.size());
    for (std::size_t i = 0; i < layout.curves.size(); ++i) {
        const std::size_t place = layout.placeOf(i);
        lengths[place] = layout.curves[i].points;
        if (lengths[place] == 0) voids.push_back({std::uint64_t{place} * layout.points, layout.points});
    }
    settle_samples(image, voids);
    note_curve_lengths(image, layout.points, lengths);
    if (!layout.names.empty()) name_subimages(image, layout.names);
}

/// What the forces tell of the second half of the curves, the retracts; some of many are asked.
contact_end contact_of_retracts(const recorded_image& image)
{
    constexpr std::size_t asked = 64;
    const std::vector<std::size_t> lengths = curve_lengths_of(image);
    const std::size_t points = image.stream.get_dimension(0).length, half = lengths.size() / 2;
    const auto* const samples = static_cast<const std::int16_t*>(image.stream.array_data());
    std::vector<contact_end> told;
    for (std::size_t curve = half; curve < lengths.size(); curve += half / asked + 1) {
        std::vector<double> forces;
        for (std::size_t i = 0; i < lengths[curve]; ++i)
            forces.push_back(image.stream.values.get_axis(0).at(samples[curve * points + i]));
        told.push_back(contact_by_force(forces));
    }
    return contact_of_most(told);
}

} // namespace

nid_places find_nid_places(const nid_header& header)
{
    nid_places places;
    std::vector<double> x, y;
    for (const curve_position& position : parse_positions(header)) {
        x.push_back(position.x);
        y.push_back(position.y);
        places.text += base::shortest(position.x) + " " + base::shortest(position.y) + "\n";
    }
    places.grid = find_grid(x, y);
    return places;
}

std::vector<extent> nid_curve_layout::extents() const
{
    if (!grid) return {{points, x}};
    return {{points, x},
            {static_cast<unsigned>(grid->width), VLAxis(grid->x0, grid->stepX, "")},
            {static_cast<unsigned>(grid->height), VLAxis(grid->y0, grid->stepY, "")}};
}

std::size_t nid_curve_layout::placeOf(std::size_t curve) const noexcept
{
    return grid ? curve - curve % lines + grid->nodes[curve % lines] : curve;
}

base::read_result<nid_curve_layout> lay_out_curves(const nid_places& places,
                                                   std::span<const nid_channel* const> channels)
{
    const nid_channel& channel = *channels.front();
    nid_curve_layout layout;
    layout.lines = channel.lines;
    layout.directions = static_cast<unsigned>(channels.size());
    if (channel.isSpectroscopy() && places.grid && places.grid->nodes.size() == channel.lines)
        layout.grid = places.grid;
    layout.names = names_of_subimages(layout, channel);
    for (const nid_channel* each : channels) {
        const auto lines = lines_of(*each);
        if (!lines) return lines.error();
        layout.points = std::max(layout.points, each->points);
        layout.curves.insert(layout.curves.end(), lines->begin(), lines->end());
    }
    const auto isMeasured = [](const nid_line& curve) { return curve.points != 0; };
    const auto first = std::ranges::find_if(layout.curves, isMeasured);
    const nid_line shown = first == layout.curves.end() ? nid_line{} : *first;
    layout.hasOwnAxes =
        std::ranges::any_of(layout.curves, [&](const nid_line& curve) { return isMeasured(curve) && curve != shown; });
    layout.x = axis_of(shown.start, shown.range, shown.points, nid_dimension(*channel.section, "Dim0").units);
    return layout;
}

base::read_result<recorded_image> read_nid_curves(source& file, std::span<const nid_channel* const> channels,
                                                  nid_curve_layout& layout, const std::string& id)
{
    const nid_channel& first = *channels.front();
    recorded_image image =
        make_samples(id, first.label(), layout.extents(), layout.subimages(), first.scale, first.type());
    name_axis_fields(image, {{"Dim0Range", "Dim0Min"}});
    const std::size_t curveBytes = std::size_t{layout.points} * first.sampleBytes;
    const std::span samples(static_cast<std::byte*>(image.stream.array_data()), layout.curves.size() * curveBytes);
    std::vector<std::byte> stored;
    std::size_t curve = 0;
    for (const nid_channel* channel : channels) {
        stored.resize(static_cast<std::size_t>(channel->samples()) * channel->sampleBytes);
        if (!file.read(channel->offset, stored)) return channel->unreadable();
        to_native(stored, channel->sampleBytes, byte_order::little);
        find_unmeasured(*channel, stored, std::span(layout.curves).subspan(curve, channel->lines));
        const std::size_t lineBytes = std::size_t{channel->points} * channel->sampleBytes;
        for (unsigned line = 0; line < channel->lines; ++line, ++curve) {
            const std::size_t length = std::size_t{layout.curves[curve].points} * channel->sampleBytes;
            place_curve(std::span(stored).subspan(line * lineBytes, length),
                        samples.subspan(layout.placeOf(curve) * curveBytes, curveBytes), channel->sampleBytes);
        }
    }
    finish_curves(layout, image);
    return image;
}

std::vector<contact_end> nid_contacts(const recorded_image& image, const recorded_image* positions,
                                      const recorded_image* forces)
{
    const std::vector<smart_string>& names = image.stream.subimage_names();
    const std::vector<std::size_t> lengths = curve_lengths_of(image);
    const std::size_t points = image.stream.get_dimension(0).length;
    const auto position = [&](std::size_t curve, std::size_t sample) {
        if (!positions) return image.stream.get_dimension(0).get_axis(0).at(static_cast<double>(sample));
        const auto* const samples = static_cast<const std::int16_t*>(positions->stream.array_data());
        return positions->stream.values.get_axis(0).at(samples[curve * points + sample]);
    };
    const contact_end byForces = positions || !forces ? contact_end::unknown : contact_of_retracts(*forces);
    std::vector<contact_end> ends;
    for (std::size_t curve = 0; curve < lengths.size(); ++curve) {
        const force_way way =
            names.empty() ? force_way::unknown : way_of_part(names[curve * names.size() / lengths.size()].text);
        ends.push_back(contact_in_time(way));
        const std::size_t approach = curve - lengths.size() / 2;
        if (way != force_way::retract || curve < lengths.size() / 2 || lengths[curve] == 0 || lengths[approach] == 0)
            continue;
        if (is_known(byForces)) {
            ends.back() = byForces;
            continue;
        }
        const contact_end told = contact_by_position(position(curve, 0), position(curve, lengths[curve] - 1),
                                                     position(approach, lengths[approach] - 1));
        if (told != contact_end::unknown) ends.back() = told;
    }
    return ends;
}

recorded_image make_nid_positions(const nid_curve_layout& layout, const nid_channel& channel, const std::string& id)
{
    const nid_range common = nid_dimension(*channel.section, "Dim0");
    const value_scale scale{1.0, 0.0, common.units, "LineDim, Dim0"};
    std::string name = channel.section->text("Dim0Name");
    if (name.empty()) name = "Position";
    recorded_image image = make_samples(id, name, layout.extents(), layout.subimages(), scale, SPM_ARRAY_FLOAT64);
    const auto positions = elements_of<double>(image);
    for (std::size_t i = 0; i < layout.curves.size(); ++i) {
        const nid_line& own = layout.curves[i];
        if (own.points == 0) continue; // not measured
        const VLAxis axis = axis_of(own.start, own.range, own.points, common.units);
        const auto curve = positions.subspan(layout.placeOf(i) * layout.points, layout.points);
        for (std::size_t point = 0; point < curve.size(); ++point)
            curve[point] = axis.at(static_cast<double>(std::min<std::size_t>(point, own.points - 1)));
    }
    finish_curves(layout, image);
    return image;
}

} // namespace vldv::formats
