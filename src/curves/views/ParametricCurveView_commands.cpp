// What the menus of a view of pairs do.
#include "base/text.h"
#include "curves/figures/pairs/pair_text.h"
#include "curves/views/ParametricCurveView.h"
#include "curves/views/table_file.h"
#include "document/StorageDoc.h"
#include "platform/app/Clipboard.h"
#include "resources/commands.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "view/image/picture_export.h"

#include <algorithm>

using namespace vldv;

bool CParametricCurveView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    using view = CParametricCurveView;
    static constexpr command_row<view> rows[] = {
        {commands::refresh, &view::OnRefresh},
        {commands::copyData, &view::OnCopydataastext, &view::OnUpdateCopydata},
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

void CParametricCurveView::OnUpdateCopydata(CCmdUI& ui) { ui.Enable(IsGood()); }

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
    curves::save_table(path, table());
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
