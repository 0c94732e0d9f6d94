// Marks that mouse and keys move along the curve.
#include "base/text.h"
#include "curves/figures/display/pointer_text.h"
#include "curves/views/ParametricCurveView.h"
#include "platform/app/keys.h"

#include <algorithm>
#include <limits>

using namespace vldv;

namespace {

constexpr int reach = 4; // pixels
constexpr int mostWidth = 512, usualHeight = 320;

} // namespace

bool CParametricCurveView::FindMarkXY(CPoint at, int tolerance, int* mark) const
{
    const bool isShown = IsGood() && isOptionOn("ShowMarks");
    const int found = isShown ? marks.under(at, tolerance, marksMode(), displayRect) : int{curves::pair_mark_set::none};
    if (mark) *mark = found;
    return found != curves::pair_mark_set::none;
}

double CParametricCurveView::FindMarkY(int mark) const
{
    const auto sample = mark >= 0 && mark < static_cast<int>(marks.marks.size()) ? marks[mark].sample : std::nullopt;
    if (!sample || *sample >= active.size()) return std::numeric_limits<double>::quiet_NaN();
    return axisY().at(active.y[*sample]);
}

void CParametricCurveView::settleMarks()
{
    for (const int mark : curves::pair_mark_set::shownIn(marksMode())) marks.settle(mark, marksMode(), pane, active);
    for (int mark = 0; mark < static_cast<int>(markY.size()); ++mark)
        markY[static_cast<std::size_t>(mark)] = FindMarkY(mark);
}

void CParametricCurveView::invalidateMark(int mark)
{
    constexpr int around = 7; // pixels of a cross and its dot
    const CPoint at = placeOf(mark);
    if (marksMode() == curves::pair_marks_mode::crosses)
        return InvalidateRect({at.x - around, at.y - around, at.x + around, at.y + around}, false);
    InvalidateRect({at.x - around, displayRect.top, at.x + around, displayRect.bottom}, false);
    if (marksMode() == curves::pair_marks_mode::crossbar)
        InvalidateRect({displayRect.left, at.y - around, displayRect.right, at.y + around}, false);
}

void CParametricCurveView::markMoved(int mark)
{
    markY[static_cast<std::size_t>(mark)] = FindMarkY(mark);
    updateText();
    invalidateMark(mark);
    InvalidateRect(textRect, true);
}

void CParametricCurveView::SetDefaultCursor()
{
    SetCursor(marks.active == curves::pair_mark_set::none ? cursor_shape::arrow : cursor_shape::sizeHorizontal);
}

/// Position and value of the active curve's pair that is nearest to the pointer in X.
void CParametricCurveView::tellPointer(CPoint point)
{
    const CRect& place = displayRect;
    if (!IsGood() || !place.PtInRect(point)) return forgetPlace();
    const auto nearest = pane.nearestInX(active, (point.x - place.left) / std::max(place.Width() - 1.0, 1.0));
    if (!nearest) return forgetPlace();
    const double x = pane.position(active, *nearest), y = pane.value(active, *nearest);
    setPlaceText(base::widen(curves::pointer_text(x, axisX().get_units(), y, axisY().get_units())));
}

void CParametricCurveView::OnMouseMove(unsigned flags, CPoint point)
{
    CImageView::OnMouseMove(flags, point);
    if (partControl.isHeld()) {
        if (partControl.drag(point, displayRect)) showPart();
        return SetCursor(cursor_shape::sizeHorizontal);
    }
    tellPointer(point);
    if (!marks.isDragging) {
        FindMarkXY(point, reach, &marks.active);
        return SetDefaultCursor();
    }
    invalidateMark(marks.active);
    if (marks.move(marks.active, point, marksMode(), displayRect, pane, active)) markMoved(marks.active);
}

void CParametricCurveView::OnLButtonDown(unsigned flags, CPoint point)
{
    CImageView::OnLButtonDown(flags, point);
    SetFocus();
    if (IsGood() && partControl.takeHold(point, axisRect())) return SetCapture();
    if (!FindMarkXY(point, reach, &marks.active)) return;
    marks.isDragging = true;
    SetCapture();
    SetDefaultCursor();
}

void CParametricCurveView::OnLButtonUp(unsigned flags, CPoint point)
{
    if (marks.isDragging || partControl.isHeld()) ReleaseCapture();
    OnCaptureChanged();
    CImageView::OnLButtonUp(flags, point);
}

void CParametricCurveView::OnCaptureChanged()
{
    marks.isDragging = false;
    marks.active = curves::pair_mark_set::none;
    partControl.letGo();
}

CRect CParametricCurveView::axisRect() const
{
    constexpr int height = 20; // pixels of the numbers below the pane
    return platform::axis_strip(displayRect, height);
}

void CParametricCurveView::showPart()
{
    if (!IsGood()) return;
    drawAgain();
    marks.stay(pane, active);
    updateText();
    Invalidate(true); // texts of the axis reach beyond the pane
}

bool CParametricCurveView::OnMouseWheel(unsigned flags, int delta, CPoint point)
{
    if (flags != MK_CONTROL || !IsGood()) return CImageView::OnMouseWheel(flags, delta, point);
    if (partControl.turnWheel(delta, point, displayRect, static_cast<std::uint32_t>(active.size()))) showPart();
    return true;
}

void CParametricCurveView::OnLButtonDblClk(unsigned, CPoint point)
{
    if (axisRect().PtInRect(point)) {
        if (partControl.reset()) showPart();
        return;
    }
    if (textRect.PtInRect(point)) return OnTypeMarks();
    marks = {};
    Resize(mostWidth, usualHeight);
}

/// The crossbar, or the second mark, goes on by a sample.
bool CParametricCurveView::OnKeyDown(unsigned key)
{
    const int by = (key == VK_RIGHT) - (key == VK_LEFT);
    const int mark = curves::pair_mark_set::shownIn(marksMode()).back();
    bool isOurs = false;
    if (by != 0 && IsGood() && isOptionOn("ShowMarks")) {
        invalidateMark(mark);
        isOurs = marks.step(mark, by, pane, active);
        if (isOurs) markMoved(mark);
    }
    return CImageView::OnKeyDown(key) || isOurs;
}
