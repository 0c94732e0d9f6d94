// Headings in the grid of a dialog: seen, read, folded.
#include "workstation_fixture.h"

#include "host/dialogs/VariableDialog.h"
#include "host/dialogs/VariableGrid.h"

#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>

namespace {

class GridHeadings : public WorkstationTest {
protected:
    GridHeadings()
    {
        dialog = window.findChild<host::CVariableDialog*>();
        settle();
    }
    host::CVariableGrid& grid() { return *dialog->grid(); }
    QToolButton* heading(int row) { return qobject_cast<QToolButton*>(grid().cellWidget(row, 0)); }
    std::vector<bool> hidden()
    {
        std::vector<bool> out;
        for (int row = 0; row < grid().rowCount(); ++row) out.push_back(grid().isRowHidden(row));
        return out;
    }
    declared_dialog declared{{"ZScale(Y Scale)", "ZScale.value(Range),double", "ZScale.start(Start),double",
                              "other(Other),boolean", "empty(Nothing)"},
                             false};
    SPMVarList& list = declared.list;
    host::CVariableDialog* dialog = nullptr;
};

TEST_F(GridHeadings, StandAcrossTheColumnsAndFoldTheirRows)
{
    ASSERT_NE(dialog, nullptr);
    ASSERT_EQ(grid().rowCount(), 5);
    ASSERT_NE(heading(0), nullptr);
    EXPECT_EQ(heading(0)->text(), "Y Scale");
    EXPECT_EQ(grid().columnSpan(0, 0), 2);
    EXPECT_EQ(grid().cellWidget(0, 1), nullptr) << "nothing to edit";
    EXPECT_TRUE(qobject_cast<QLineEdit*>(grid().cellWidget(1, 1)) != nullptr);
    EXPECT_TRUE(grid().item(1, 0)->text().startsWith(' ')) << "set in";
    EXPECT_EQ(grid().item(3, 0)->text(), "Other");
    EXPECT_EQ(heading(0)->arrowType(), Qt::DownArrow);
    EXPECT_EQ(heading(4)->arrowType(), Qt::NoArrow) << "nothing to fold";
    heading(0)->click();
    EXPECT_EQ(hidden(), (std::vector<bool>{false, true, true, false, false}));
    list.set_var("ZScale.value", "2.5"); // also while it is hidden
    settle();
    EXPECT_EQ(hidden(), (std::vector<bool>{false, true, true, false, false}));
    heading(0)->click();
    EXPECT_EQ(hidden(), std::vector<bool>(5, false));
    EXPECT_EQ(qobject_cast<QLineEdit*>(grid().cellWidget(1, 1))->text(), "2.5");
}

/// A grid whose middle row is a list of choices.
TEST_F(GridHeadings, ArrowsGoFromRowToRowAndChangeNothing)
{
    constexpr const char* declarations[] = {"first(First),int,7", "mode(Mode),enum,Relative,Absolute",
                                            "last(Last),double,2"};
    std::vector<SPMVar> rows;
    for (const char* declaration : declarations) rows.emplace_back().Init(declaration);
    SPMVarList options;
    options.set_variables(rows.data(), 3);
    CVarListCtrl control;
    control.SetVarList(&options);
    host::CVariableGrid arrows(control);
    arrows.show();
    auto* const choice = qobject_cast<QComboBox*>(arrows.cellWidget(1, 1));
    ASSERT_NE(choice, nullptr);
    arrows.cellWidget(0, 1)->setFocus();
    const auto press = [&](Qt::Key key) {
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(arrows.focusWidget(), &down);
    };
    press(Qt::Key_Down);
    EXPECT_EQ(arrows.focusWidget(), choice);
    press(Qt::Key_Down);
    EXPECT_EQ(arrows.focusWidget(), arrows.cellWidget(2, 1));
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(arrows.focusWidget(), arrows.cellWidget(0, 1));
    EXPECT_EQ(choice->currentIndex(), 0) << "nothing was chosen";
}

TEST_F(GridHeadings, LeaveTheFocusToTheFirstOption)
{
    ASSERT_NE(dialog, nullptr);
    dialog->activateWindow();
    settle();
    EXPECT_TRUE(grid().cellWidget(1, 1)->hasFocus());
    auto* const box = qobject_cast<QCheckBox*>(grid().cellWidget(3, 1));
    ASSERT_NE(box, nullptr);
    box->click();
    EXPECT_TRUE(static_cast<bool>(list["other"])) << "rows below headings edit their own variable";
}

} // namespace
