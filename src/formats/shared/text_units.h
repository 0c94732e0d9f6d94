#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace vldv::formats {

/// A unit as this system writes it: every spelling of micro becomes U+00B5, words like "microns" or "sec" their
/// symbol, Angstrom U+00C5. Text that is no known unit comes back trimmed and else unchanged.
std::string normal_unit(std::string_view text);
/// True for a unit that `normal_unit` understands.
bool is_known_unit(std::string_view text);

/// A number with a unit, as headers state sizes.
struct quantity {
    double value = 0.0;
    std::string units;                 ///< normal, may be empty
    std::optional<std::string> text{}; ///< as a header states it
};

/// "12.34 µm", "5678.9nm", "3.7e-7 m", "12,5 µm", "1000": the whole text must be a number and at most one word that
/// is no number. A known unit is not required. The number may be NaN or infinite.
std::optional<quantity> parse_quantity(std::string_view text);
/// A value that a header states: one that is no quantity has the number NaN, an empty one is nothing.
std::optional<quantity> stated_quantity(std::string_view text);

/// Name and unit of a column: "Current (A)", "x [nm]", "Force, nN", "X_(microns)", "y in µm". The last bracket that
/// holds a known unit is the unit and leaves the name; without one all of the text is the name.
struct column_heading {
    std::string name;
    std::string units;
};
column_heading parse_heading(std::string_view text);

} // namespace vldv::formats
