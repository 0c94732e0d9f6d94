// What the menus of a section do.
#include "base/text.h"
#include "curves/figures/math_function.h"
#include "curves/figures/table_text.h"
#include "curves/views/ParametricCurveView.h"
#include "curves/views/SectionView.h"
#include "curves/views/select_x.h"
#include "document/StorageDoc.h"
#include "document/samples/point_counts.h"
#include "platform/app/Clipboard.h"
#include "platform/app/DocTemplate.h"
#include "platform/app/WinApp.h"
#include "resources/commands.h"
#include "resources/frame_templates.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "view/frame/open_view.h"
#include "view/image/picture_export.h"
#include "view/image/table_file.h"

#include <algorithm>
#include <utility>

using namespace vldv;

bool CSectionView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    using view = CSectionView;
    static constexpr command_row<view> rows[] = {
        {commands::refresh, &view::OnRefresh},
        {commands::differentiate, &view::OnLineDifferentiate, &view::OnUpdateHasData},
        {commands::autocorrelationFinite, commands::autocorrelationFinite, &view::OnCorrelation,
         &view::OnUpdateHasData},
        {commands::autocorrelationCyclic, commands::autocorrelationCyclic, &view::OnCorrelation,
         &view::OnUpdateHasData},
        {commands::structureFinite, commands::structureFinite, &view::OnCorrelation, &view::OnUpdateHasData},
        {commands::structureCyclic, commands::structureCyclic, &view::OnCorrelation, &view::OnUpdateHasData},
        {commands::resolution, &view::OnViewResolution, &view::OnUpdateHasData},
        {commands::typeMarks, &view::OnTypeMarks, &view::OnUpdateTypeMarks},
        {commands::histogram, &view::OnCurveHistogram, &view::OnUpdateHistogram},
        {commands::selectX, &view::OnCurveSelectXCurve, &view::OnUpdateSelectXCurve},
        {commands::forceAnalysis, &view::OnCurveForceanalysis, &view::OnUpdateForceanalysis},
        {commands::forceAnalysisOfAll, &view::OnAnalyseAllCurves, &view::OnUpdateAnalyseAll},
        {commands::copyData, &view::OnCurveCopydataastext, &view::OnUpdateHasData},
    };
    return dispatch_command<view>(*this, rows, id, ui) || CImageView::OnCmdMsg(id, ui);
}

void CSectionView::OnUpdateHasData(CCmdUI& ui) { ui.Enable(hasCurves()); }

void CSectionView::OnRefresh()
{
    LoadData();
    Invalidate(true);
}

void CSectionView::OnLineDifferentiate()
{
    curves::convolution_kernel kernel(curves::differenceKernel);
    CallMathFunction(curves::convolve, &kernel);
}

void CSectionView::OnCorrelation(unsigned id)
{
    switch (id) {
    case commands::autocorrelationFinite:
        return CallMathFunction(curves::autocorrelation_function, nullptr);
    case commands::autocorrelationCyclic:
        return CallMathFunction(curves::cyclic_autocorrelation_function, nullptr);
    case commands::structureFinite:
        return CallMathFunction(curves::structure_function, nullptr);
    default:
        return CallMathFunction(curves::cyclic_structure_function, nullptr);
    }
}

void CSectionView::CallMathFunction(curves::curve_function function, void* parameter)
{
    const SPMDataStream* const source = stream();
    CDocTemplate* const maker = GetDocument() ? GetDocument()->GetDocTemplate() : nullptr;
    if (!source || !maker || !hasCurves()) return;
    const std::vector<primitives::sample_run> gaps = curves::curves_with_gaps(section);
    if (gaps.size() == section.curves)
        return AfxGetApp()->host().messageBox(
            "No curve was measured throughout, and neighbours or pairs of its samples "
            "cannot be looked at.",
            message_icon::warning);
    const curves::physical_curves made =
        curves::call_function(section, valueAxis(), positionAxis(), function, parameter);
    auto* const target = dynamic_cast<CStorageDoc*>(maker->CreateNewDocument());
    if (!target) return;
    SPMDataStream computed = curves::curves_stream(*source, made, positionAxis());
    if (std::vector<smart_string> names = source->subimage_names(); names.size() == section.curves)
        computed.set_subimage_names(std::move(names));
    storageDoc()->deriveTitle(*target);
    target->AddNewImages(&computed, 1);
    target->copyStrings(storageDoc(), 0, imageNumber);
    vldv::document::tell_points(*target, 0, gaps);
    openFrames(*target);
}

void CSectionView::OnUpdateHistogram(CCmdUI& ui)
{
    const SPMDataStream* const source = stream();
    ui.Enable(source && source->get_dimensions_number() == 1 && hasCurves() && view::can_open(histogramFrame));
}

void CSectionView::OnCurveHistogram()
{
    if (CImageView* const opened = view::open_view(*this, histogramFrame)) view::show_opened(*opened);
}

void CSectionView::OnUpdateSelectXCurve(CCmdUI& ui)
{
    const SPMDataStream* const source = stream();
    ui.Enable(source && source->get_dimensions_number() == 1 && hasCurves() && view::can_open(parametricFrame) &&
              curves::has_x_for(*this));
}

/// Opens a window on this curve over another one.
void CSectionView::OnCurveSelectXCurve()
{
    const CImageView* const chosen = curves::ask_for_x(*this);
    if (!chosen) return;
    auto* const opened = dynamic_cast<CParametricCurveView*>(view::open_view(*this, parametricFrame));
    if (!opened) return;
    curves::take_x(*opened, *chosen);
    view::show_opened(*opened);
}

void CSectionView::OnCurveCopydataastext()
{
    const open_clipboard clipboard;
    if (!clipboard) return;
    clipboard->empty();
    clipboard->setText(
        base::widen(curves::table_text(shownCurve(), positionAxis(), valueAxis(), curves::clipboard_style())));
}

std::wstring CSectionView::GetExportFilters()
{
    return CImageView::GetExportFilters() + base::widen(string_resource(texts::textFilter));
}

void CSectionView::Export(int filter, const wchar_t* path)
{
    const int ofBase = CountExportFormats(CImageView::GetExportFilters().c_str());
    if (filter <= ofBase) return CImageView::Export(filter, path);
    const SPMDataStream* const source = stream();
    if (filter > ofBase + 1 || !source || !hasCurves()) return;
    const std::string table = curves::section_text(section, points, source->get_dimensions_number(), positionAxis(),
                                                   valueAxis(), 0, section.curves - 1);
    view::save_table(path, table);
}
