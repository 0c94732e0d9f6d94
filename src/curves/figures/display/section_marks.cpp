#include "curves/figures/display/section_marks.h"

#include <algorithm>
#include <cmath>

namespace vldv::curves {

namespace {

constexpr double reach = 4.0; // pixels

const CRect& pane_of(int number, const mark_panes& panes) noexcept
{
    return number == spectrumMark ? panes.spectrum : panes.curve;
}

platform::shown_part part_of(int number, const mark_panes& panes) noexcept
{
    return number == spectrumMark ? platform::shown_part{} : panes.part;
}

double share_across(int number, CPoint at, const mark_panes& panes) noexcept
{
    const CRect& pane = pane_of(number, panes);
    const double across = static_cast<double>(at.x - pane.left) / std::max(pane.Width(), 1);
    return part_of(number, panes).fromPane(std::clamp(across, 0.0, 1.0));
}

/// A mark out of sight cannot be taken hold of, also not at the edge that it lies behind.
bool is_at_upright(const section_mark_set& marks, int number, CPoint at, const mark_panes& panes) noexcept
{
    const CRect& pane = pane_of(number, panes);
    const double share = part_of(number, panes).toPane(marks[number].x);
    return at.y >= pane.top && at.y < pane.bottom && share >= 0.0 && share <= 1.0 &&
           std::fabs(at.x - (pane.left + pane.Width() * share)) < reach;
}

bool is_at_level(const section_mark& mark, CPoint at, const CRect& pane) noexcept
{
    return at.x >= pane.left && at.x < pane.right && std::fabs(at.y - (pane.bottom - pane.Height() * mark.y)) < reach;
}

} // namespace

void section_mark_set::reset() noexcept
{
    marks[firstMark] = {1.0 / 3.0, 0.5};
    marks[secondMark] = {2.0 / 3.0, 0.5};
    marks[spectrumMark] = {};
}

int section_mark_set::under(CPoint at, marks_mode mode, const mark_panes& panes) const noexcept
{
    if (mode == marks_mode::verticalLines)
        for (const int number : {firstMark, secondMark})
            if (is_at_upright(*this, number, at, panes)) return number;
    if (mode == marks_mode::crossbar) {
        if (is_at_level((*this)[levelMark], at, panes.curve)) return levelMark;
        if (is_at_upright(*this, positionMark, at, panes)) return positionMark;
    }
    return is_at_upright(*this, spectrumMark, at, panes) ? int{spectrumMark} : int{noMark};
}

int section_mark_set::press(CPoint at, marks_mode mode, const mark_panes& panes) noexcept
{
    dragged = under(at, mode, panes);
    if (dragged == noMark && mode == marks_mode::verticalLines && panes.curve.PtInRect(at)) {
        for (const int number : {firstMark, secondMark}) (*this)[number].x = share_across(number, at, panes);
        dragged = secondMark;
    }
    return dragged;
}

bool section_mark_set::move(int number, CPoint at, const mark_panes& panes) noexcept
{
    section_mark& mark = (*this)[number];
    const CRect& pane = pane_of(number, panes);
    const double before = number == levelMark ? mark.y : mark.x;
    if (number == levelMark)
        mark.y = std::clamp(static_cast<double>(pane.bottom - at.y - 1) / std::max(pane.Height(), 1), 0.0, 1.0);
    else
        mark.x = share_across(number, at, panes);
    return before != (number == levelMark ? mark.y : mark.x);
}

std::set<int> active_marks(marks_mode mode)
{
    switch (mode) {
    case marks_mode::verticalLines:
        return {firstMark, secondMark};
    case marks_mode::crossbar:
        return {positionMark};
    case marks_mode::none:
        break;
    }
    return {};
}

} // namespace vldv::curves
