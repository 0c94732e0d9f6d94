#pragma once
#include "spectra/figures/features/items_table.h"
#include "view/panes/GridView.h"
#include "vldv_api.h"

#include <memory>
#include <string>
#include <vector>

class CItemsHistogramView;

/// Items with their numbers, a row each, sorted by a click on a heading, which shows that column in the histogram of
/// the same items as well.
class VLDV_API CItemsTableView : public CGridView {
public:
    /// \param table_  stays as it is
    void setItems(std::shared_ptr<const vldv::spectra::items_table> table_);

    // What the grid asks
    std::size_t gridRows() const override { return order.size(); }
    const std::vector<std::wstring>& gridHeadings() const override { return headings; }
    std::wstring gridCell(std::size_t row, std::size_t column) const override;
    std::vector<std::vector<std::wstring>> gridFooter() const override { return footer; }

    void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) override;
    void OnTableHeading(unsigned column) override;

private:
    std::wstring titleSuffix() const override { return L" items"; }
    void sortBy(std::size_t column, bool isDescending);

    std::shared_ptr<const vldv::spectra::items_table> table;
    std::vector<std::size_t> order; ///< items, as the rows show them
    std::vector<std::wstring> headings;
    std::vector<std::vector<std::wstring>> footer;
    std::size_t sortColumn = 0;
    bool sortDescending = false;
};
