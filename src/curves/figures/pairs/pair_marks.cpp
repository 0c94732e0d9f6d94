#include "curves/figures/pairs/pair_marks.h"

#include <algorithm>
#include <cmath>

namespace vldv::curves {

std::span<const int> pair_mark_set::shownIn(pair_marks_mode mode) noexcept
{
    static constexpr int pair[] = {first, second}, one[] = {bar};
    if (mode == pair_marks_mode::crossbar) return one;
    return pair;
}

int pair_mark_set::under(CPoint at, int tolerance, pair_marks_mode mode, const CRect& pane) const noexcept
{
    for (const int number : shownIn(mode)) {
        const pair_mark& mark = (*this)[number];
        if (std::fabs(at.x - (pane.left + pane.Width() * mark.x)) < tolerance &&
            std::fabs(at.y - (pane.bottom - pane.Height() * mark.y)) < tolerance)
            return number;
    }
    return none;
}

void pair_mark_set::stand(pair_mark& mark, std::size_t sample, const pair_pane& pane,
                          const pair_series& series) noexcept
{
    mark = {pane.shareOfX(pane.position(series, sample)), pane.shareOfY(pane.value(series, sample)), sample};
}

bool pair_mark_set::settle(int number, pair_marks_mode mode, const pair_pane& pane, const pair_series& series)
{
    pair_mark& mark = (*this)[number];
    const auto found =
        mode == pair_marks_mode::crossbar ? pane.nearest(series, mark.x, mark.y) : pane.nearestInX(series, mark.x);
    const bool hasMoved = found != mark.sample;
    mark.sample.reset();
    if (found) stand(mark, *found, pane, series);
    return hasMoved;
}

bool pair_mark_set::move(int number, CPoint at, pair_marks_mode mode, const CRect& place, const pair_pane& pane,
                         const pair_series& series)
{
    pair_mark& mark = (*this)[number];
    mark.x = std::clamp(static_cast<double>(at.x - place.left) / std::max(place.Width() - 1, 1), 0.0, 1.0);
    mark.y = std::clamp(static_cast<double>(place.bottom - 1 - at.y) / std::max(place.Height() - 1, 1), 0.0, 1.0);
    return settle(number, mode, pane, series);
}

void pair_mark_set::stay(const pair_pane& pane, const pair_series& series) noexcept
{
    for (pair_mark& mark : marks)
        if (mark.sample && *mark.sample < series.size()) stand(mark, *mark.sample, pane, series);
}

bool pair_mark_set::step(int number, int by, const pair_pane& pane, const pair_series& series)
{
    pair_mark& mark = (*this)[number];
    if (!mark.sample || by == 0) return false;
    if (pane.position(series, series.size() - 1) < pane.position(series, 0)) by = -by;
    for (auto at = static_cast<std::ptrdiff_t>(*mark.sample) + by;
         at >= 0 && at < static_cast<std::ptrdiff_t>(series.size()); at += by)
        if (series.isMeasured(static_cast<std::size_t>(at))) {
            stand(mark, static_cast<std::size_t>(at), pane, series);
            return true;
        }
    return false;
}

} // namespace vldv::curves
