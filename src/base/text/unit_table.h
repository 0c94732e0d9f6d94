#pragma once
#include <optional>
#include <string_view>

namespace vldv::base {

/// A unit of the table with its prefix and power resolved: 1 of it is factor * 10^exponent + zero base units.
struct known_unit {
    int kind = 0;     ///< units of one kind convert into each other
    int row = 0;      ///< of the table
    int power = 1;    ///< 1, or 2 and 3 for squares and cubes
    int exponent = 0; ///< of ten
    double factor = 1.0;
    double zero = 0.0; ///< the base unit's value where this unit reads 0
};

/// "nm", "µm^2", "°C"; no quotients. Nothing for a unit that is not known.
std::optional<known_unit> parse_unit(std::string_view text) noexcept;

/// Whether the unit is one of those that are written with any SI prefix.
bool takes_prefixes(const known_unit& unit) noexcept;

constexpr int prefixSteps = 11; ///< atto, femto … tera, in steps of 1000
/// A unit with the prefix of `step` in the standard spelling; static storage. `out` receives it resolved.
const char* prefixed_unit(const known_unit& unit, int step, known_unit& out) noexcept;

/// The unit in which its kind is measured: the first of the table, without a prefix, of the same power; static storage.
/// `out` receives it resolved.
const char* kind_unit(const known_unit& unit, known_unit& out) noexcept;

} // namespace vldv::base
