#include "spectra/views/ItemsTableView.h"

#include "base/text.h"
#include "document/update_hints.h"
#include "platform/app/Document.h"
#include "spectra/figures/features/feature_table.h"
#include "spectra/views/ItemsHistogramView.h"
#include "spectra/views/summary_rows.h"

#include <utility>

using namespace vldv;

void CItemsTableView::setItems(std::shared_ptr<const spectra::items_table> table_)
{
    table = std::move(table_);
    std::vector<spectra::value_summary> summaries;
    for (const spectra::item_column& each : table->columns) summaries.push_back(spectra::summarize(each.values));
    footer = spectra::summary_rows(summaries);
    sortBy(0, false);
}

void CItemsTableView::sortBy(std::size_t column, bool isDescending)
{
    sortColumn = column;
    sortDescending = isDescending;
    headings.clear();
    for (std::size_t i = 0; i < table->columns.size(); ++i)
        headings.push_back(base::widen(table->columns[i].heading()) + sortMark(i == column, isDescending));
    order.clear();
    if (column < table->columns.size()) order = spectra::sorted_order(table->columns[column].values, isDescending);
    showRows();
}

std::wstring CItemsTableView::gridCell(std::size_t row, std::size_t column) const
{
    if (row >= order.size() || column >= table->columns.size()) return {};
    return base::widen(spectra::metric_cell(table->columns[column].values[order[row]]));
}

/// Items stay as they were handed over, whatever happens to the document.
void CItemsTableView::OnUpdate(CView*, std::uint32_t hint, const hint_object&)
{
    if (document::hint::unpacked(hint).code == document::hintNewData) showRows();
}

void CItemsTableView::OnTableHeading(unsigned column)
{
    if (!table || column >= table->columns.size()) return;
    sortBy(column, column == sortColumn && !sortDescending);
    for (CView* const each : GetDocument()->views())
        if (auto* const histogram = dynamic_cast<CItemsHistogramView*>(each); histogram && histogram->items() == table)
            histogram->chooseColumn(column);
}
