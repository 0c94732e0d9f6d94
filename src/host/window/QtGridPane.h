#pragma once
#include "host/peer/QtPeer.h"

class QAbstractTableModel;
class QLabel;
class QTableView;
class QTableWidget;

namespace vldv {
class IGridContent;
}

namespace vldv::host {

/// A table that asks its logic for the cells in sight, with rows below that stay there.
class CQtGridPane : public CQtPeer {
public:
    CQtGridPane(CWnd& logic_, QWidget* parent);
    void gridChanged() override;
    void showGridRow(std::size_t row) override;
    std::vector<std::size_t> selectedGridRows() const override;
    void selectAll() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void connectClicks();
    void showFooter();
    void alignFooter();

    const IGridContent* content;
    class model;
    model* rows;
    QTableView* table;
    QTableWidget* footer;
    QLabel* note;
    bool isShowing = false; ///< rows change and nobody clicks
};

} // namespace vldv::host
