#pragma once
#include "host/peer/QtPeer.h"

#include <string>
#include <vector>

class QLineEdit;
class QPlainTextEdit;
class QTableWidget;

namespace vldv::host {

/// What is selected, lines ending in "\n".
QString selected_text(const QPlainTextEdit& editor);

/// A pane of text that can be selected and copied.
class CQtTextPane : public CQtPeer {
public:
    CQtTextPane(CWnd& logic_, QWidget* parent);
    void setText(const std::wstring& text) override;
    std::wstring selectedText() const override;
    void selectAll() override;

protected:
    bool eventFilter(QObject*, QEvent* event) override;

private:
    QPlainTextEdit* editor;
};

/// A table with a field to search in it.
class CQtTablePane : public CQtPeer {
public:
    CQtTablePane(CWnd& logic_, QWidget* parent);
    void setTable(const std::vector<std::vector<std::wstring>>& rows) override;
    std::vector<std::vector<std::wstring>> selectedCells() const override;
    void selectAll() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void connectClicks();
    void tellRow(int row);

    QLineEdit* search;
    QTableWidget* table;
    int toldRow = -1;       ///< by the change of the current row, of which a press may be the cause
    bool isShowing = false; ///< rows change and nobody clicks
};

} // namespace vldv::host
