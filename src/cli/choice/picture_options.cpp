#include "cli/choice/picture_options.h"

#include "base/text.h"
#include "base/units.h"

#include <cmath>

namespace vldv::cli {

namespace {

constexpr int maxSide = 32768;

std::optional<int> whole(std::string_view text)
{
    const auto number = base::whole_integer(text);
    if (!number || *number < -2147483647 || *number > 2147483647) return std::nullopt;
    return static_cast<int>(*number);
}

} // namespace

std::optional<fixed_window> parse_fixed_window(const std::string& text)
{
    const auto parts = base::split(text, ',');
    if (parts.size() != 3) return std::nullopt;
    const auto start = base::whole_number(parts[0]), size = base::whole_number(parts[1]);
    if (!start || !size || !std::isfinite(*start) || !std::isfinite(*size) || *size <= 0.0) return std::nullopt;
    return fixed_window{*start, *size, std::string(base::trimmed(parts[2]))};
}

std::string window_problem(const picture_options& options, const char* units)
{
    const auto window = parse_fixed_window(options.fixed);
    if (!window || units_convertable(window->units.c_str(), units) > 0) return {};
    const auto in = [](const std::string& text) { return text.empty() ? "without a unit" : "in " + text; };
    return "the window of --fixed is " + in(window->units) + ", the heights of the image are " + in(units);
}

std::optional<picture_size> parse_picture_size(const std::string& text)
{
    const auto parts = base::split(text, 'x');
    if (parts.size() != 2) return std::nullopt;
    const auto width = whole(parts[0]), height = whole(parts[1]);
    if (!width || !height || *width < 1 || *height < 1 || *width > maxSide || *height > maxSide) return std::nullopt;
    return picture_size{*width, *height};
}

std::optional<std::vector<int>> parse_rectangle(const std::string& text)
{
    std::vector<int> sides;
    for (const std::string_view part : base::split(text, ',')) {
        const auto side = whole(part);
        if (!side) return std::nullopt;
        sides.push_back(*side);
    }
    if (sides.size() != 4) return std::nullopt;
    return sides;
}

} // namespace vldv::cli
