#pragma once
#include "platform/app/grid_content.h"
#include "view/panes/PaneView.h"
#include "vldv_api.h"

#include <string>
#include <vector>

/// Base of tables of any length. A derived class answers what the grid asks for, and what the host tells of it:
/// `OnTableHeading`, `OnTableRow`.
class VLDV_API CGridView : public vldv::CPaneView, public vldv::IGridContent {
public:
    vldv::window_kind kind() const noexcept override { return vldv::window_kind::grid; }
    /// Headings and rows, cells parted by tabs.
    std::wstring allText() const override;
    /// The selected rows below the headings; empty without any.
    std::wstring selectedText() const override;

protected:
    /// Shows all anew.
    void showRows();
    std::vector<std::size_t> selectedRows() const;
    /// Behind the heading of the column by which rows are sorted; nothing behind others.
    static const wchar_t* sortMark(bool isSorted, bool isDescending) noexcept
    {
        return !isSorted ? L"" : isDescending ? L" \u25BC" : L" \u25B2";
    }

private:
    std::wstring rowText(std::size_t row) const;
    std::wstring headingText() const;
};
