#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/DocTemplate.h"
#include "platform/app/FrameWnd.h"
#include "platform/app/WinApp.h"
#include "resources/commands.h"
#include "resources/menus.h"
#include "surface/views/SurfMathView.h"
#include "view/image/SectionSource.h"

#include <algorithm>

using namespace vldv;

namespace {

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
        {commands::autoRefresh, &view_class::OnAutoRefresh, &view_class::OnUpdateAutoRefresh},
        {commands::refresh, &view_class::OnRefresh},
        {commands::normalize, &view_class::OnNormalize},
        {commands::fileInfo, &view_class::OnFileInfo, &view_class::OnUpdateFileInfo},
        {commands::removeMarks, &view_class::OnRemoveMarks, &view_class::OnUpdateRemoveMarks},
        {commands::numbered, &view_class::OnNumbered, &view_class::OnUpdateNumbered},
        {commands::removeCurves, &view_class::OnRemoveCurves, &view_class::OnUpdateRemoveCurves},
        {commands::compact, &view_class::OnCompact, &view_class::OnUpdateCompact},
        {commands::showZScale, &view_class::OnShowZScale, &view_class::OnUpdateShowZScale},
        {commands::selectRoi, &view_class::OnSelectRoi},
        {commands::clearRoi, &view_class::OnClearRoi, &view_class::OnUpdateClearRoi},
        {commands::rememberPalette, &view_class::OnRememberPalette, &view_class::OnUpdateRememberPalette},
        {commands::highlight, &view_class::OnHighlight, &view_class::OnUpdateHighlight},
        {commands::invert, &view_class::OnInvert, &view_class::OnUpdateInvert},
        {commands::firstMode, commands::lastMode, &view_class::OnCursorMode, &view_class::OnUpdateCursorMode},
        {commands::inverseSelection, &view_class::OnInverseSelection, &view_class::OnUpdateInverseSelection},
        {commands::curveToSection, &view_class::OnCurveToSection, &view_class::OnUpdateCurveToSection},
        {commands::measureDistance, &view_class::OnMeasureDistance, &view_class::OnUpdateMeasureDistance},
        {commands::saveDecorations, &view_class::OnSaveDecorations, &view_class::OnUpdateHasSamples},
        {commands::loadDecorations, &view_class::OnLoadDecorations, &view_class::OnUpdateHasSamples},
        {commands::zoomWindow, &view_class::OnZoomWindow, &view_class::OnUpdateZoomWindow},
        {commands::scene, commands::scene, &view_class::OnOpenView, &view_class::OnUpdateOpenView},
        {commands::histogram, commands::histogram, &view_class::OnOpenView, &view_class::OnUpdateOpenView},
        {commands::fourier, commands::fourier, &view_class::OnOpenView, &view_class::OnUpdateOpenView},
        {commands::enumFeatures, &view_class::OnEnumFeatures, &view_class::OnUpdateEnumFeatures},
        {commands::resolution, &view_class::OnResolution, &view_class::OnUpdateHasSamples},
        {commands::calibrationCurve, &view_class::OnCalibrationCurve, &view_class::OnUpdateCalibrationCurve},
        {commands::resample, &view_class::OnResample, &view_class::OnUpdateHasSamples},
        {commands::findSteps, &view_class::OnFindSteps, &view_class::OnUpdateFindSteps},
        {commands::firstMarkStyle, commands::lastMarkStyle, &view_class::OnMarkStyle, &view_class::OnUpdateMarkStyle},
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

/// The size in which images open.
void CSurfMathView::OnNormalize() { adjustToBestSize(); }

void CSurfMathView::OnFileInfo() { toggle_option("ShowAdditionalLegend"); }
void CSurfMathView::OnUpdateFileInfo(CCmdUI& ui)
{
    ui.Enable(isOptionOn("ShowLegend"));
    ui.SetCheck(isOptionOn("ShowAdditionalLegend"));
}
void CSurfMathView::OnShowZScale() { toggle_option("ShowZScaleOpt"); }
void CSurfMathView::OnUpdateShowZScale(CCmdUI& ui)
{
    ui.Enable(isOptionOn("ShowLegend"));
    ui.SetCheck(isOptionOn("ShowZScaleOpt"));
}
void CSurfMathView::OnCompact() { toggle_option("CompactLegend"); }
void CSurfMathView::OnUpdateCompact(CCmdUI& ui) { ui.SetCheck(isCompact()); }
void CSurfMathView::OnHighlight() { toggle_option("highlight"); }
void CSurfMathView::OnUpdateHighlight(CCmdUI& ui) { ui.SetCheck(isOptionOn("highlight")); }
void CSurfMathView::OnInvert() { toggle_option("invert"); }
void CSurfMathView::OnUpdateInvert(CCmdUI& ui) { ui.SetCheck(isOptionOn("invert")); }

void CSurfMathView::OnRemoveMarks() { machine.removeMarks(); }
void CSurfMathView::OnUpdateRemoveMarks(CCmdUI& ui) { ui.Enable(!drawn.marks.empty()); }
void CSurfMathView::OnRemoveCurves() { machine.removeCurves(); }
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
    marksStyle = std::clamp(static_cast<int>(id - commands::firstMarkStyle), 0, 1);
    keep("MarksStyle", marksStyle);
    Invalidate(true);
}
void CSurfMathView::OnUpdateMarkStyle(CCmdUI& ui)
{
    ui.SetRadio(static_cast<int>(ui.m_nID - commands::firstMarkStyle) == marksStyle);
}

void CSurfMathView::OnSelectRoi()
{
    const CRect bounds = selectionBounds();
    drawn.roi = {bounds.left, bounds.top, bounds.right, bounds.bottom};
    drawn.roiActive = bounds != CRect({0, 0}, imageSize()) && !bounds.IsRectEmpty();
    GetDocument()->UpdateAllViews(nullptr, document::data_hint(imageNumber));
}
void CSurfMathView::OnClearRoi()
{
    drawn.roiActive = false;
    GetDocument()->UpdateAllViews(nullptr, document::data_hint(imageNumber));
}
void CSurfMathView::OnUpdateClearRoi(CCmdUI& ui) { ui.Enable(drawn.roiActive); }

void CSurfMathView::OnContextMenu(CPoint point)
{
    const auto isOn = [this](const char* option) { return isOptionOn(option); };
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
    moveTo(view::zoomed_window(sourceRect, imageSize(), around, factor));
}

void CSurfMathView::moveTo(const CRect& window)
{
    if (window == sourceRect) return;
    showPart(window);
    Invalidate(true);
    if (!getChildViews().empty()) getChildViews().front()->RefreshDisplay();
}
