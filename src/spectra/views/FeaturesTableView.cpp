#include "spectra/views/FeaturesTableView.h"

#include "base/text.h"
#include "document/update_hints.h"
#include "platform/app/Document.h"
#include "platform/app/keys.h"
#include "resources/commands.h"
#include "spectra/figures/features/feature_table.h"
#include "spectra/views/FeaturesHistogramView.h"
#include "spectra/views/summary_rows.h"

using namespace vldv;

void CFeaturesTableView::featuresChanged(CFeaturesHistogramView* of)
{
    source = of;
    headings.clear();
    footer.clear();
    note = L"The window of the features is closed";
    if (source) {
        // The metric by which they are sorted says how.
        for (std::size_t i = 0; i < spectra::featureMetrics; ++i)
            headings.push_back(base::widen(spectra::metric_heading(i, source->axes())) +
                               sortMark(i == source->metric(), source->isDescending()));
        footer = spectra::summary_rows(spectra::summarize(source->features()));
        note = base::widen(source->countsText());
    }
    showRows();
}

void CFeaturesTableView::showFeature(std::size_t number)
{
    if (getPeer()) getPeer()->showGridRow(number);
}

std::size_t CFeaturesTableView::gridRows() const { return source ? source->features().size() : 0; }

std::wstring CFeaturesTableView::gridCell(std::size_t row, std::size_t column) const
{
    if (row >= gridRows() || column >= spectra::featureMetrics) return {};
    return base::widen(spectra::metric_cell(source->features()[row].metrics[column]));
}

bool CFeaturesTableView::isGridRowGrey(std::size_t row) const
{
    return row < gridRows() && source->isFiltered(source->features()[row]);
}

/// The view of the features tells by itself when they change.
void CFeaturesTableView::OnUpdate(CView*, std::uint32_t hint, const hint_object&)
{
    if (document::hint::unpacked(hint).code == document::hintNewData && !source) showRows();
}

void CFeaturesTableView::OnTableHeading(unsigned column)
{
    if (GetDocument()) GetDocument()->UpdateAllViews(this, document::hint{document::hintChooseMetric, column}.packed());
}

void CFeaturesTableView::OnTableRow(unsigned row)
{
    if (source) source->markFeature(row);
}

bool CFeaturesTableView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    using view = CFeaturesTableView;
    static constexpr command_row<view> rows[] = {
        {commands::tableItems, &view::OnItems, &view::OnUpdateItems},
        {commands::removeRows, &view::OnRemoveRows, &view::OnUpdateRemoveRows},
    };
    return dispatch_command<view>(*this, rows, id, ui) || CGridView::OnCmdMsg(id, ui);
}

/// One selected row is where the user is; several are what he means.
void CFeaturesTableView::OnItems()
{
    if (!source) return;
    const std::vector<std::size_t> chosen = selectedRows();
    source->openItems(chosen.size() > 1 ? chosen : std::vector<std::size_t>());
}
void CFeaturesTableView::OnUpdateItems(CCmdUI& ui) { ui.Enable(gridRows() > 0); }

void CFeaturesTableView::OnRemoveRows()
{
    if (const std::vector<std::size_t> chosen = selectedRows(); source && !chosen.empty())
        source->removeFeatures(chosen);
}
void CFeaturesTableView::OnUpdateRemoveRows(CCmdUI& ui) { ui.Enable(source && !selectedRows().empty()); }

bool CFeaturesTableView::OnKeyDown(unsigned key)
{
    if (key != VK_DELETE || !source) return CGridView::OnKeyDown(key);
    OnRemoveRows();
    return true;
}
