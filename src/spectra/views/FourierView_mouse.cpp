// Areas and marks under the mouse and the keyboard.
#include "base/text.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/keys.h"
#include "spectra/figures/fourier.h"
#include "spectra/views/FourierView.h"

#include <algorithm>
#include <cmath>

using namespace vldv;

spectra::spectrum_control::pointer CFourierView::pointerAt(CPoint point) const
{
    constexpr double reach = 3.0; // pixels
    const double perX = double(sourceRect.Width()) / std::max(displayRect.Width(), 1);
    const double perY = double(sourceRect.Height()) / std::max(displayRect.Height(), 1);
    const int u = spectra::zero_frequency(spectrum.width()), v = spectra::zero_frequency(spectrum.height());
    return {{xclnt2src(point.x) - u, yclnt2src(point.y) - v},
            (point.x + 0.5 - displayRect.left) * perX + sourceRect.left - 0.5 - u,
            (displayRect.bottom - 0.5 - point.y) * perY + sourceRect.top - 0.5 - v,
            reach * perX,
            reach * perY};
}

/// What stands under the pointer, and how strong it is: in the unit of the heights, or its square.
void CFourierView::tellPointer(CPoint point)
{
    if (!IsGood() || !displayRect.PtInRect(point)) return forgetPlace();
    const CPoint bin = pointerAt(point).bin;
    const VLAxis& heights = valueAxis();
    const bool isPower = mode() == spectra::spectrum_mode::power;
    spectrum.setMode(mode());
    const double step = std::fabs(heights.scale), value = spectrum.at(bin) * (isPower ? step * step : step);
    setPlaceText(base::widen(spectra::wave_text(spectra::wave_at(grid(), bin.x, bin.y)) +
                             base::formatted("  (%d, %d)  %s: %lG %s%s", bin.x, bin.y, isPower ? "P" : "M", value,
                                             heights.get_units(), isPower && *heights.get_units() ? "^2" : "")));
}

void CFourierView::showCursor(CPoint point)
{
    using part = spectra::spectrum_control::part;
    if (!IsGood() || !displayRect.PtInRect(point)) return SetCursor(cursor_shape::arrow);
    switch (control.under(pointerAt(point))) {
    case part::nothing:
        return SetCursor(control.used == spectra::spectrum_control::tool::marks ? cursor_shape::crossMark
                         : shape() == spectra::selection_shape::elliptic        ? cursor_shape::crossEllipse
                                                                                : cursor_shape::crossRectangle);
    case part::side:
        return SetCursor(cursor_shape::pen);
    case part::inside:
    case part::mark:
        return SetCursor(cursor_shape::move);
    }
}

void CFourierView::redrawSelection() { InvalidateRect(displayRect, false); }

void CFourierView::OnMouseMove(unsigned flags, CPoint point)
{
    CImageView::OnMouseMove(flags, point);
    tellPointer(point);
    showCursor(point);
    if (!control.isHeld() || point == pressed) return;
    isClick = false;
    if (control.drag(pointerAt(point).bin, shownSize())) redrawSelection();
}

void CFourierView::OnLButtonDown(unsigned flags, CPoint point)
{
    CImageView::OnLButtonDown(flags, point);
    SetFocus();
    if (!IsGood() || !displayRect.PtInRect(point)) return;
    pressed = point;
    isClick = true;
    control.press(pointerAt(point), (flags & MK_SHIFT) != 0, (flags & MK_CONTROL) != 0);
    if (!control.isHeld()) return;
    SetCapture();
    redrawSelection();
}

void CFourierView::OnLButtonUp(unsigned flags, CPoint point)
{
    // A click selects nothing: a double click gives the window its size.
    const bool held = control.isHeld();
    if (isClick && control.isNewArea()) control.cancel();
    if (held) ReleaseCapture();
    OnCaptureChanged();
    redrawSelection();
    CImageView::OnLButtonUp(flags, point);
}

void CFourierView::OnCaptureChanged() { control.release(); }

/// With Ctrl, and where the window has no frame that could grow, the part that is shown grows or shrinks.
bool CFourierView::OnMouseWheel(unsigned flags, int delta, CPoint point)
{
    const CFrameWnd* const frame = GetParentFrame();
    const bool isAlone = isFullScreen() || (frame && frame->IsZoomed());
    constexpr unsigned modifiers = MK_SHIFT | MK_CONTROL;
    if (!IsGood() || !(isAlone || (flags & modifiers) == MK_CONTROL))
        return CImageView::OnMouseWheel(flags, delta, point);
    constexpr double notch = 1.2;
    const CRect part = view::zoomed_window(sourceRect, shownSize(), {xclnt2src(point.x), yclnt2src(point.y)},
                                           delta < 0 ? notch : 1.0 / notch);
    if (part == sourceRect) return true;
    sourceRect = part;
    UpdateDisplayRect();
    RefreshDisplay();
    return true;
}

/// Esc gives up what the mouse does, Delete removes what was touched last.
bool CFourierView::OnKeyDown(unsigned key)
{
    if (key == VK_ESCAPE && control.isHeld()) {
        control.cancel();
        ReleaseCapture();
        redrawSelection();
        return true;
    }
    if (key == VK_DELETE && control.removeLast()) {
        redrawSelection();
        return true;
    }
    return CImageView::OnKeyDown(key);
}
