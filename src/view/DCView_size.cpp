#include "base/streams/rounding.h"
#include "base/variables/global_option.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "platform/app/dpi.h"
#include "view/DCView.h"
#include "view/frame/open_view.h"

using namespace vldv;

namespace {

constexpr int usualLimit = 512; ///< pixels of a display side, at 96 dots per inch
constexpr double zoomIn = 1.2, zoomOut = 0.8333333333333334;

int nearest(double value) { return static_cast<int>(base::round_half_up(value)); }

/// Windows are sized before their options are loaded: 0 then.
int early(const SPMVarList& options, const char* name) { return static_cast<int>(options[name]); }

} // namespace

void CDCView::CountDisplayRect()
{
    displayRect = GetClientRect();
    displayRect.left += early(options, "LeftMargin");
    displayRect.top += early(options, "TopMargin");
    displayRect.right -= early(options, "RightMargin");
    displayRect.bottom -= early(options, "BottomMargin");
}

void CDCView::UpdateDisplayRect()
{
    CountDisplayRect();
    // Painting counts it as well, and may come before the window is told of its size.
    if ((displayRect == titledRect && sourceRect == titledSource) || !IsWindowVisible()) return;
    titledRect = displayRect;
    titledSource = sourceRect;
    forgetPlace(); // something else is under the pointer
    if (CFrameWnd* const frame = GetParentFrame()) frame->OnUpdateFrameTitle(true);
}

void CDCView::OnSize(CSize)
{
    UpdateDisplayRect();
    createImage(true);
    RefreshDisplay();
}

void CDCView::src2clnt(CPoint* points, int count) const noexcept
{
    for (int i = 0; i < count; ++i) points[i] = {xsrc2clnt(points[i].x), ysrc2clnt(points[i].y)};
}

void CDCView::clnt2src(CPoint* points, int count) const noexcept
{
    for (int i = 0; i < count; ++i) points[i] = {xclnt2src(points[i].x), yclnt2src(points[i].y)};
}

void CDCView::GetAspectRatio(double& x, double& y)
{
    x = sourceRect.Width() ? static_cast<double>(displayRect.Width()) / sourceRect.Width() : 1.0;
    y = sourceRect.Height() ? static_cast<double>(displayRect.Height()) / sourceRect.Height() : 1.0;
}

void CDCView::GetBestSize(int& cx, int& cy)
{
    // Some views alone have these options.
    CSize limit{CorrectDPISize(early(options, "default_width")), CorrectDPISize(early(options, "default_height"))};
    if (limit.cx <= 0) limit.cx = CorrectDPISize(usualLimit);
    if (limit.cy <= 0) limit.cy = CorrectDPISize(usualLimit);
    const CSize best = view::best_size({cx, cy}, limit);
    cx = best.cx;
    cy = best.cy;
}

void CDCView::AdjustParentSize(int cx, int cy, bool adjustContent)
{
    if (fullscreenOn) SwitchFullScreen();
    CSize content{cx, cy};
    if (adjustContent) AdjustContentSize(content);
    if (!getPeer()) return;
    const CRect shown = displayRect;
    const CSize before = GetClientRect().Size(), around = marginSize();
    const CSize outer = getPeer()->outerSize({content.cx + around.cx, content.cy + around.cy});
    SetWindowSize(outer);
    if (CFrameWnd* const frame = GetParentFrame()) frame->fitToView(outer);
    // A window that keeps its size, as in a maximised frame, is told of nothing, but its margins may be others.
    if (!hasOpened || GetClientRect().Size() != before) return;
    CountDisplayRect();
    if (displayRect != shown) OnSize(before);
}

CSize CDCView::largestDisplay()
{
    CWinApp* const app = AfxGetApp();
    const IScreen* const screen = app ? app->host().screen() : nullptr;
    return view::largest_display(screen ? screen->monitors() : std::vector<CRect>());
}

CSize CDCView::marginSize() const
{
    return {early(options, "LeftMargin") + early(options, "RightMargin"),
            early(options, "TopMargin") + early(options, "BottomMargin")};
}

CSize CDCView::fittingArea(CSize display) const
{
    CWinApp* const app = AfxGetApp();
    const CRect area = app ? app->host().frameArea() : CRect();
    const CFrameWnd* const frame = GetParentFrame();
    if (area.IsRectEmpty() || !frame) return display;
    const CSize outer = frame->GetWindowRect().Size(), inside = GetClientRect().Size(), margins = marginSize();
    return view::shrunk_into(display, {area.Width() - (outer.cx - inside.cx) - margins.cx,
                                       area.Height() - (outer.cy - inside.cy) - margins.cy});
}

void CDCView::bringFrameInside()
{
    if (CFrameWnd* const frame = GetParentFrame()) view::bring_inside(*frame);
}

bool CDCView::OnMouseWheel(unsigned flags, int delta, CPoint point)
{
    const CFrameWnd* const frame = GetParentFrame();
    if (IsIconic() || (frame && (frame->IsIconic() || frame->IsZoomed()))) return false;
    if (flags != MK_SHIFT) return false;
    const CSize client = GetClientRect().Size(), around = marginSize();
    const CSize corner{early(options, "LeftMargin"), early(options, "TopMargin")};
    const CSize room{client.cx - around.cx, client.cy - around.cy};
    const double factor =
        view::bounded_zoom(delta >= 0 ? zoomIn : zoomOut, room, view::smallestPicture, largestDisplay());
    if (factor == 1.0) return true; // as far as it goes
    AdjustParentSize(nearest(room.cx * factor), nearest(room.cy * factor), true);
    if (CWnd* const window = GetParent()) {
        // What is under the pointer stays there.
        const CPoint at = point - corner;
        CRect place = window->GetParent() ? window->GetParent()->ScreenToClient(window->GetWindowRect())
                                          : window->GetWindowRect();
        place.OffsetRect(at.x - nearest(at.x * factor), at.y - nearest(at.y * factor));
        window->MoveWindow(place);
    }
    return true;
}

