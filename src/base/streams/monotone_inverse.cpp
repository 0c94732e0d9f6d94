#include "base/streams/monotone_inverse.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace vldv::base {

namespace {

struct bracket {
    double low, high;
    double atLow, atHigh;

    bool holds(double wanted) const noexcept
    {
        return (atLow <= wanted && wanted <= atHigh) || (atHigh <= wanted && wanted <= atLow);
    }
};

/// Moves an infinite end away from the start in doubling steps as long as the function has values there.
bracket find_bracket(const std::function<double(double)>& function, double wanted, const search_range& range)
{
    constexpr double largest = std::numeric_limits<double>::max();
    const bool openLow = !std::isfinite(range.low), openHigh = !std::isfinite(range.high);
    const double start = std::isfinite(range.start) ? range.start : 0.0;
    bracket found{openLow ? std::min(start, range.high) : range.low, openHigh ? std::max(start, range.low) : range.high,
                  0.0, 0.0};
    found.atLow = function(found.low);
    found.atHigh = function(found.high);
    const double lowest = found.low, highest = found.high;
    for (double step = 1.0; std::isfinite(step) && !found.holds(wanted); step *= 2.0) {
        const double low = std::max(lowest - step, -largest), high = std::min(highest + step, largest);
        if (const double value = function(low); openLow && !std::isnan(value)) {
            found.low = low;
            found.atLow = value;
        }
        if (const double value = function(high); openHigh && !std::isnan(value)) {
            found.high = high;
            found.atHigh = value;
        }
        if (!openLow && !openHigh) break;
    }
    return found;
}

/// The end that `wanted` lies beyond, when that end is a limit.
std::optional<double> nearest_limit(const bracket& ends, double wanted, const search_range& range)
{
    if (std::isnan(ends.atLow) || std::isnan(ends.atHigh) || ends.atLow == ends.atHigh) return std::nullopt;
    const bool beyondLow = (wanted < ends.atLow) == (ends.atLow < ends.atHigh);
    const double limit = beyondLow ? range.low : range.high;
    return std::isfinite(limit) ? std::optional(limit) : std::nullopt;
}

} // namespace

std::optional<double> invert_monotone(const std::function<double(double)>& function, double wanted,
                                      const search_range& range)
{
    if (!std::isfinite(wanted)) return std::nullopt;
    bracket ends = find_bracket(function, wanted, range);
    if (!ends.holds(wanted)) return nearest_limit(ends, wanted, range);
    const bool rises = ends.atLow < ends.atHigh;
    for (;;) {
        // Bisection down to two neighbouring doubles: it needs no derivative and no tolerance, and it never leaves the
        // bracket.
        const double middle = std::midpoint(ends.low, ends.high);
        if (!(middle > ends.low && middle < ends.high)) break;
        const double value = function(middle);
        if (std::isnan(value)) return std::nullopt;
        const bool goesUp = (value < wanted) == rises && value != wanted;
        (goesUp ? ends.low : ends.high) = middle;
        (goesUp ? ends.atLow : ends.atHigh) = value;
    }
    // A jump over the value, as at a pole, is no place where it is reached; one onto it, as of a staircase, is.
    const bool isReached = ends.atLow == wanted || ends.atHigh == wanted;
    const bool isNear = std::fabs(ends.atHigh - ends.atLow) <= 1e-6 * std::max(1.0, std::fabs(wanted));
    if (!isReached && !isNear) return std::nullopt;
    if (range.wholeNumbers) {
        ends.low = std::max(std::floor(ends.low), range.low);
        ends.high = std::min(ends.low + 1.0, range.high);
    }
    const bool lowIsNearer = std::fabs(function(ends.low) - wanted) < std::fabs(function(ends.high) - wanted);
    return lowIsNearer ? ends.low : ends.high;
}

} // namespace vldv::base
