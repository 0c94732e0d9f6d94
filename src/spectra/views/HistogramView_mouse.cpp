// Delimiters that the mouse moves, and the part of the values that is shown.
#include "base/text.h"
#include "platform/app/keys.h"
#include "spectra/views/HistogramView.h"

#include <algorithm>

using namespace vldv;

/// From the top of the chart to its bottom, with the line in it.
CRect CHistogramView::delimiterRect(int number) const
{
    constexpr int around = 1;
    const int x = spectra::column_of(control.share(number), displayRect, partControl.part());
    return {x - around, displayRect.top, x + around + 1, displayRect.bottom};
}

void CHistogramView::invalidateDelimiters()
{
    for (const int number : {0, 1}) InvalidateRect(delimiterRect(number), false);
}

CRect CHistogramView::axisRect() const { return platform::axis_strip(displayRect, intOption("TextVertSpace")); }

void CHistogramView::showPart()
{
    RefreshDisplay();
    Invalidate(true); // numbers of the axis reach beyond the chart
}

/// The value under the pointer, and how many samples its bin holds.
void CHistogramView::tellPointer(CPoint point)
{
    if (!hasBars() || !displayRect.PtInRect(point)) return forgetPlace();
    const double share = std::clamp(
        partControl.part().fromPane((point.x - displayRect.left) / std::max(displayRect.Width() - 1.0, 1.0)), 0.0, 1.0);
    const double value = histogram.valueMin + share * (histogram.valueMax - histogram.valueMin);
    const std::uint32_t count = histogram.bins[spectra::bin_at(histogram, share)];
    setPlaceText(base::widen(base::formatted("X: %lG %s  N: %u", value, shownUnits.c_str(), count)));
}

void CHistogramView::OnMouseMove(unsigned flags, CPoint point)
{
    CImageView::OnMouseMove(flags, point);
    if (partControl.isHeld()) {
        if (partControl.drag(point, displayRect)) showPart();
        return SetCursor(cursor_shape::sizeHorizontal);
    }
    tellPointer(point);
    if (!control.isHeld()) {
        control.hover(point, displayRect, partControl.part());
        return SetCursor(control.hovered() == control.none ? cursor_shape::arrow : cursor_shape::sizeHorizontal);
    }
    const CRect before[] = {delimiterRect(0), delimiterRect(1)};
    if (!control.drag(point, displayRect, partControl.part())) return;
    for (const int number : {0, 1})
        if (before[number] != delimiterRect(number)) {
            InvalidateRect(before[number], false);
            InvalidateRect(delimiterRect(number), false);
        }
    updateText();
    InvalidateRect(textRect, true);
}

void CHistogramView::OnLButtonDown(unsigned flags, CPoint point)
{
    CImageView::OnLButtonDown(flags, point);
    SetFocus();
    const bool isHeld =
        partControl.takeHold(point, axisRect()) || control.press(point, displayRect, partControl.part());
    if (isHeld) SetCapture();
}

void CHistogramView::OnLButtonUp(unsigned flags, CPoint point)
{
    const bool hadDelimiters = control.isHeld();
    if (hadDelimiters || partControl.isHeld()) ReleaseCapture();
    OnCaptureChanged();
    if (hadDelimiters) delimitersReleased();
    CImageView::OnLButtonUp(flags, point);
}

void CHistogramView::OnCaptureChanged()
{
    control.release();
    partControl.letGo();
}

bool CHistogramView::OnMouseWheel(unsigned flags, int delta, CPoint point)
{
    if (flags != MK_CONTROL || !hasBars()) return CImageView::OnMouseWheel(flags, delta, point);
    if (partControl.turnWheel(delta, point, displayRect, static_cast<std::uint32_t>(histogram.bins.size()))) showPart();
    return true;
}

/// On the numbers all values are shown again; elsewhere the window gets its first size.
void CHistogramView::OnLButtonDblClk(unsigned, CPoint point)
{
    if (axisRect().PtInRect(point)) {
        if (partControl.reset()) showPart();
        return;
    }
    keepSize(firstSize);
    SetTextPos();
    Invalidate(true);
}