void CDCView::OnMouseMove(unsigned, CPoint) { SetCursor(cursor_shape::arrow); }

void CDCView::OnLButtonDblClk(unsigned, CPoint) { adjustToBestSize(); }

void CDCView::adjustToBestSize()
{
    int width = static_cast<int>(getSourceWidth()), height = static_cast<int>(getSourceHeight());
    GetBestSize(width, height);
    AdjustParentSize(width, height, true);
}

void CDCView::OnViewActualpixels()
{
    sourceRect = CRect(0, 0, static_cast<int>(getSourceWidth()), static_cast<int>(getSourceHeight()));
    AdjustParentSize(sourceRect.Width(), sourceRect.Height(), true);
    if (CFrameWnd* const frame = GetParentFrame()) frame->OnUpdateFrameTitle(true);
    RefreshDisplay();
}

void CDCView::OnUpdateViewActualpixels(CCmdUI& ui) { ui.SetCheck(displayRect.Size() == sourceRect.Size()); }

void CDCView::SwitchFullScreen()
{
    if (fullscreenOn)
        leaveFullScreen();
    else
        enterFullScreen();
}

void CDCView::enterFullScreen()
{
    CWinApp* const app = AfxGetApp();
    IScreen* const screen = app ? app->host().screen() : nullptr;
    if (!screen || !getPeer()) return;
    beforeFullScreen.window = GetParent() ? GetParent()->ScreenToClient(GetWindowRect()) : GetWindowRect();
    beforeFullScreen.source = sourceRect.Size();
    const int mode =
        ForceFullscreenStretchMode() ? view::allMonitors : static_cast<int>(base::global_option("fullscreen_mode"));
    const view::full_screen_place place = view::place_full_screen(
        screen->monitors(), mode, static_cast<int>(base::global_option("fullscreen_monitor")), app->host().frameArea());
    fullscreenOn = true;
    getPeer()->setFullScreen(true, place.target);
    screen->setPointer(place.pointerSpot);
    if (CWnd* const parent = GetParent()) parent->ShowWindow(false);
}

void CDCView::leaveFullScreen()
{
    fullscreenOn = false; // first: fitting the frame would leave it again
    if (getPeer()) getPeer()->setFullScreen(false, beforeFullScreen.window);
    int width = beforeFullScreen.source.cx, height = beforeFullScreen.source.cy;
    GetBestSize(width, height);
    AdjustParentSize(width, height, false);
    CWnd* const parent = GetParent();
    if (parent) parent->ShowWindow(true);
    CWinApp* const app = AfxGetApp();
    const CPoint middle = beforeFullScreen.window.CenterPoint();
    if (IScreen* const screen = app ? app->host().screen() : nullptr)
        screen->setPointer(parent ? parent->ClientToScreen(middle) : middle);
}

void CDCView::OnClose()
{
    if (fullscreenOn) SwitchFullScreen();
}

bool CDCView::OnKeyDown(unsigned key)
{
    CWinApp* const app = AfxGetApp();
    const IScreen* const screen = app ? app->host().screen() : nullptr;
    const bool isControl = screen && screen->isKeyDown(VK_CONTROL);
    const bool leaves = key == VK_ESCAPE || (key == 'F' && isControl);
    if (!fullscreenOn || !leaves) return !isControl && zoomByKey(key);
    SwitchFullScreen();
    return true;
}

/// "+" and "-" are a notch of the wheel about the upper left corner, "0" is the usual size.
bool CDCView::zoomByKey(unsigned key)
{
    constexpr int notch = 120;
    const CPoint corner{early(options, "LeftMargin"), early(options, "TopMargin")};
    if (key == VK_ADD || key == VK_SUBTRACT) return OnMouseWheel(MK_SHIFT, key == VK_ADD ? notch : -notch, corner);
    const CFrameWnd* const frame = GetParentFrame();
    if (key != '0' || (frame && frame->IsZoomed())) return false;
    CDCView::OnLButtonDblClk(0, corner);
    return true;
}

void CDCView::PositionWindowNearby(CWnd* window, int step, LegendOffset offset)
{
    CWnd* const anchor = GetParent();
    CWinApp* const app = AfxGetApp();
    if (!window || !anchor || !app || !app->host().screen()) return;
    const CRect around = anchor->GetWindowRect(), own = window->GetWindowRect();
    const int shift = step * app->host().screen()->captionHeight();
    CPoint place{around.left + shift, around.top + shift};
    if (offset == legendUp) place.y = around.top - own.Height() + shift;
    if (offset == legendDown) place.y = around.bottom + shift;
    if (offset == legendRight) place.x = around.right + shift;
    if (offset == legendLeft) place.x = around.left - own.Width() + shift;
    // Frames stay inside the main window, along the side that they are put on.
    const CRect area = app->host().frameArea();
    if (!area.IsRectEmpty()) {
        if (offset == legendUp || offset == legendDown)
            place.x = std::max(area.left, std::min(place.x, area.right - own.Width()));
        else
            place.y = std::max(area.top, std::min(place.y, area.bottom - own.Height()));
    }
    CRect target(place, own.Size());
    if (CWnd* const parent = window->GetParent()) target = parent->ScreenToClient(target);
    window->MoveWindow(target);
    if (window->getPeer()) window->getPeer()->bringToFront();
}
