#include "host/window/OutputPane.h"

#include "host/window/QtPanes.h"

#include <QLineEdit>

COutputPane::COutputPane(QWidget* parent) : QPlainTextEdit(parent) { setReadOnly(true); }

std::wstring COutputPane::selectedText() const { return host::selected_text(*this).toStdWString(); }

bool host::field_command(QLineEdit& field, unsigned id, CCmdUI* ui)
{
    enum command : unsigned { cmdCopy = 57634, cmdSelectAll = 57642, cmdUndo = 57643, cmdRedo = 57644 };
    const bool isPossible = id == cmdCopy        ? field.hasSelectedText()
                            : id == cmdSelectAll ? !field.text().isEmpty()
                            : id == cmdUndo      ? field.isUndoAvailable()
                                                 : id == cmdRedo && field.isRedoAvailable();
    if (!isPossible || ui) return isPossible;
    if (id == cmdCopy) field.copy();
    if (id == cmdSelectAll) field.selectAll();
    if (id == cmdUndo) field.undo();
    if (id == cmdRedo) field.redo();
    return true;
}
