#include "formats/text/text_wyko.h"

#include "base/text.h"
#include "formats/shared/stated_number.h"
#include "formats/shared/wyko_names.h"

#include <cmath>
#include <string_view>

namespace vldv::formats {

namespace {

/// The number at the end of the line with this key, NaN for a text: type and length may stand between them.
std::optional<double> number_of(const header_lines& lines, std::string_view key)
{
    for (const std::string& line : lines) {
        const auto fields = base::split(base::trimmed(line), '\t');
        if (fields.size() < 2 || !base::equal_ignoring_case(base::trimmed(fields.front()), key)) continue;
        return lone_number(fields.back()).value_or(std::nan(""));
    }
    return std::nullopt;
}

std::size_t count_of(const header_lines& lines, std::string_view key)
{
    const double number = number_of(lines, key).value_or(0.0);
    return number >= 1.0 && number <= 1e9 && number == std::floor(number) ? static_cast<std::size_t>(number) : 0;
}

/// The text of a line "key TAB type TAB length TAB value" or "key TAB value"; empty when there is none.
std::string text_after_key(std::string_view line)
{
    constexpr std::size_t valueField = 3;
    const auto fields = base::split(base::trimmed(line), '\t');
    if (fields.size() == 2) return std::string(base::trimmed(fields[1]));
    if (fields.size() <= valueField) return {};
    return std::string(base::trimmed(line.substr(static_cast<std::size_t>(fields[valueField].data() - line.data()))));
}

std::string_view key_of(std::string_view line) { return base::trimmed(line.substr(0, line.find('\t'))); }

} // namespace

bool fits_wyko(const header_lines& lines)
{
    return !lines.empty() && lines[0].starts_with("Wyko ASCII Data File Format");
}

void apply_wyko(const header_lines& lines, table_header& header)
{
    header.form = table_header::shape::matrix;
    header.linesAreColumns = true;
    header.columns = count_of(lines, "Y Size"); // numbers of a line
    header.rows = count_of(lines, "X Size");
    apply_wyko_array(lines, lines.back(), header);
    if (const auto pixel = number_of(lines, "Pixel_size")) {
        const double aspect = number_of(lines, "Aspect").value_or(1.0);
        header.width = quantity{*pixel * static_cast<double>(header.rows), "mm"};
        header.height = quantity{*pixel * aspect * static_cast<double>(header.columns), "mm"};
    }
}

void apply_wyko_array(const header_lines& lines, const std::string& nameLine, table_header& header)
{
    const std::string name(key_of(nameLine));
    header.channel = name;
    header.factor = 1.0;
    header.units.clear();
    header.origin = "intensity";
    if (!holds_wyko_heights(name)) return;
    header.origin = "no Wavelength in the file";
    for (const std::string& line : lines)
        if (key_of(line) == "Title" && !text_after_key(line).empty()) header.channel = text_after_key(line);
    if (const auto wavelength = number_of(lines, "Wavelength"); wavelength) {
        header.factor = *wavelength;
        header.units = "nm";
        header.origin = "Wavelength";
    }
}

std::map<std::string, std::string> wyko_strings(const header_lines& lines)
{
    std::map<std::string, std::string> strings;
    for (const std::string& line : lines)
        if (const std::string text = text_after_key(line);
            !text.empty() && key_of(line) != "Block Name" && !fits_wyko({line}))
            strings.emplace(key_of(line), text);
    const auto date = strings.find("Date"), time = strings.find("Time");
    if (date != strings.end()) strings["\\Date"] = date->second + (time == strings.end() ? "" : " " + time->second);
    return strings;
}

} // namespace vldv::formats
