#include "spectra/figures/delimiter_control.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vldv::spectra {

namespace {

/// The share of the whole axis under the pointer; beyond the pane it goes on.
double share_under(CPoint pointer, const CRect& pane, const platform::shown_part& part) noexcept
{
    return part.fromPane(static_cast<double>(pointer.x - pane.left) / std::max(pane.Width(), 1));
}

} // namespace

int column_of(double share, const CRect& pane, const platform::shown_part& part) noexcept
{
    return pane.left + base::nearest_int(part.toPane(share) * (pane.Width() - 1));
}

int delimiter_control::under(CPoint pointer, const CRect& pane, const platform::shown_part& part) const noexcept
{
    constexpr double reach = 4.0; // pixels
    if (pointer.y < pane.top || pointer.y >= pane.bottom) return none;
    for (const int number : {0, 1})
        if (std::fabs(pointer.x - (pane.Width() * part.toPane(share(number)) + pane.left)) < reach) return number;
    return none;
}

bool delimiter_control::press(CPoint pointer, const CRect& pane, const platform::shown_part& part) noexcept
{
    if (!pane.PtInRect(pointer) && under(pointer, pane, part) == none) return false;
    grip = over = under(pointer, pane, part);
    if (grip != none) return true;
    grip = both;
    gripShare = share_under(pointer, pane, part);
    before = at;
    return true;
}

bool delimiter_control::put(int number, double share) noexcept
{
    double& moved = number == 0 ? at.f1 : at.f2;
    const double wanted = std::clamp(share, 0.0, 1.0);
    return std::exchange(moved, wanted) != wanted;
}

bool delimiter_control::drag(CPoint pointer, const CRect& pane, const platform::shown_part& part) noexcept
{
    if (!isHeld()) return false;
    const double now = share_under(pointer, pane, part);
    if (grip != both) return put(grip, now);
    const auto [low, high] = std::minmax(before.f1, before.f2);
    const double by = std::clamp(now - gripShare, -low, 1.0 - high);
    const bool first = put(0, before.f1 + by), second = put(1, before.f2 + by);
    return first || second;
}

} // namespace vldv::spectra
