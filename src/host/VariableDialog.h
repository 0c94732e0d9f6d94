#pragma once
#include "platform/VarListDlg.h"

#include <QDialog>

class QFileDialog;
class QTableWidget;
struct open_prompt;

/// The widgets of a variable dialog, laid out as its layout says.
class CVariableDialog : public QDialog {
public:
    CVariableDialog(CVarListDlg& model_, QWidget* parent);

    QTableWidget* grid() const noexcept { return table; }
    void refresh();

protected:
    void done(int result) override;

private:
    void fill();
    void placeAll();

    CVarListDlg& model;
    QTableWidget* table;
    bool filling = false;
};

namespace host {

/// Shows the variables of a prompt below the list of files.
void add_open_options(QFileDialog& dialog, const open_prompt& prompt);

} // namespace host
