#include "platform/draw/part_control.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vldv::platform {

namespace {

constexpr double zoomStep = 1.25; // of a notch of the wheel
constexpr double notch = 120.0;

double columns_of(const CRect& pane) noexcept { return std::max(pane.Width() - 1.0, 1.0); }

} // namespace

bool part_control::change(const shown_part& wanted) noexcept { return std::exchange(shown, wanted) != wanted; }

bool part_control::turnWheel(int delta, CPoint at, const CRect& pane, std::uint32_t samples) noexcept
{
    if (at.x < pane.left || at.x >= pane.right) return false;
    return change(zoomed(shown, std::pow(zoomStep, delta / notch), (at.x - pane.left) / columns_of(pane), samples));
}

bool part_control::takeHold(CPoint at, const CRect& axis) noexcept
{
    if (shown.isWhole() || !axis.PtInRect(at)) return false;
    grip = {at.x, shown};
    return true;
}

bool part_control::drag(CPoint at, const CRect& pane) noexcept
{
    return grip && change(panned(grip->before, (grip->from - at.x) / columns_of(pane)));
}

} // namespace vldv::platform
