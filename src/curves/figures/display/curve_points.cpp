#include "curves/figures/display/curve_points.h"

#include "base/streams/rounding.h"
#include "primitives/map/range.h"

#include <algorithm>
#include <cmath>

namespace vldv::curves {

namespace {

/// Behind the last of `count` samples, numbered from `offset`, that stand in the column of sample `from`. Columns rise
/// with the samples.
std::size_t end_of_column(const curve_pane& pane, std::size_t from, std::size_t count, std::size_t offset)
{
    const auto columnOf = [&](std::size_t i) { return pane.column(static_cast<double>(offset + i)); };
    const int column = columnOf(from);
    const double guess = (column + 0.5) * pane.samplesPerColumn() + pane.firstShown() - static_cast<double>(offset);
    std::size_t end = std::clamp(static_cast<std::size_t>(std::max(guess, 0.0)), from + 1, count);
    while (end > from + 1 && columnOf(end - 1) > column) --end;
    while (end < count && columnOf(end) <= column) ++end;
    return end;
}

/// The samples of the columns in sight and one beyond on either side; `first` becomes the number of the first of them.
std::span<const std::int16_t> in_sight(std::span<const std::int16_t> curve, const curve_pane& pane, std::size_t& first)
{
    if (pane.part.isWhole()) return curve;
    const double beyond = 0.5 * pane.samplesPerColumn() + 1.0; // half of an edge's column lies outside
    const auto inside = [&](double sample) {
        return static_cast<std::size_t>(
            std::clamp(sample - static_cast<double>(first), 0.0, static_cast<double>(curve.size())));
    };
    const std::size_t from = inside(std::floor(pane.firstShown() - beyond)),
                      end = inside(std::ceil(pane.lastShown() + beyond) + 1.0);
    first += from;
    return curve.subspan(from, end - from);
}

} // namespace

void curve_points_reference(std::span<const std::int16_t> curve, const curve_pane& pane, std::size_t first,
                            CPoint origin, std::vector<CPoint>& out)
{
    out.clear();
    for (std::size_t i = 0; i < curve.size(); ++i)
        out.push_back({origin.x + pane.column(static_cast<double>(first + i)), origin.y + pane.row(curve[i])});
}

void curve_points(std::span<const std::int16_t> whole, const curve_pane& pane, std::size_t first, CPoint origin,
                  std::vector<CPoint>& out)
{
    const std::span<const std::int16_t> curve = in_sight(whole, pane, first);
    constexpr double mostAlone = 4.0; // so many points stand for the samples of a column
    if (pane.samplesPerColumn() <= mostAlone) return curve_points_reference(curve, pane, first, origin, out);
    out.clear();
    for (std::size_t from = 0; from < curve.size();) {
        const std::size_t end = end_of_column(pane, from, curve.size(), first);
        const int x = origin.x + pane.column(static_cast<double>(first + from));
        const primitives::height_range range = primitives::find_range(curve.subspan(from, end - from));
        const int entry = curve[from], exit = curve[end - 1];
        // The shorter way through both extremes.
        const bool isRising = entry - exit <= 0;
        const int near = isRising ? range.minimum : range.maximum, far = isRising ? range.maximum : range.minimum;
        for (const int raw : {entry, near, far, exit}) out.push_back({x, origin.y + pane.row(raw)});
        from = end;
    }
}

double raw_between(std::span<const std::int16_t> curve, double at) noexcept
{
    const double inside = std::clamp(at, 0.0, static_cast<double>(curve.size() - 1));
    const auto below = static_cast<std::size_t>(std::floor(inside)),
               above = static_cast<std::size_t>(std::ceil(inside));
    return base::round_half_up(curve[below] + (curve[above] - curve[below]) * (inside - std::floor(inside)));
}

} // namespace vldv::curves
