#include "view/panes/GridView.h"

using namespace vldv;

std::wstring CGridView::headingText() const { return CTableView::joined({gridHeadings()}); }

std::wstring CGridView::rowText(std::size_t row) const
{
    std::vector<std::wstring> cells;
    for (std::size_t column = 0; column < gridHeadings().size(); ++column) cells.push_back(gridCell(row, column));
    return CTableView::joined({std::move(cells)});
}

std::wstring CGridView::allText() const
{
    std::wstring text = headingText();
    for (std::size_t row = 0; row < gridRows(); ++row) text += rowText(row);
    return text;
}

std::wstring CGridView::selectedText() const
{
    const std::vector<std::size_t> chosen = selectedRows();
    if (chosen.empty()) return {};
    std::wstring text = headingText();
    for (const std::size_t row : chosen)
        if (row < gridRows()) text += rowText(row);
    return text;
}

void CGridView::showRows()
{
    if (getPeer()) getPeer()->gridChanged();
}

std::vector<std::size_t> CGridView::selectedRows() const
{
    return getPeer() ? getPeer()->selectedGridRows() : std::vector<std::size_t>();
}
