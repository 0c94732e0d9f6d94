#include "spectra/views/ItemsHistogramView.h"

#include "base/text.h"
#include "resources/commands.h"
#include "view/frame/option_rows.h"

#include <optional>
#include <utility>

using namespace vldv;

const spectra::item_column* CItemsHistogramView::shown() const noexcept
{
    return table && shownColumn < table->columns.size() ? &table->columns[shownColumn] : nullptr;
}

void CItemsHistogramView::setItems(std::shared_ptr<const spectra::items_table> table_)
{
    table = std::move(table_);
    chooseColumn(0);
}

void CItemsHistogramView::chooseColumn(std::size_t column_)
{
    if (!table || column_ >= table->columns.size()) return;
    shownColumn = column_;
    rebuildHistogram();
}

spectra::height_histogram CItemsHistogramView::makeHistogram()
{
    const spectra::item_column* const column = shown();
    if (!column || column->values.empty()) return {};
    spectra::value_distribution made = spectra::distribute(column->values, manualBars());
    return {std::move(made.bins),
            made.valueMin,
            made.valueMax,
            made.valueRange,
            static_cast<std::uint32_t>(column->values.size()),
            made.peakCount};
}

std::string CItemsHistogramView::valueUnits() const { return shown() ? shown()->units : std::string(); }

void CItemsHistogramView::GetOptionsList(SPMVar* vars, unsigned* count)
{
    std::vector<SPMVar> all = optionsWithoutAxis();
    all.push_back(view::declared_option({"AxisZ,int", "0"})); // not shown: items have the one unit of their column
    giveOptions(all, vars, count);
}

void CItemsHistogramView::updateText()
{
    CHistogramView::updateText();
    if (shown()) setText(base::widen(shown()->heading() + "\t") + getText());
}

bool CItemsHistogramView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    // Items are no samples: neither do delimiters cut heights, nor are their distances some of a calibration.
    if (id == commands::cutoff || id == commands::resolution) return false;
    return CHistogramView::OnCmdMsg(id, ui);
}
