#pragma once
#include <functional>
#include <optional>

namespace vldv::base {

/// Where to look for the argument of a monotone function.
struct search_range {
    double low, high;  ///< may be infinite
    double start;      ///< a finite place to begin at where an end is infinite
    bool wholeNumbers; ///< the argument is an integer
};

/// The argument within the range for which `function`, monotone in either direction, comes nearest to `wanted`, by
/// bisection. A value beyond that of a finite end gives that end.
/// \return nothing when the function never comes near: not monotone, not a number, or `wanted` lies beyond what it
///         reaches towards an infinite end
std::optional<double> invert_monotone(const std::function<double(double)>& function, double wanted,
                                      const search_range& range);

} // namespace vldv::base
