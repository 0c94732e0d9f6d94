#include "base/text/decimals.h"

#include "base/streams/rounding.h"
#include "base/text.h"

#include <algorithm>
#include <cmath>

namespace vldv::base {

int decimal_exponent(double value) noexcept
{
    return value != 0.0 && std::isfinite(value) ? static_cast<int>(std::floor(std::log10(std::fabs(value)))) : 0;
}

std::string with_decimals(double value, int decimals)
{
    constexpr double exactWholes = 9007199254740992.0, closeness = 1e-14;
    // A decimal fraction may be stored a little below what was written: 1.005 * 100 is 100.49999999999999. The share of
    // 1e-14 brings it back over the half; other numbers would have to lie as close to one to be changed.
    const double power = std::pow(10.0, decimals), scaled = value * power;
    if (std::fabs(scaled) < exactWholes) value = round_half_up(scaled + std::fabs(scaled) * closeness) / power;
    return formatted("%.*f", decimals, value);
}

int telling_digits(double largest, double difference, int fewest) noexcept
{
    constexpr int digitsOfDouble = 15, spare = 1;
    if (difference == 0.0) return fewest;
    const int needed = decimal_exponent(largest) - decimal_exponent(difference) + 1 + spare;
    return std::max(fewest, std::min(needed, digitsOfDouble));
}

} // namespace vldv::base
