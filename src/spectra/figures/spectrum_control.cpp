#include "spectra/figures/spectrum_control.h"

#include "spectra/figures/fourier.h"
#include "spectra/figures/fourier_selection.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vldv::spectra {

namespace {

bool holds(const CRect& area, CPoint bin) noexcept
{
    return bin.x >= area.left && bin.x <= area.right && bin.y >= area.top && bin.y <= area.bottom;
}

CRect mirror_of(const CRect& area) noexcept
{
    CRect mirrored = mirror_rect(area);
    mirrored.NormalizeRect();
    return mirrored;
}

CPoint clamped(CPoint bin, const CRect& bounds) noexcept
{
    return {std::clamp(bin.x, bounds.left, bounds.right), std::clamp(bin.y, bounds.top, bounds.bottom)};
}

/// The side of a span that a place meets: -1 the first, 1 the last, 0 none.
int side_at(int first, int last, double place, double reach) noexcept
{
    const double toFirst = std::fabs(place - (first - 0.5)), toLast = std::fabs(place - (last + 0.5));
    if (std::min(toFirst, toLast) > reach) return 0;
    return toFirst < toLast ? -1 : 1;
}

/// Half a span's width, so that a small area can still be moved.
double inner_reach(int first, int last, double reach) noexcept { return std::min(reach, (last - first + 1) / 4.0); }

/// As far as both sides stay inside of the bounds.
CRect moved(const CRect& area, CSize by, const CRect& bounds) noexcept
{
    const int x = std::clamp(by.cx, bounds.left - area.left, bounds.right - area.right);
    const int y = std::clamp(by.cy, bounds.top - area.top, bounds.bottom - area.bottom);
    return {area.left + x, area.top + y, area.right + x, area.bottom + y};
}

} // namespace

CRect spectrum_bounds(CSize size) noexcept
{
    const int left = -zero_frequency(size.cx), top = -zero_frequency(size.cy);
    return {left, top, left + size.cx - 1, top + size.cy - 1};
}

void spectrum_control::clearAreas() noexcept
{
    rects.clear();
    release();
}

void spectrum_control::clearMarks() noexcept
{
    points.clear();
    release();
}

void spectrum_control::setMarks(std::vector<CPoint> marks_)
{
    points = std::move(marks_);
    release();
}

void spectrum_control::keepWithin(CSize size)
{
    const CRect bounds = spectrum_bounds(size);
    const auto isOutside = [&](const CRect& area) {
        return !holds(bounds, area.TopLeft()) || !holds(bounds, {area.right, area.bottom});
    };
    const std::size_t dropped =
        std::erase_if(rects, isOutside) + std::erase_if(points, [&](CPoint bin) { return !holds(bounds, bin); });
    if (dropped != 0) release();
}

/// The last one drawn first: it lies above the others.
std::optional<spectrum_control::hit> spectrum_control::areaUnder(const pointer& at) const
{
    for (std::size_t i = rects.size(); i-- > 0;)
        for (const bool isMirrored : {false, true}) {
            const CRect area = isMirrored ? mirror_of(rects[i]) : rects[i];
            const bool isNear = at.x > area.left - 0.5 - at.reachX && at.x < area.right + 0.5 + at.reachX &&
                                at.y > area.top - 0.5 - at.reachY && at.y < area.bottom + 0.5 + at.reachY;
            if (!isNear) continue;
            const bool isInside = holds(area, at.bin);
            const double x = isInside ? inner_reach(area.left, area.right, at.reachX) : at.reachX;
            const double y = isInside ? inner_reach(area.top, area.bottom, at.reachY) : at.reachY;
            return hit{i, isMirrored, side_at(area.left, area.right, at.x, x), side_at(area.top, area.bottom, at.y, y)};
        }
    return std::nullopt;
}

std::optional<std::size_t> spectrum_control::markUnder(const pointer& at) const
{
    for (std::size_t i = 0; i < points.size(); ++i)
        if (points[i] == at.bin ||
            (std::fabs(points[i].x - at.x) <= at.reachX && std::fabs(points[i].y - at.y) <= at.reachY))
            return i;
    return std::nullopt;
}

