#pragma once
#include "view/panes/pane_commands.h"

#include <QPlainTextEdit>

class QLineEdit;

namespace vldv::host {

/// The lines that views and modules tell; they can be copied, saved and printed.
class COutputPane : public QPlainTextEdit, public IPaneContent {
public:
    explicit COutputPane(QWidget* parent = nullptr);

    std::wstring allText() const override { return toPlainText().toStdWString(); }
    std::wstring selectedText() const override;
    void selectAll() override { QPlainTextEdit::selectAll(); }
    std::wstring paneTitle() const override { return L"Output"; }
};

/// "Copy", "Select All", "Undo" and "Redo" of a field for typing. \return false for others, and where it cannot
bool field_command(QLineEdit& field, unsigned id, CCmdUI* ui);

} // namespace vldv::host
