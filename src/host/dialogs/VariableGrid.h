#pragma once
#include "host/dialogs/variable_editor.h"
#include "platform/dialogs/VarListCtrl.h"

#include <QTableWidget>
#include <set>
#include <string>
#include <vector>

namespace vldv::host {

/// The widget of a grid of variables: a row each with its label and what edits it. Values that change elsewhere appear
/// in the widgets that are there, so that focus and what is being typed stay.
class CVariableGrid : public QTableWidget {
public:
    /// \param model_  outlives this or is detached
    explicit CVariableGrid(CVarListCtrl& model_, QWidget* parent = nullptr);
    ~CVariableGrid() override;

    /// Asks the model for nothing more.
    void detach();
    void refresh();
    /// Goes to the first field whose text was not taken and says so. \return there is one
    bool leadsToRefused();
    /// Shows the values where typed texts were not taken.
    void forgetRefused();
    using QTableWidget::sizeHintForColumn;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// Up and Down in an editor go from row to row; they change no value.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// What widgets are made for; another value does not make them anew.
    struct shown_row {
        std::string name, label;
        SPMVarType type;
        variable_editor editor;
    };
    bool showsSameRows() const;
    void rebuild();
    variable_editor addOption(unsigned row);
    variable_editor addHeading(unsigned row);
    /// Hides what stands under headings that the user folded.
    void showFolds();
    void showValues();
    void followFocus(const QWidget* now);
    /// \return the row in whose editor a widget stands, or the number of rows
    std::size_t rowOf(const QWidget* now) const;
    void watchArrows(QWidget* editor);
    void focusRowAfter(std::size_t row, int step);

    CVarListCtrl* model;
    std::vector<shown_row> shown;
    std::set<std::string> folded; ///< names of headings
    bool isShowing = false;
};

} // namespace vldv::host
