#pragma once
#include "vldv_api.h"

#include <string>

// Units are texts: a name of the table in unit_table.cpp with SI prefixes from atto to tera where it takes them (micro
// as µ, μ, u or ~), as square or cube ("^2", "²", "2"), or one of these over another ("nN/nm"). Blanks around it and
// the spelling do not matter. Texts that are none of these ("px", "RGB", "%") stand for themselves alone. A null
// pointer is an empty text. The first two functions do not allocate.

/// Greater than 0 when a quantity in `a` can be expressed in `b`. Equal texts always can.
VLDV_API int units_convertable(const char* a, const char* b);
/// `value` expressed in the other unit; unchanged when the two are not convertable.
VLDV_API double convert_size(const char* from, const char* to, double value);
/// Picks the SI prefix with which |*value| lies in [1, 1000), or the smallest or largest prefix, and rewrites *value.
/// The bounds are 1 and 1e6 for squares, 1 and 1e9 for cubes. Units without prefixes (px, RGB, degrees, quotients,
/// unknown ones), zero and non-finite values stay as they are.
/// \return the chosen unit; static storage, or `units` itself
VLDV_API const char* default_units(const char* units, double* value);
/// Picks the prefix of a height value, which additionally never leaves the family of the given unit (Angstrom, inch).
VLDV_API const char* default_units_z(const char* units, double* value);

namespace vldv {

/// Rewrites *value into the unit in which all quantities of its kind are measured (m, N, V, m^2, N/m, deg …), so that
/// figures of different files can be compared as they are. Scales whose zero lies elsewhere (degrees Celsius) and
/// unknown units stay as they are.
VLDV_INTERNAL_API std::string base_units(const char* units, double* value);

} // namespace vldv
