#pragma once
#include "platform/app/View.h"
#include "view/panes/pane_commands.h"
#include "vldv_api.h"

#include <string>
#include <vector>

namespace vldv {

/// Base of views whose pane the host fills: it has the commands of texts and tables before those of its document.
class VLDV_API CPaneView : public CView, public IPaneContent {
public:
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;
    void selectAll() override;
    std::wstring paneTitle() const override;
    std::wstring paneFolder() const override;

private:
    /// Behind the document's title.
    virtual std::wstring titleSuffix() const { return {}; }
};

/// Base of tables. A derived class answers what the host tells of them: `setFilter`, `OnTableHeading`, `OnTableRow`,
/// `OnTableRowActivated`.
class VLDV_API CTableView : public CPaneView {
public:
    using table_rows = std::vector<std::vector<std::wstring>>;

    window_kind kind() const noexcept override { return window_kind::table; }
    std::wstring allText() const override { return joined(shown); }
    std::wstring selectedText() const override;
    /// Cells joined by tabs, rows by "\r\n". A cell with a tab, a line end or a quotation mark at its front stands in
    /// quotation marks, those inside doubled, as other programs take tables.
    static std::wstring joined(const table_rows& rows);

protected:
    /// \param rows  the headings first
    void showTable(table_rows rows);

private:
    table_rows shown;
};

} // namespace vldv
