#include "host/window/OutputPane.h"

#include "host/window/QtPanes.h"
#include "resources/commands.h"

#include <QLineEdit>

namespace vldv::host {

COutputPane::COutputPane(QWidget* parent) : QPlainTextEdit(parent) { setReadOnly(true); }

std::wstring COutputPane::selectedText() const { return selected_text(*this).toStdWString(); }

bool field_command(QLineEdit& field, unsigned id, CCmdUI* ui)
{
    const bool isPossible = id == commands::copy        ? field.hasSelectedText()
                            : id == commands::selectAll ? !field.text().isEmpty()
                            : id == commands::undo      ? field.isUndoAvailable()
                                                        : id == commands::redo && field.isRedoAvailable();
    if (!isPossible || ui) return isPossible;
    if (id == commands::copy) field.copy();
    if (id == commands::selectAll) field.selectAll();
    if (id == commands::undo) field.undo();
    if (id == commands::redo) field.redo();
    return true;
}

} // namespace vldv::host
