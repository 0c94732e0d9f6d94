#include "surface/figures/decoration_text.h"

#include "base/text.h"

#include <charconv>
#include <map>
#include <optional>

namespace vldv::surface {

namespace {

constexpr char endOfText = 0x1A;
constexpr std::string_view foreignList = "\\NCAFM image list";
constexpr const char* marksName = "\\Marks";

std::string curve_name(std::size_t number) { return "\\Curve " + std::to_string(number); }
std::string profile_name(std::size_t number) { return "\\Curve profile " + std::to_string(number); }

void append(std::string& text, const std::string& name, const std::vector<CPoint>& points)
{
    text += name + ": ";
    for (const CPoint& point : points) text += std::to_string(point.x) + ',' + std::to_string(point.y) + ';';
    text += "\r\n";
}

std::optional<int> integer(std::string_view text)
{
    text = base::trimmed(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    int value = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (problem != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::vector<CPoint> points_of(std::string_view text)
{
    std::vector<CPoint> points;
    std::vector<std::string_view> pairs = base::split(text, ';');
    if (base::trimmed(pairs.back()).empty()) pairs.pop_back(); // behind the last ";"
    for (const std::string_view pair : pairs) {
        const std::vector<std::string_view> numbers = base::split(pair, ',');
        // One broken pair gives up the whole list: a curve without one of its points would look as if it had been drawn
        // like that.
        if (numbers.size() != 2) return {};
        const std::optional<int> x = integer(numbers[0]), y = integer(numbers[1]);
        if (!x || !y) return {};
        points.push_back({*x, *y});
    }
    return points;
}

using line_table = std::map<std::string, std::string_view, std::less<>>;

line_table lines_of(std::string_view text)
{
    line_table lines;
    // Other texts may stand behind an end mark or a list of images of another program. Of lines with one name the first
    // counts.
    text = text.substr(0, text.find(endOfText));
    for (const std::string_view line : base::split(text, '\n')) {
        if (line.starts_with(foreignList)) break;
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) continue;
        lines.emplace(base::trimmed(line.substr(0, colon)), line.substr(colon + 1));
    }
    return lines;
}

std::vector<std::vector<CPoint>> numbered(const line_table& lines, std::string (*name)(std::size_t))
{
    std::vector<std::vector<CPoint>> lists;
    for (auto line = lines.find(name(1)); line != lines.end(); line = lines.find(name(lists.size() + 1)))
        lists.push_back(points_of(line->second));
    return lists;
}

} // namespace

std::string decoration_text(const decoration_lists& lists)
{
    std::string text;
    for (std::size_t i = 0; i < lists.curves.size(); ++i) append(text, curve_name(i + 1), lists.curves[i]);
    if (!lists.marks.empty()) append(text, marksName, lists.marks);
    for (std::size_t i = 0; i < lists.profiles.size(); ++i) append(text, profile_name(i + 1), lists.profiles[i]);
    return text;
}

decoration_lists read_decoration_text(std::string_view text)
{
    const line_table lines = lines_of(text);
    decoration_lists lists{numbered(lines, curve_name), {}, numbered(lines, profile_name)};
    if (const auto marks = lines.find(marksName); marks != lines.end()) lists.marks = points_of(marks->second);
    return lists;
}

std::size_t drop_outside(decoration_lists& lists, CSize image)
{
    const CRect inside({0, 0}, image);
    const auto isOutside = [&inside](CPoint point) { return !inside.PtInRect(point); };
    std::size_t dropped = std::erase_if(lists.marks, isOutside);
    for (std::vector<std::vector<CPoint>>* const each : {&lists.curves, &lists.profiles}) {
        for (std::vector<CPoint>& points : *each) dropped += std::erase_if(points, isOutside);
        std::erase_if(*each, [](const std::vector<CPoint>& points) { return points.empty(); });
    }
    return dropped;
}

} // namespace vldv::surface
