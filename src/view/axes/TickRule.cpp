#include "view/axes/TickRule.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vldv::view {

namespace {

constexpr int usualSteps = 5, mostSteps = 100000;
constexpr double smallestSpan = 1e-06;

/// An end that differs from the start.
double repaired_end(double start, double end) noexcept
{
    if (std::fabs(end - start) < smallestSpan) end = start + smallestSpan;
    // Large numbers do not feel so small a change.
    return end == start ? std::fabs(start) * 0.01 + start : end;
}

/// A multiple of a step may round past the largest number.
double finite(double value) noexcept
{
    constexpr double largest = std::numeric_limits<double>::max();
    return std::clamp(value, -largest, largest);
}

/// The leading digit of a positive number with its power of ten.
double leading_digit(double raw) noexcept
{
    double power = std::floor(std::log10(raw));
    if (std::floor(raw / std::pow(10.0, power)) < 1.0) power -= 1.0; // the logarithm was rounded up to the next decade
    const double decade = std::pow(10.0, power);
    return std::floor(raw / decade) * decade;
}

} // namespace

int axis_ticks::offsetOf(double value, double start) const noexcept
{
    return static_cast<int>(base::round_half_up(std::fabs(value - start) * scale));
}

void find_ticks(double start, double end, int pixels, int ticNumber, axis_ticks& out)
{
    out.ticks.clear();
    out.step = out.scale = 0.0;
    out.end = end = repaired_end(start, end);
    const double span = end - start;
    if (!std::isfinite(start) || !std::isfinite(span) || span == 0.0) return;
    const int steps = ticNumber <= 0 ? usualSteps : std::min(ticNumber, mostSteps);
    double step = leading_digit(std::fabs(span / steps));
    if (!(step > 0.0)) return;
    const bool rises = end > start;
    const double direction = rises ? 1.0 : -1.0;
    // Counted in steps, so that a tick at 0 is exactly 0 and the last one is not lost to rounding.
    const double firstCount = rises ? std::ceil(start / step) : std::floor(start / step);
    const double lastCount = rises ? std::floor(end / step) : std::ceil(end / step);
    const double first = finite(firstCount * step), last = finite(lastCount * step);
    bool isEnlarged = false;
    for (; start - step == start; isEnlarged = true) step *= 10.0; // a step that vanishes against the value
    out.step = direction * step;
    const int length = std::max(pixels, 0);
    out.scale = length / std::fabs(span);
    const double firstPlace = base::round_half_up((first - start) * direction * out.scale);
    for (double i = 0.0;; i += 1.0) {
        const double value = isEnlarged ? first + direction * i * step : (firstCount + direction * i) * step;
        if (rises ? value > last : value < last) break;
        // Two roundings reach one pixel past the end. Further off lies what was rounded to a number outside the axis
        // because the axis spans only a few numbers.
        const double place = firstPlace + base::round_half_up(std::fabs(value - first) * out.scale);
        if (place < 0.0 || place > length + 1.0) continue;
        // Where numbers are coarser than the step several counts give one value.
        if (out.ticks.empty() || value != out.ticks.back().value)
            out.ticks.push_back({value + 0.0, static_cast<int>(place)});
    }
}

} // namespace vldv::view
