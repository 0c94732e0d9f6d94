#include "base/rounding.h"
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/DocTemplate.h"
#include "platform/FrameWnd.h"
#include "platform/WinApp.h"
#include "resources/menus.h"
#include "surface/SurfMathView.h"
#include "view/SectionSource.h"

#include <algorithm>
#include <cmath>

namespace {

enum command : unsigned {
    cmdAutoRefresh = 10014,
    cmdRefresh = 10016,
    cmdFileInfo = 10023,
    cmdRemoveMarks = 10027,
    cmdNumbered = 10028,
    cmdRemoveCurves = 10029,
    cmdCompact = 10082,
    cmdShowZScale = 10084,
    cmdSelectRoi = 10101,
    cmdClearRoi = 10102,
    cmdRememberPalette = 10112,
    cmdHighlight = 10191,
    cmdInvert = 10192,
    cmdFirstMarkStyle = 6101,
    cmdLastMarkStyle = 6102,
};
constexpr const char* profileSection = "SurfMathView";

void keep(const char* key, int value)
{
    if (CWinApp* const app = AfxGetApp()) app->profile().writeInt(profileSection, key, value);
}

} // namespace

bool CSurfMathView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    using view_class = CSurfMathView;
    static constexpr command_row<CSurfMathView> rows[] = {
        {cmdAutoRefresh, &view_class::OnAutoRefresh, &view_class::OnUpdateAutoRefresh},
        {cmdRefresh, &view_class::OnRefresh},
        {cmdFileInfo, &view_class::OnFileInfo, &view_class::OnUpdateFileInfo},
        {cmdRemoveMarks, &view_class::OnRemoveMarks, &view_class::OnUpdateRemoveMarks},
        {cmdNumbered, &view_class::OnNumbered, &view_class::OnUpdateNumbered},
        {cmdRemoveCurves, &view_class::OnRemoveCurves, &view_class::OnUpdateRemoveCurves},
        {cmdCompact, &view_class::OnCompact, &view_class::OnUpdateCompact},
        {cmdShowZScale, &view_class::OnShowZScale, &view_class::OnUpdateShowZScale},
        {cmdSelectRoi, &view_class::OnSelectRoi},
        {cmdClearRoi, &view_class::OnClearRoi, &view_class::OnUpdateClearRoi},
        {cmdRememberPalette, &view_class::OnRememberPalette, &view_class::OnUpdateRememberPalette},
        {cmdHighlight, &view_class::OnHighlight, &view_class::OnUpdateHighlight},
        {cmdInvert, &view_class::OnInvert, &view_class::OnUpdateInvert},
        {cmdFirstMarkStyle, cmdLastMarkStyle, &view_class::OnMarkStyle, &view_class::OnUpdateMarkStyle},
    };
    return dispatch_command<CSurfMathView>(*this, rows, id, ui) || CImageView::OnCmdMsg(id, ui);
}

void CSurfMathView::OnAutoRefresh()
{
    autoRefresh = !autoRefresh;
    keep("AutoRefresh", autoRefresh);
}
void CSurfMathView::OnUpdateAutoRefresh(CCmdUI& ui) { ui.SetCheck(autoRefresh); }
void CSurfMathView::OnRefresh() { RefreshDisplay(); }

void CSurfMathView::OnFileInfo() { toggle_option("ShowAdditionalLegend"); }
void CSurfMathView::OnUpdateFileInfo(CCmdUI& ui)
{
    ui.Enable(static_cast<bool>(options["ShowLegend"]));
    ui.SetCheck(static_cast<bool>(options["ShowAdditionalLegend"]));
}
void CSurfMathView::OnShowZScale() { toggle_option("ShowZScaleOpt"); }
void CSurfMathView::OnUpdateShowZScale(CCmdUI& ui)
{
    ui.Enable(static_cast<bool>(options["ShowLegend"]));
    ui.SetCheck(static_cast<bool>(options["ShowZScaleOpt"]));
}
void CSurfMathView::OnCompact() { toggle_option("CompactLegend"); }
void CSurfMathView::OnUpdateCompact(CCmdUI& ui) { ui.SetCheck(isCompact()); }
void CSurfMathView::OnHighlight() { toggle_option("highlight"); }
void CSurfMathView::OnUpdateHighlight(CCmdUI& ui) { ui.SetCheck(static_cast<bool>(options["highlight"])); }
void CSurfMathView::OnInvert() { toggle_option("invert"); }
void CSurfMathView::OnUpdateInvert(CCmdUI& ui) { ui.SetCheck(static_cast<bool>(options["invert"])); }

