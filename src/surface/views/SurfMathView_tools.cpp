// Commands of the mouse, and those that open other views and dialogs.
#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/update_hints.h"
#include "platform/app/Clipboard.h"
#include "platform/app/FrameWnd.h"
#include "resources/commands.h"
#include "surface/tools/modes/cursor_tools.h"
#include "surface/views/SurfMathView.h"
#include "surface/views/calibration.h"
#include "surface/views/dialogs/decoration_file.h"
#include "surface/views/dialogs/resampling_dialog.h"
#include "surface/views/steps_search_context.h"
#include "surface/views/zoom_window.h"
#include "view/dialogs/resolution_dialog.h"
#include "view/frame/open_view.h"
#include "view/image/FeaturesSource.h"
#include "view/image/SectionSource.h"

#include <algorithm>
#include <climits>

using namespace vldv;

namespace {

using surface::cursor_mode;

constexpr std::size_t fewestLines = 3; // of a grating, to fit a line through

/// \return false when the clipboard cannot be had
bool append_to_clipboard(const std::wstring& text)
{
    const open_clipboard clipboard;
    if (!clipboard) return false;
    const std::wstring all = clipboard->text().value_or(L"") + text;
    clipboard->empty();
    return clipboard->setText(all);
}

unsigned template_of(unsigned command) noexcept
{
    switch (command) {
    case commands::scene:
        return sceneFrame;
    case commands::histogram:
        return histogramFrame;
    default:
        return fourierFrame;
    }
}

} // namespace

long CSurfMathView::GetToolbarIDs(unsigned* first, unsigned* second, unsigned* third)
{
    const long kind = CImageView::GetToolbarIDs(first, second, third);
    if (kind != 0 && first) *first = surfaceFrame;
    return kind;
}

void CSurfMathView::OnCursorMode(unsigned id) { machine.setMode(static_cast<int>(id - commands::firstMode)); }

void CSurfMathView::OnUpdateCursorMode(CCmdUI& ui)
{
    const auto number = static_cast<int>(ui.m_nID - commands::firstMode);
    ui.SetCheck(number == static_cast<int>(drawn.mode));
    switch (surface::tool_of(surface::mode_of(number)).needs()) {
    case surface::tool_need::sections:
        return ui.Enable(hasSamples() && view::can_open(sectionFrame));
    case surface::tool_need::lines:
        return ui.Enable(hasSamples() && view::can_open(lineFrame));
    case surface::tool_need::features:
        return ui.Enable(featuresView() != nullptr);
    case surface::tool_need::samples:
        return ui.Enable(hasSamples());
    }
}

void CSurfMathView::OnUpdateHasSamples(CCmdUI& ui) { ui.Enable(hasSamples()); }

void CSurfMathView::OnInverseSelection()
{
    machine.inverseSelection();
    refreshZoomWindow();
}
void CSurfMathView::OnUpdateInverseSelection(CCmdUI& ui)
{
    ui.Enable(surface::is_region_mode(drawn.mode) && drawn.selectionActive);
}

void CSurfMathView::OnCurveToSection()
{
    const CRgn before = machine.invalidateRgn(cursor_mode::curve);
    const std::vector<CPoint> points = drawn.curves.front();
    drawn.curves.erase(drawn.curves.begin());
    drawn.measure.isVisible = false;
    InvalidateRgn(before, false);
    refreshMeasureRows();
    world.openSection(points);
}
void CSurfMathView::OnUpdateCurveToSection(CCmdUI& ui)
{
    ui.Enable(!drawn.curves.empty() && drawn.curves.front().size() > 1 && view::can_open(sectionFrame));
}

void CSurfMathView::OnMeasureDistance()
{
    const surface::measured_surface shown = measured();
    if (shown.isEmpty() || !drawn.selectionActive) return;
    if (!append_to_clipboard(surface::distance_table_text(shown, drawn))) return;
    machine.addMark(drawn.selection.end());
}
void CSurfMathView::OnUpdateMeasureDistance(CCmdUI& ui) { ui.Enable(drawn.mode == cursor_mode::distance); }

void CSurfMathView::OnSaveDecorations()
{
    surface::decoration_lists lists{drawn.curves, drawn.marks, {}};
    for (CView* const each : storageDoc()->views()) {
        const auto* const section = dynamic_cast<const ISection*>(each);
        if (!section) continue;
        std::vector<CPoint>& points = lists.profiles.emplace_back();
        for (unsigned i = 0; i < section->getPointsNumber(); ++i) points.push_back(section->getSectionPoint(i));
    }
    surface::save_decorations(storageDoc()->GetPathName(), lists);
}

