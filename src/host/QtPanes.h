#pragma once
#include "host/QtPeer.h"

class QLineEdit;
class QPlainTextEdit;
class QTableWidget;

/// A pane of text that can be selected and copied.
class CQtTextPane : public CQtPeer {
public:
    CQtTextPane(CWnd& logic_, QWidget* parent);
    void setText(const std::wstring& text) override;

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

protected:
    bool eventFilter(QObject*, QEvent* event) override;

private:
    QLineEdit* search;
    QTableWidget* table;
};
