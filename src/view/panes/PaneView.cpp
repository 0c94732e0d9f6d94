#include "view/panes/PaneView.h"

#include "platform/app/Document.h"
#include "platform/files/paths.h"

#include <utility>

namespace vldv {

namespace {

std::wstring cell_text(const std::wstring& cell)
{
    // In the form that spreadsheets read: a cell with a separator in it stands in quotes, and its own quotes are
    // doubled.
    if (cell.find_first_of(L"\t\r\n") == std::wstring::npos && !cell.starts_with(L'"')) return cell;
    std::wstring out = L"\"";
    for (const wchar_t c : cell) out += c == L'"' ? std::wstring(2, c) : std::wstring(1, c);
    return out + L'"';
}

} // namespace

bool CPaneView::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    return view::pane_command(*this, id, ui) || CView::OnCmdMsg(id, ui);
}

void CPaneView::selectAll()
{
    if (getPeer()) getPeer()->selectAll();
}

std::wstring CPaneView::paneTitle() const
{
    return (GetDocument() ? GetDocument()->GetTitle() : std::wstring()) + titleSuffix();
}

std::wstring CPaneView::paneFolder() const
{
    if (!GetDocument() || GetDocument()->GetPathName().empty()) return {};
    return platform::to_wide(platform::to_path(GetDocument()->GetPathName()).parent_path());
}

std::wstring CTableView::joined(const table_rows& rows)
{
    std::wstring out;
    for (const std::vector<std::wstring>& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) out += (i ? L"\t" : L"") + cell_text(row[i]);
        out += L"\r\n";
    }
    return out;
}

std::wstring CTableView::selectedText() const
{
    return getPeer() ? joined(getPeer()->selectedCells()) : std::wstring();
}

void CTableView::showTable(table_rows rows)
{
    if (rows == shown) return; // so that the user's selection outlasts updates that change nothing here
    shown = std::move(rows);
    if (getPeer()) getPeer()->setTable(shown);
}

} // namespace vldv
