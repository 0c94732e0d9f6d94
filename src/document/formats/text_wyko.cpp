#include "document/formats/text_wyko.h"

#include "base/text.h"

#include <cmath>
#include <string_view>

namespace formats {

namespace {

/// The number at the end of the line with this key: type and length may stand between them.
std::optional<double> number_of(const header_lines& lines, std::string_view key)
{
    for (const std::string& line : lines) {
        const auto fields = base::split(line, '\t');
        if (fields.size() < 2 || !base::equal_ignoring_case(base::trimmed(fields.front()), key)) continue;
        const auto number = base::whole_number(fields.back());
        return number && std::isfinite(*number) ? number : std::nullopt;
    }
    return std::nullopt;
}

std::size_t count_of(const header_lines& lines, std::string_view key)
{
    const double number = number_of(lines, key).value_or(0.0);
    return number >= 1.0 && number <= 1e9 ? static_cast<std::size_t>(number) : 0;
}

/// The text of the last line, up to its first tab, names the array.
std::string array_name(const header_lines& lines)
{
    return std::string(base::trimmed(base::split(lines.back(), '\t').front()));
}

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
    header.channel = array_name(lines);
    if (const auto pixel = number_of(lines, "Pixel_size"); pixel && *pixel > 0.0) {
        const double aspect = number_of(lines, "Aspect").value_or(1.0);
        header.width = quantity{*pixel * static_cast<double>(header.rows), "mm"};
        header.height = quantity{*pixel * aspect * static_cast<double>(header.columns), "mm"};
    }
    if (const auto wavelength = number_of(lines, "Wavelength"); wavelength && *wavelength > 0.0) {
        header.factor = *wavelength;
        header.units = "nm";
        header.origin = "Wavelength";
    }
}

} // namespace formats
