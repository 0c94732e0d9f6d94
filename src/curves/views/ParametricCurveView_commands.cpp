// What the menus of a view of pairs do.
#include "base/text.h"
#include "curves/figures/pairs/pair_text.h"
#include "curves/figures/pairs/typed_pair_marks.h"
#include "curves/views/ParametricCurveView.h"
#include "curves/views/select_x.h"
#include "document/StorageDoc.h"
#include "platform/app/Clipboard.h"
#include "resources/commands.h"
#include "resources/frame_templates.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "view/dialogs/variable_rows.h"
#include "view/frame/open_view.h"
#include "view/image/picture_export.h"
#include "view/image/table_file.h"

#include <algorithm>

using namespace vldv;

bool CParametricCurveView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    using view = CParametricCurveView;
    static constexpr command_row<view> rows[] = {
        {commands::refresh, &view::OnRefresh},
        {commands::typeMarks, &view::OnTypeMarks, &view::OnUpdateTypeMarks},
        {commands::selectX, &view::OnSelectXCurve, &view::OnUpdateSelectXCurve},
        {commands::ownAxis, &view::OnShowOverOwnAxis, &view::OnUpdateShowOverOwnAxis},
        {commands::forceAnalysis, &view::OnForceanalysis, &view::OnUpdateHasData},
        {commands::forceAnalysisOfAll, &view::OnAnalyseAllCurves, &view::OnUpdateAnalyseAll},
        {commands::copyData, &view::OnCopydataastext, &view::OnUpdateHasData},
    };
    return dispatch_command<view>(*this, rows, id, ui) || CImageView::OnCmdMsg(id, ui);
}

void CParametricCurveView::OnRefresh()
{
    LoadData();
    Invalidate(true);
}

std::string CParametricCurveView::table() const
{
    return curves::pair_table(source(), axisX(), axisY(), positions()->get_name(),
                              storageDoc()->getImage(imageNumber).get_name());
}

void CParametricCurveView::OnUpdateHasData(CCmdUI& ui) { ui.Enable(IsGood()); }
void CParametricCurveView::OnUpdateSelectXCurve(CCmdUI& ui) { ui.Enable(storageDoc() && curves::has_x_for(*this)); }

/// Measures the curve against another one.
void CParametricCurveView::OnSelectXCurve()
{
    if (const CImageView* const chosen = curves::ask_for_x(*this)) curves::take_x(*this, *chosen);
}

void CParametricCurveView::OnUpdateShowOverOwnAxis(CCmdUI& ui)
{
    ui.Enable(storageDoc() && view::can_open(sectionFrame));
}

void CParametricCurveView::OnShowOverOwnAxis()
{
    if (CImageView* const opened = view::open_view(*this, sectionFrame)) view::show_opened(*opened);
}

void CParametricCurveView::OnUpdateTypeMarks(CCmdUI& ui) { ui.Enable(IsGood() && isOptionOn("ShowMarks")); }

/// Lets the user type where the marks stand; each goes to the pair that is nearest.
void CParametricCurveView::OnTypeMarks()
{
    if (!IsGood() || !isOptionOn("ShowMarks")) return;
    const curves::typed_pair_marks typed(marksMode(), pane, axisX(), axisY());
    std::vector<SPMVar> variables = typed.variables(marks);
    SPMVarList list;
    list.set_variables(variables.data(), static_cast<unsigned>(variables.size()));
    if (!view::ask_variables(list, "Marks", this)) return;
    list.get_variables(variables.data(), static_cast<unsigned>(variables.size()));
    typed.put(variables, marks);
    settleMarks();
    updateText();
    Invalidate(true);
}

void CParametricCurveView::OnCopydataastext()
{
    const open_clipboard clipboard;
    if (!clipboard || !IsGood()) return;
    clipboard->empty();
    clipboard->setText(base::widen(table()));
}

std::wstring CParametricCurveView::GetClipboardText(bool) { return text; }

std::wstring CParametricCurveView::GetExportFilters()
{
    return CImageView::GetExportFilters() + base::widen(string_resource(texts::textFilter));
}

void CParametricCurveView::Export(int filter, const wchar_t* path)
{
    const int ofBase = CountExportFormats(CImageView::GetExportFilters().c_str());
    if (filter <= ofBase) return CImageView::Export(filter, path);
    if (filter > ofBase + 1 || !IsGood()) return;
    view::save_table(path, table());
}

/// Each curve between the two marks, or its sample under the crossbar, as a section tells them.
int CParametricCurveView::GetDataSelection(VLPluginDataSelection* out, unsigned count)
{
    if (!IsGood() || !isOptionOn("ShowMarks")) return 0;
    const int length = static_cast<int>(storageDoc()->getImage(imageNumber).get_dimension(0).length);
    const auto sampleOf = [&](int mark) { return static_cast<int>(marks[mark].sample.value_or(0)); };
    if (!out) return static_cast<int>(curves);
    if (curves > count) return 0;
    using set = curves::pair_mark_set;
    for (unsigned k = 0; k < curves; ++k) {
        const auto [low, high] = std::minmax({sampleOf(set::first), sampleOf(set::second)});
        const int begin = static_cast<int>(k) * length;
        out[k] = marksMode() == curves::pair_marks_mode::crossbar
                     ? plugin_selection(SELECTION_POSITION, sampleOf(set::bar))
                     : plugin_selection(SELECTION_RANGE, low + begin, high + begin);
    }
    return static_cast<int>(curves);
}
