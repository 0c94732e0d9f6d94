#pragma once
#include "platform/dialogs/VarListDlg.h"

#include <QDialog>
#include <vector>

class QFileDialog;
class QPushButton;

namespace vldv {
struct open_prompt;
}

namespace vldv::host {

class CVariableGrid;

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
    void resizeEvent(QResizeEvent* event) override;

private:
    /// A button and its place in a dialog of the layout's size.
    struct placed_button {
        QPushButton* button;
        QRect place;
    };
    void placeAll();
    void fitColumns();
    QSize roomForRows() const;

    CVarListDlg* model; ///< null when it has ended
    CVariableGrid* table;
    QRect gridPlace; ///< of the layout; what the dialog is larger goes to the grid
    QSize leastSize;
    std::vector<placed_button> buttons;
};

} // namespace vldv::host
