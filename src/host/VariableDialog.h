#pragma once
#include "platform/VarListDlg.h"

#include <QDialog>

class CVariableGrid;
class QFileDialog;
struct open_prompt;

/// The widgets of a variable dialog, laid out as its layout says.
class CVariableDialog : public QDialog {
public:
    /// \param model_  closes this when it ends
    CVariableDialog(CVarListDlg& model_, QWidget* parent);

    CVariableGrid* grid() const noexcept { return table; }
    /// The model has ended.
    void finish();

protected:
    void done(int result) override;

private:
    void placeAll();

    CVarListDlg* model; ///< null when it has ended
    CVariableGrid* table;
};

namespace host {

/// Shows the variables of a prompt below the list of files.
void add_open_options(QFileDialog& dialog, const open_prompt& prompt);

} // namespace host