void CSurfMathView::OnLoadDecorations()
{
    std::optional<surface::decoration_lists> lists = surface::load_decorations();
    if (!lists) return;
    if (const std::size_t dropped = surface::drop_outside(*lists, imageSize()))
        SetMessageText(base::widen(base::formatted("Points outside of the image that were left out: %d",
                                                   static_cast<int>(std::min<std::size_t>(dropped, INT_MAX)))));
    machine.addDrawings(lists->curves, lists->marks);
    refreshMeasureRows();
    for (const std::vector<CPoint>& points : lists->profiles) world.openSection(points);
}

void CSurfMathView::OnZoomWindow() { surface::open_zoom_window(*this, selectionBounds()); }
void CSurfMathView::OnUpdateZoomWindow(CCmdUI& ui)
{
    const bool isSurface = hasSamples() && stream()->get_dimensions_number() == 2;
    ui.Enable(isSurface && !surface::zoom_document(*this));
}

void CSurfMathView::OnOpenView(unsigned id)
{
    if (CImageView* const opened = view::open_view(*this, template_of(id))) view::show_opened(*opened);
}
void CSurfMathView::OnUpdateOpenView(CCmdUI& ui) { ui.Enable(hasSamples() && view::can_open(template_of(ui.m_nID))); }

/// Where features are looked for is what is selected, or all. An open view of features looks there from now on, and
/// what the cursor draws belongs to them.
void CSurfMathView::OnEnumFeatures()
{
    const bool hasSelection = drawn.selectionActive && !selectionBounds().IsRectEmpty();
    const CRect working = hasSelection ? selectionBounds() : CRect({0, 0}, imageSize());
    CImageView* const shown = featuresView();
    CImageView* const features = shown ? shown : view::open_view(*this, featuresFrame);
    if (auto* const source = dynamic_cast<IFeaturesSource*>(features)) source->setWorkingRect(working);
    if (!features) return;
    if (!shown) {
        view::show_opened(*features);
        PositionWindowNearby(features->GetParentFrame(), 0, legendRight);
        features->bringFrameInside();
        if (auto* const source = dynamic_cast<IFeaturesSource*>(features)) source->showTable();
        return;
    }
    CDocument& document = *GetDocument();
    document.UpdateAllViews(nullptr, document::hint{document::hintBringToFront, imageNumber}.packed());
    document.UpdateAllViews(nullptr, document::data_hint(imageNumber));
    machine.setMode(static_cast<int>(cursor_mode::includeFeatures));
}
void CSurfMathView::OnUpdateEnumFeatures(CCmdUI& ui)
{
    const bool isSurface = hasSamples() && stream()->get_dimensions_number() == 2;
    ui.Enable(isSurface && view::can_open(featuresFrame));
}

void CSurfMathView::OnResolution()
{
    const auto chosen = [this](const char* option) { return static_cast<unsigned>(intOption(option)); };
    const bool hasDistance = drawn.mode == cursor_mode::distance && drawn.selectionActive;
    std::optional<view::measured_distance> distance;
    if (hasDistance) distance = view::measured_distance{{drawn.selection.dx(), drawn.selection.dy()}};
    view::run_resolution(*storageDoc(), imageNumber, {chosen("AxisX"), chosen("AxisY"), chosen("AxisZ")}, distance,
                         this);
}

void CSurfMathView::OnCalibrationCurve()
{
    surface::run_calibration(*storageDoc(), measured(), drawn.curves.front(), this);
}
void CSurfMathView::OnUpdateCalibrationCurve(CCmdUI& ui)
{
    ui.Enable(hasSamples() && !drawn.curves.empty() && drawn.curves.front().size() >= fewestLines);
}

void CSurfMathView::OnResample()
{
    const auto chosen = [this](const char* option) { return static_cast<unsigned>(intOption(option)); };
    surface::run_resample(*storageDoc(), imageNumber, chosen("AxisX"), chosen("AxisY"), this);
}

void CSurfMathView::OnFindSteps() { steps_search_context(*this).run(); }
void CSurfMathView::OnUpdateFindSteps(CCmdUI& ui) { ui.Enable(hasSamples() && stream()->get_dimensions_number() == 2); }
