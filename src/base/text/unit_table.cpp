#include "base/text/unit_table.h"

#include <array>
#include <numbers>
#include <string_view>

namespace vldv::base {

namespace {

enum kinds {
    number = 1,
    length,
    angle,
    duration,
    voltage,
    current,
    force,
    frequency,
    temperature,
    energy,
    power,
    charge,
    pressure,
    resistance,
    conductance,
    capacitance,
    magneticField
};

/// 1 of it is factor * 10^exponent + zero of its kind's base unit.
struct unit_row {
    const char* name;
    int kind;
    bool prefixes;
    double factor = 1.0;
    int exponent = 0;
    double zero = 0.0;
};

constexpr unit_row rows[] = {
    {"m", length, true},
    {"\u00C5", length, false, 1, -10}, // the letter
    {"\u212B", length, false, 1, -10}, // the Angstrom sign
    {"Angstrom", length, false, 1, -10},
    {"Ang", length, false, 1, -10},
    {"in", length, false, 2.54, -2},
    {"inch", length, false, 2.54, -2},
    {"\"", length, false, 2.54, -2},
    {"deg", angle, false},
    {"°", angle, false},
    {"rad", angle, true, 180 / std::numbers::pi},
    {"arcmin", angle, false, 1.0 / 60},
    {"arcsec", angle, false, 1.0 / 3600},
    {"s", duration, true},
    {"sec", duration, false},
    {"min", duration, false, 60},
    {"h", duration, false, 3600},
    {"V", voltage, true},
    {"A", current, true},
    {"N", force, true},
    {"Hz", frequency, true},
    {"K", temperature, true},
    {"°C", temperature, false, 1, 0, 273.15},
    {"degC", temperature, false, 1, 0, 273.15},
    {"J", energy, true},
    {"eV", energy, true, 1.602176634, -19},
    {"W", power, true},
    {"C", charge, true},
    {"Pa", pressure, true},
    {"Ohm", resistance, true},
    {"\u03A9", resistance, true}, // the Greek letter
    {"\u2126", resistance, true}, // the Ohm sign
    {"S", conductance, true},
    {"F", capacitance, true},
    {"T", magneticField, true},
    {"1", number, false}, // of "1/nm"
};
constexpr int metreRow = 0;

struct prefix_row {
    const char* text;
    int exponent;
};

/// In the order of `prefixSteps`, then other spellings. The standard micro is U+00B5.
constexpr prefix_row prefixes[] = {
    {"a", -18}, {"f", -15}, {"p", -12}, {"n", -9}, {"\u00B5", -6}, {"m", -3}, {"", 0},
    {"k", 3},   {"M", 6},   {"G", 9},   {"T", 12}, {"\u03BC", -6}, {"u", -6}, {"~", -6},
};
constexpr prefix_row metrePrefixes[] = {{"c", -2}, {"d", -1}};

constexpr int maxPower = 3;
constexpr std::array<std::array<const char*, 3>, maxPower + 1> powerSuffixes = {
    {{"", "", ""}, {"", "", ""}, {"^2", "²", "2"}, {"^3", "³", "3"}}};

int take_power(std::string_view& text)
{
    for (int found = 2; found <= maxPower; ++found)
        for (const std::string_view suffix : powerSuffixes[static_cast<std::size_t>(found)])
            if (text.size() > suffix.size() && text.ends_with(suffix)) {
                text.remove_suffix(suffix.size());
                return found;
            }
    return 1;
}

int find_row(std::string_view name)
{
    for (int i = 0; i < static_cast<int>(std::size(rows)); ++i)
        if (name == rows[i].name) return i;
    return -1;
}

/// The row of the name behind a prefix, or -1.
int find_prefixed(std::string_view text, const prefix_row& prefix)
{
    if (!*prefix.text || !text.starts_with(prefix.text)) return -1;
    const int row = find_row(text.substr(std::string_view(prefix.text).size()));
    return row >= 0 && rows[row].prefixes ? row : -1;
}

known_unit resolved(int row, int found, int exponent)
{
    const unit_row& unit = rows[row];
    // A power raises the factor and multiplies the exponent, which keeps powers of ten exact. The zero of a scale means
    // something only for the unit itself.
    double factor = unit.factor;
    for (int i = 1; i < found; ++i) factor *= unit.factor;
    return {unit.kind, row, found, (unit.exponent + exponent) * found, factor, found == 1 ? unit.zero : 0.0};
}

/// Every row with every prefix and power, in the standard spelling: returned texts live for ever.
using unit_name = std::array<char, 16>;
using name_table = std::array<std::array<std::array<unit_name, prefixSteps>, maxPower + 1>, std::size(rows)>;

constexpr unit_name joined(std::string_view prefix, std::string_view name, std::string_view suffix)
{
    unit_name made{};
    std::size_t length = 0;
    for (const std::string_view piece : {prefix, name, suffix})
        for (const char c : piece) made.at(length++) = c;
    return made;
}

constexpr name_table make_names()
{
    name_table made{};
    for (std::size_t row = 0; row < made.size(); ++row)
        for (std::size_t found = 1; found <= maxPower; ++found)
            for (std::size_t step = 0; step < prefixSteps; ++step)
                made[row][found][step] = joined(prefixes[step].text, rows[row].name, powerSuffixes[found][0]);
    return made;
}

constexpr name_table prefixedNames = make_names();

} // namespace

std::optional<known_unit> parse_unit(std::string_view text) noexcept
{
    while (text.starts_with(' ')) text.remove_prefix(1);
    while (text.ends_with(' ')) text.remove_suffix(1);
    // The whole name goes first, so that one which begins like a prefix, as "min", is not cut. Only what is none is
    // taken for a prefix in front of a name that takes prefixes; hundredths and tenths are known of the metre alone.
    const int found = take_power(text);
    if (const int row = find_row(text); row >= 0) return resolved(row, found, 0);
    for (const prefix_row& prefix : prefixes)
        if (const int row = find_prefixed(text, prefix); row >= 0) return resolved(row, found, prefix.exponent);
    for (const prefix_row& prefix : metrePrefixes)
        if (find_prefixed(text, prefix) == metreRow) return resolved(metreRow, found, prefix.exponent);
    return std::nullopt;
}

bool takes_prefixes(const known_unit& unit) noexcept { return rows[unit.row].prefixes; }

const char* prefixed_unit(const known_unit& unit, int step, known_unit& out) noexcept
{
    const auto index = static_cast<std::size_t>(step);
    out = resolved(unit.row, unit.power, prefixes[index].exponent);
    return prefixedNames[static_cast<std::size_t>(unit.row)][static_cast<std::size_t>(unit.power)][index].data();
}

const char* kind_unit(const known_unit& unit, known_unit& out) noexcept
{
    constexpr int withoutPrefix = 6;
    static_assert(*prefixes[withoutPrefix].text == '\0');
    known_unit first = unit;
    first.row = 0;
    while (rows[first.row].kind != unit.kind) ++first.row;
    return prefixed_unit(first, withoutPrefix, out);
}

} // namespace vldv::base
