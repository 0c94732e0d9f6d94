#pragma once
#include <cmath>

namespace vldv::base {

/// Nearest integer, halves up also below zero: 0.5 gives 1, -0.5 gives 0.
inline double round_half_up(double v) noexcept
{
    const double low = std::floor(v);
    return v - low >= 0.5 ? low + 1.0 : low;
}

/// Rounds to an `int` that stays far from its ends, so that sums of two do not overflow; NaN gives 0.
inline int nearest_int(double v) noexcept
{
    constexpr double limit = 1 << 30;
    if (!(v > -limit)) return v == v ? -(1 << 30) : 0;
    return v >= limit ? 1 << 30 : static_cast<int>(round_half_up(v));
}

} // namespace vldv::base
