#pragma once
#include <cmath>

namespace base {

/// Nearest integer, halves up also below zero: 0.5 gives 1, -0.5 gives 0.
inline double round_half_up(double v) noexcept
{
    const double low = std::floor(v);
    return v - low >= 0.5 ? low + 1.0 : low;
}

} // namespace base
