#pragma once
#include "view/panes/GridView.h"
#include "vldv_api.h"

#include <string>
#include <vector>

class CFeaturesHistogramView;

/// The features of a view with their metrics, a row each, in the order in which the view sorts them.
class VLDV_API CFeaturesTableView : public CGridView {
public:
    /// Shows those of a view; null: it is gone.
    void featuresChanged(CFeaturesHistogramView* of);
    /// Selects the row of a feature.
    void showFeature(std::size_t number);

    // What the grid asks
    std::size_t gridRows() const override;
    const std::vector<std::wstring>& gridHeadings() const override { return headings; }
    std::wstring gridCell(std::size_t row, std::size_t column) const override;
    bool isGridRowGrey(std::size_t row) const override;
    std::vector<std::vector<std::wstring>> gridFooter() const override { return footer; }
    std::wstring gridNote() const override { return note; }

    void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) override;
    void OnTableHeading(unsigned column) override;
    void OnTableRow(unsigned row) override;
    bool OnKeyDown(unsigned key) override;
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;

private:
    void OnItems();
    void OnUpdateItems(CCmdUI& ui);
    void OnRemoveRows();
    void OnUpdateRemoveRows(CCmdUI& ui);
    std::wstring titleSuffix() const override { return L" features"; }

    CFeaturesHistogramView* source = nullptr;
    std::vector<std::wstring> headings;
    std::vector<std::vector<std::wstring>> footer;
    std::wstring note;
};