spectrum_control::part spectrum_control::under(const pointer& at) const
{
    if (used == tool::marks) return markUnder(at) ? part::mark : part::nothing;
    const auto found = areaUnder(at);
    if (!found) return part::nothing;
    return found->sideX != 0 || found->sideY != 0 ? part::side : part::inside;
}

void spectrum_control::hold(const hit& what, CPoint from, const CRect& area, CPoint mark)
{
    grip = {what, from, area, mark, rects, points};
}

void spectrum_control::press(const pointer& at, bool shift, bool control)
{
    if (used == tool::areas)
        pressArea(at, shift, control);
    else
        pressMark(at, shift);
}

void spectrum_control::pressArea(const pointer& at, bool shift, bool control)
{
    const std::optional<hit> found = shift ? std::nullopt : areaUnder(at);
    if (!found) {
        if (control) return;
        hold({rects.size(), false, 1, 1}, at.bin, {at.bin.x, at.bin.y, at.bin.x, at.bin.y}, {});
        rects.push_back(grip->area);
        return;
    }
    if (control) {
        hold(*found, at.bin, {}, {});
        rects.erase(rects.begin() + static_cast<std::ptrdiff_t>(found->number));
        return;
    }
    const CRect area = found->isMirrored ? mirror_of(rects[found->number]) : rects[found->number];
    // What is touched lies above the others and is the one that the keyboard deletes.
    std::rotate(rects.begin() + static_cast<std::ptrdiff_t>(found->number),
                rects.begin() + static_cast<std::ptrdiff_t>(found->number) + 1, rects.end());
    hold({rects.size() - 1, found->isMirrored, found->sideX, found->sideY}, at.bin, area, {});
}

void spectrum_control::pressMark(const pointer& at, bool shift)
{
    const std::optional<std::size_t> found = markUnder(at);
    if (found && !shift) {
        hold({points.size(), false, 0, 0}, at.bin, {}, {});
        points.erase(points.begin() + static_cast<std::ptrdiff_t>(*found));
        return;
    }
    hold({found.value_or(points.size()), false, 0, 0}, at.bin, {}, found ? points[*found] : at.bin);
    if (!found) points.push_back(at.bin);
}

bool spectrum_control::drag(CPoint bin, CSize size)
{
    if (!grip) return false;
    const CRect bounds = spectrum_bounds(size);
    const hit& what = grip->what;
    const CSize by = bin - grip->from;
    if (used == tool::marks) {
        if (what.number >= points.size()) return false; // deleted by the press
        const CPoint wanted = clamped(grip->mark + by, bounds);
        return std::exchange(points[what.number], wanted) != wanted;
    }
    if (what.number >= rects.size()) return false;
    CRect area = grip->area;
    if (what.sideX == 0 && what.sideY == 0) {
        // The bounds of an even size are not symmetric; an area that is moved by its mirror image keeps within both.
        area = moved(area, by, what.isMirrored ? mirror_of(bounds) : bounds);
    } else {
        const CPoint to = clamped(bin, bounds);
        if (what.sideX != 0) (what.sideX < 0 ? area.left : area.right) = to.x;
        if (what.sideY != 0) (what.sideY < 0 ? area.top : area.bottom) = to.y;
        area.NormalizeRect();
    }
    const CRect wanted = what.isMirrored ? mirror_of(area) : area;
    return std::exchange(rects[what.number], wanted) != wanted;
}

void spectrum_control::cancel()
{
    if (!grip) return;
    rects = std::move(grip->rectsBefore);
    points = std::move(grip->pointsBefore);
    grip.reset();
}

bool spectrum_control::removeLast()
{
    release();
    const bool has = used == tool::areas ? !rects.empty() : !points.empty();
    if (has && used == tool::areas) rects.pop_back();
    if (has && used == tool::marks) points.pop_back();
    return has;
}

} // namespace vldv::spectra
