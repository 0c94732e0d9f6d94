#pragma once
#include "spectra/figures/features/items_table.h"
#include "spectra/views/HistogramView.h"
#include "vldv_api.h"

#include <memory>
#include <string>

/// How a number of the items of a table is distributed.
class VLDV_API CItemsHistogramView : public CHistogramView {
public:
    const char* viewKind() const override { return "CItemsHistogramView"; }
    std::string GetViewSection() override { return "ItemsHistogramView"; }

    /// \param table_  stays as it is
    void setItems(std::shared_ptr<const vldv::spectra::items_table> table_);
    const std::shared_ptr<const vldv::spectra::items_table>& items() const noexcept { return table; }
    /// Shows another column; none past the last.
    void chooseColumn(std::size_t column_);
    std::size_t column() const noexcept { return shownColumn; }

    void GetOptionsList(SPMVar* vars, unsigned* count) override;
    void updateText() override;
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;

protected:
    vldv::spectra::height_histogram makeHistogram() override;
    std::string valueUnits() const override;

private:
    const vldv::spectra::item_column* shown() const noexcept;

    std::shared_ptr<const vldv::spectra::items_table> table;
    std::size_t shownColumn = 0;
};
