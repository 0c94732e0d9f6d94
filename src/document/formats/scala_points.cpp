#include "document/formats/scala_data.h"

#include "base/text.h"
#include "document/formats/curve_group.h"
#include "document/formats/header_text.h"
#include "document/formats/point_grid.h"
#include "document/formats/text_lines.h"
#include "document/formats/text_numbers.h"

#include <algorithm>

namespace formats {

namespace {

/// Curves of a text file: "BEGIN COORD" … "END" with their places, then "BEGIN" … "END" with x and raw value each.
struct point_curves {
    std::vector<std::vector<double>> x, raw;
    std::string places; ///< "x y" in nm, a line each
};

base::read_error wrong_line(const line_cursor& lines, const char* why)
{
    return {lines.offset(), "line " + std::to_string(lines.number()) + ": " + why};
}

base::read_result<point_curves> parse_curves(const std::string& text)
{
    enum class part { none, places, curve };
    point_curves curves;
    part inside = part::none;
    number_scanner scanner(number_layout{});
    std::vector<double> numbers;
    line_cursor lines(text);
    std::string_view raw;
    while (lines.next(raw)) {
        const std::string_view line = base::trimmed(raw.substr(0, raw.find(';')));
        if (line.empty()) continue;
        if (line.starts_with("BEGIN")) {
            inside = line == "BEGIN COORD" ? part::places : part::curve;
            if (inside == part::curve) curves.x.emplace_back(), curves.raw.emplace_back();
        } else if (line == "END") {
            inside = part::none;
        } else if (inside == part::places) {
            curves.places += header_text(line) + "\n";
        } else if (inside == part::curve) {
            numbers.clear();
            scanner.scan(line, numbers);
            if (numbers.size() < 2) return wrong_line(lines, "not two numbers");
            curves.x.back().push_back(numbers[0]);
            curves.raw.back().push_back(numbers[1]);
        }
    }
    if (inside != part::none) return base::read_error{text.size(), "cut short"};
    if (curves.raw.empty()) return base::read_error{0, "holds no curve"};
    if (curves.raw.size() > 65536) return base::read_error{0, "more than 65536 curves"};
    return curves;
}

/// Without names: the places stand in a text.
std::vector<named_curve> without_names(std::vector<std::vector<double>> curves)
{
    std::vector<named_curve> result;
    for (std::vector<double>& curve : curves) result.push_back({{}, std::move(curve)});
    return result;
}

} // namespace

base::read_result<std::vector<recorded_image>> read_scala_points(source& data, const scala_channel& channel,
                                                                 std::vector<std::string>& ids)
{
    constexpr std::uint64_t mostBytes = 256u << 20;
    if (data.size() > mostBytes) return base::read_error{0, "too large for a text of curves"};
    std::string text(static_cast<std::size_t>(data.size()), '\0');
    if (!data.read(0, std::as_writable_bytes(std::span(text)))) return base::read_error{0, "cannot be read"};
    auto curves = parse_curves(text);
    if (!curves) return curves.error();
    if (std::ranges::any_of(curves->raw, [](const auto& curve) { return curve.empty(); }))
        return base::read_error{0, "a curve without points"};
    const std::string units = scala_parameter_units(channel);
    const bool sameX = std::ranges::all_of(curves->x, [&](const auto& x) { return x == curves->x.front(); });
    const auto steps = sameX ? find_even_steps(curves->x.front()) : std::nullopt;
    const VLAxis axis = steps ? VLAxis(steps->start, steps->step, units.c_str()) : VLAxis();
    const std::vector<named_curve> raw = without_names(std::move(curves->raw));
    if (!is_modest_padding(raw)) return base::read_error{0, "curves differ too much in length"};
    std::vector<recorded_image> images;
    recorded_image image = make_curve_group(unique_id(channel.label(), ids), channel.label(), axis, channel.scale, raw);
    if (!steps) {
        const std::string name = channel.parameter.empty() ? "Parameter" : channel.parameter;
        images.push_back(make_curve_group(unique_id(name, ids), name, VLAxis(), {1.0, 0.0, units, "first column"},
                                          without_names(std::move(curves->x))));
        image.stream.set_parameter_stream(images.front().stream.get_name());
    }
    if (!curves->places.empty()) image.strings["Curve places, nm"] = curves->places;
    images.push_back(std::move(image));
    return images;
}

} // namespace formats
