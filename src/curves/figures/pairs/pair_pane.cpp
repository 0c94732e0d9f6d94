#include "curves/figures/pairs/pair_pane.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>

namespace vldv::curves {

namespace {

/// The measured pair for which `distance` is smallest, the first of equals.
template <class Distance>
std::optional<std::size_t> smallest(const pair_series& series, Distance distance)
{
    std::optional<std::size_t> found;
    double least = 0.0;
    for (std::size_t i = 0; i < series.size(); ++i) {
        if (!series.isMeasured(i)) continue;
        const double is = distance(i);
        if (found && is >= least) continue;
        found = i;
        least = is;
    }
    return found;
}

} // namespace

void raw_span::add(double value) noexcept
{
    if (isEmpty()) {
        low = high = value;
        return;
    }
    low = std::min(low, value);
    high = std::max(high, value);
}

void pair_ranges::add(const pair_series& series)
{
    for_each_measured_stretch(series, [&](std::size_t first, std::size_t end) {
        for (std::size_t i = first; i < end; ++i) {
            x.add(series.x[i]);
            y.add(series.y[i]);
        }
    });
}

pair_pane::pair_pane(CSize size_, const VLAxis& x_, const VLAxis& y_, const pair_ranges& ranges)
    : size(size_), x(x_), y(y_), across(physical(ranges.x, x_)), up(physical(ranges.y, y_))
{
}

pair_pane pair_pane::finer(int parts) const noexcept
{
    pair_pane made = *this;
    made.size = {(size.cx - 1) * parts + 1, (size.cy - 1) * parts + 1};
    return made;
}

void pair_pane::show(const platform::shown_part& part) noexcept
{
    across = {positionAt(part.from), positionAt(part.to)};
}

raw_span pair_pane::physical(const raw_span& raw, const VLAxis& axis) noexcept
{
    if (raw.isEmpty()) return {0.0, 0.0};
    const double one = axis.at(raw.low), other = axis.at(raw.high);
    return {std::min(one, other), std::max(one, other)};
}

double pair_pane::share(double value, const raw_span& span) noexcept
{
    constexpr double middle = 0.5;
    return span.high > span.low ? (value - span.low) / (span.high - span.low) : middle;
}

CPoint pair_pane::point(double position, double value) const noexcept
{
    const int columns = size.cx - 1, rows = size.cy - 1;
    return {base::nearest_int(columns * shareOfX(position)), rows - base::nearest_int(rows * shareOfY(value))};
}

void pair_pane::line(const pair_series& series, std::size_t first, std::size_t end, CPoint origin,
                     std::vector<CPoint>& out) const
{
    out.clear();
    for (std::size_t i = first; i < end; ++i) {
        const CPoint at = point(series, i);
        const CPoint shown{origin.x + at.x, origin.y + at.y};
        if (out.empty() || out.back() != shown) out.push_back(shown);
    }
}

std::optional<std::size_t> pair_pane::nearestInX(const pair_series& series, double shareX) const
{
    const double wanted = positionAt(shareX);
    return smallest(series, [&](std::size_t i) { return std::fabs(position(series, i) - wanted); });
}

std::optional<std::size_t> pair_pane::nearest(const pair_series& series, double shareX, double shareY) const
{
    return smallest(series, [&](std::size_t i) {
        const double dx = (shareOfX(position(series, i)) - shareX) * size.cx;
        const double dy = (shareOfY(value(series, i)) - shareY) * size.cy;
        return dx * dx + dy * dy;
    });
}

} // namespace vldv::curves
