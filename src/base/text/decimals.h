#pragma once
#include "vldv_api.h"

#include <string>

namespace vldv::base {

/// The power of ten of a number's first digit: 2 for 204.5, -1 for -0.3; 0 for zero and what is no finite number.
int decimal_exponent(double value) noexcept;

/// "%.*f" with halves going up, also below zero and where sums of decimal steps end a little below the half: 204.5
/// without decimals is 205. A zero has no sign.
std::string with_decimals(double value, int decimals);

/// How many significant digits tell numbers `difference` apart from each other, with one to spare; `fewest` for a
/// difference of 0, never more than a double has.
/// \param largest  of their magnitudes
VLDV_INTERNAL_API int telling_digits(double largest, double difference, int fewest = 6) noexcept;

} // namespace vldv::base