void CSurfMathView::OnRemoveMarks() { removeMarks(); }
void CSurfMathView::OnUpdateRemoveMarks(CCmdUI& ui) { ui.Enable(!drawn.marks.empty()); }
void CSurfMathView::OnRemoveCurves()
{
    drawn.curves.clear();
    drawn.measure.isVisible = false;
    Invalidate(true);
}
void CSurfMathView::OnUpdateRemoveCurves(CCmdUI& ui) { ui.Enable(!drawn.curves.empty()); }

void CSurfMathView::OnNumbered()
{
    marksNumbered = !marksNumbered;
    keep("MarksNumbered", marksNumbered);
    Invalidate(true);
}
void CSurfMathView::OnUpdateNumbered(CCmdUI& ui) { ui.SetCheck(marksNumbered); }

void CSurfMathView::OnMarkStyle(unsigned id)
{
    marksStyle = std::clamp(static_cast<int>(id - cmdFirstMarkStyle), 0, 1);
    keep("MarksStyle", marksStyle);
    Invalidate(true);
}
void CSurfMathView::OnUpdateMarkStyle(CCmdUI& ui)
{
    ui.SetRadio(static_cast<int>(ui.m_nID - cmdFirstMarkStyle) == marksStyle);
}

void CSurfMathView::OnSelectRoi()
{
    const CRect bounds = selectionBounds();
    drawn.roi = {bounds.left, bounds.top, bounds.right, bounds.bottom};
    const CRect whole(0, 0, static_cast<int>(getSourceWidth()), static_cast<int>(getSourceHeight()));
    drawn.roiActive = bounds != whole && !bounds.IsRectEmpty();
    GetDocument()->UpdateAllViews(nullptr, document::data_hint(imageNumber));
}
void CSurfMathView::OnClearRoi()
{
    drawn.roiActive = false;
    GetDocument()->UpdateAllViews(nullptr, document::data_hint(imageNumber));
}
void CSurfMathView::OnUpdateClearRoi(CCmdUI& ui) { ui.Enable(drawn.roiActive); }

/// Of the selected region within the window on show; the whole image without one.
CRect CSurfMathView::selectionBounds() const
{
    const CRect whole(0, 0, static_cast<int>(const_cast<CSurfMathView*>(this)->getSourceWidth()),
                      static_cast<int>(const_cast<CSurfMathView*>(this)->getSourceHeight()));
    if (!surface::is_region_mode(drawn.mode) || !drawn.selectionActive) return whole;
    CRect bounds;
    return bounds.IntersectRect(drawn.region.GetRgnBox(), sourceRect) ? bounds : whole;
}

void CSurfMathView::OnContextMenu(CPoint point)
{
    const auto isOn = [this](const char* option) { return static_cast<bool>(options[option]); };
    const std::vector<menu_row> rows = surface_context_menu(
        isOn("context_menu.cursor_mode"), isOn("context_menu.file_operations"), isOn("context_menu.filters"));
    CWinApp* const app = AfxGetApp();
    if (rows.empty() || !app) return OnViewPreferences();
    app->host().trackPopupMenu(rows, point, *this);
}

bool CSurfMathView::OnMouseWheel(unsigned flags, int delta, CPoint point)
{
    const CFrameWnd* const frame = GetParentFrame();
    const bool isAlone = fullscreenOn || (frame && frame->IsZoomed());
    constexpr unsigned modifiers = MK_SHIFT | MK_CONTROL;
    if (IsIconic() || !(isAlone || (flags & modifiers) == MK_CONTROL))
        return CImageView::OnMouseWheel(flags, delta, point);
    zoomSource(delta < 0 ? 1.2 : 1.0 / 1.2, {xclnt2src(point.x), yclnt2src(point.y)});
    return true;
}

void CSurfMathView::zoomSource(double factor, CPoint around)
{
    const CSize whole{static_cast<int>(getSourceWidth()), static_cast<int>(getSourceHeight())};
    const auto zoomed = [factor](int low, int length, int all, int at) {
        const int wanted = std::max(1, std::min(all, static_cast<int>(std::floor(length * factor))));
        const int distance = at - low;
        const int start = std::max(0, std::min(all - wanted, low + distance - base::nearest_int(distance * factor)));
        return std::pair{start, std::max(wanted, std::min(all, start + wanted))};
    };
    const auto [left, right] = zoomed(sourceRect.left, sourceRect.Width(), whole.cx, around.x);
    const auto [top, bottom] = zoomed(sourceRect.top, sourceRect.Height(), whole.cy, around.y);
    const CRect window(left, top, right, bottom);
    if (window == sourceRect) return;
    sourceRect = window;
    UpdateDisplayRect();
    RefreshDisplay();
    Invalidate(true);
    if (!getChildViews().empty()) getChildViews().front()->RefreshDisplay();
}
