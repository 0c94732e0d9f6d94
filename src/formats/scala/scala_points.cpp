#include "formats/scala/scala_points.h"

#include "base/text.h"
#include "formats/scala/scala_data.h"
#include "formats/shared/force/curve_group.h"
#include "formats/shared/header_text.h"
#include "formats/shared/stated_number.h"
#include "formats/text/text_lines.h"
#include "formats/text/text_numbers.h"

#include <algorithm>

namespace vldv::formats {

namespace {

base::read_error wrong_line(const line_cursor& lines, const char* why)
{
    return {lines.offset(), "line " + std::to_string(lines.number()) + ": " + why};
}

/// The number of a comment ";n_curves : 3".
void read_stated_count(std::string_view line, scala_points& points)
{
    constexpr std::string_view key = "n_curves";
    line = base::trimmed(line.substr(std::min(line.find_first_not_of(';'), line.size())));
    const std::size_t colon = line.find(':');
    if (!line.starts_with(key) || colon == std::string_view::npos) return;
    points.stated = static_cast<std::size_t>(stated_count(line.substr(colon + 1)).value_or(points.stated));
}

base::read_result<scala_points> parse_curves(const std::string& text)
{
    enum class part { none, places, curve };
    scala_points points;
    part inside = part::none;
    number_scanner scanner(number_layout{});
    std::vector<double> numbers;
    line_cursor lines(text);
    std::string_view raw;
    while (lines.next(raw)) {
        const std::string_view line = base::trimmed(raw.substr(0, raw.find(';')));
        if (line.empty()) {
            read_stated_count(base::trimmed(raw), points);
        } else if (line.starts_with("BEGIN")) {
            inside = line == "BEGIN COORD" ? part::places : part::curve;
            if (inside == part::curve) points.x.emplace_back(), points.raw.emplace_back();
        } else if (line == "END") {
            inside = part::none;
        } else if (inside == part::places) {
            points.places += header_text(line) + "\n";
        } else if (inside == part::curve) {
            numbers.clear();
            scanner.scan(line, numbers);
            if (numbers.size() < 2) return wrong_line(lines, "not two numbers");
            points.x.back().push_back(numbers[0]);
            points.raw.back().push_back(numbers[1]);
        }
    }
    if (inside != part::none) return base::read_error{text.size(), "cut short"};
    if (points.raw.empty()) return base::read_error{0, "holds no curve"};
    if (points.raw.size() > 65536) return base::read_error{0, "more than 65536 curves"};
    if (std::ranges::any_of(points.raw, [](const auto& curve) { return curve.empty(); }))
        return base::read_error{0, "a curve without points"};
    return points;
}

/// "Forward", or "Forward 2" where there are several.
std::string curve_name(scan_direction direction, std::size_t curve, std::size_t curves)
{
    if (direction == scan_direction::unknown) return {};
    const std::string name = direction == scan_direction::forward ? "Forward" : "Reverse";
    return curves == 1 ? name : name + " " + std::to_string(curve + 1);
}

/// Moves the curves of all parts into one list.
std::vector<named_curve> take_curves(std::span<scala_points> parts,
                                     std::vector<std::vector<double>> scala_points::* which)
{
    std::vector<named_curve> curves;
    for (scala_points& part : parts) {
        auto& own = part.*which;
        for (std::size_t i = 0; i < own.size(); ++i)
            curves.push_back({curve_name(part.channel->direction, i, own.size()), std::move(own[i])});
    }
    return curves;
}

/// One list of places when both directions have the same.
std::string places_of(std::span<const scala_points> parts)
{
    std::string places = parts.front().places;
    for (const scala_points& part : parts.subspan(1))
        if (part.places != parts.front().places) places += part.places;
    return places;
}

} // namespace

bool is_scala_points(const scala_channel& channel) noexcept
{
    const std::size_t dot = channel.fileName.rfind('.');
    return channel.isSpectroscopy && dot != std::string::npos &&
           base::lower_ascii(channel.fileName.substr(dot)).starts_with(".cs");
}

bool is_scala_points_text(std::string_view head) noexcept
{
    const std::size_t count = head.find("n_curves"), places = head.find("BEGIN COORD");
    return head.starts_with(';') && places != std::string_view::npos && count < places;
}

base::read_result<scala_points> read_scala_points(source& data, const scala_channel& channel)
{
    constexpr std::uint64_t mostBytes = 256u << 20;
    if (data.size() > mostBytes) return base::read_error{0, "too large for a text of curves"};
    std::string text(static_cast<std::size_t>(data.size()), '\0');
    if (!data.read(0, std::as_writable_bytes(std::span(text)))) return base::read_error{0, "cannot be read"};
    auto points = parse_curves(text);
    if (points) points->channel = &channel;
    return points;
}

base::read_result<std::vector<recorded_image>> make_scala_points(std::span<scala_points> parts,
                                                                 std::vector<std::string>& ids)
{
    const scala_channel& channel = *parts.front().channel;
    const std::string places = places_of(parts);
    const std::string parameter = channel.parameter.empty() ? "Parameter" : channel.parameter;
    curve_positions positions;
    positions.id = positions.label = parameter;
    positions.scale = {1.0, 0.0, scala_parameter_units(channel), "first column"};
    positions.curves = take_curves(parts, &scala_points::x);
    const std::vector<named_curve> raw = take_curves(parts, &scala_points::raw);
    if (!is_modest_padding(raw)) return base::read_error{0, "curves differ too much in length"};
    auto images = make_curves_over(positions, channel.label(), channel.lsbScale, raw, ids);
    if (!places.empty()) images.back().strings["Curve places, nm"] = places;
    return images;
}

} // namespace vldv::formats
