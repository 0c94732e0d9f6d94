#include "host/dialogs/VariableGrid.h"

#include "base/variables/option_group.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>
#include <QToolTip>
#include <algorithm>

namespace vldv::host {

CVariableGrid::CVariableGrid(CVarListCtrl& model_, QWidget* parent) : QTableWidget(parent), model(&model_)
{
    /// Tells the widget of changes of the list.
    struct refresher : IVarListPeer {
        explicit refresher(CVariableGrid* grid_) : grid(grid_) {}
        void refresh() override { grid->refresh(); }
        CVariableGrid* grid;
    };
    setColumnCount(2);
    setSelectionMode(NoSelection);
    setFocusPolicy(Qt::NoFocus);
    setTabKeyNavigation(false); // the Tab key goes from editor to editor, not from cell to cell
    verticalHeader()->hide();
    horizontalHeader()->setStretchLastSection(true);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { followFocus(now); });
    rebuild();
    model->setPeer(std::make_unique<refresher>(this));
}

// The base takes editors down, and the focus wanders among those that are left.
CVariableGrid::~CVariableGrid()
{
    qApp->disconnect(this);
    detach();
}

void CVariableGrid::detach()
{
    if (CVarListCtrl* const left = std::exchange(model, nullptr)) left->setPeer(nullptr);
}

void CVariableGrid::refresh()
{
    if (!model || isShowing) return;
    if (showsSameRows()) return showValues();
    // Between two events: the editor that caused the change is still running.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (model && !showsSameRows()) rebuild();
        },
        Qt::QueuedConnection);
}

bool CVariableGrid::showsSameRows() const
{
    if (shown.size() != model->rowCount()) return false;
    for (unsigned i = 0; i < shown.size(); ++i) {
        const SPMVar& variable = model->row(i);
        if (shown[i].name != variable.get_name() || shown[i].label != variable.get_description() ||
            shown[i].type != variable.type)
            return false;
    }
    return true;
}

/// The Return key is the dialog's; a table keeps it to itself while it holds editors.
void CVariableGrid::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return event->ignore();
    QTableWidget::keyPressEvent(event);
}

void CVariableGrid::rebuild()
{
    shown.clear();
    clearSpans();
    setRowCount(0);
    setRowCount(static_cast<int>(model->rowCount()));
    for (unsigned i = 0; i < model->rowCount(); ++i) {
        const SPMVar& variable = model->row(i);
        shown.push_back({variable.get_name(), variable.get_description(), variable.type,
                         model->isHeading(i) ? addHeading(i) : addOption(i)});
    }
    showFolds();
}

variable_editor CVariableGrid::addOption(unsigned row)
{
    const SPMVar& variable = model->row(row);
    const bool isUnder = model->headingOf(row) != unsigned(-1);
    const QString label = isUnder ? QString::fromUtf8(variable.get_description())
                                  : QString::fromStdString(base::grouped_label(*model->GetVarList(), variable));
    auto* const name = new QTableWidgetItem(isUnder ? QStringLiteral("    ") + label : label);
    name->setFlags(Qt::ItemIsEnabled);
    name->setToolTip(label);
    setItem(static_cast<int>(row), 0, name);
    const auto store = [this, row](const QString& text) {
        const bool isTaken = model && model->edit(row, text.toUtf8().constData());
        if (model) refresh(); // shows what was stored
        return isTaken;
    };
    variable_editor editor = make_variable_editor(*model->GetVarList(), variable, store);
    watchArrows(editor.widget);
    setCellWidget(static_cast<int>(row), 1, editor.widget);
    return editor;
}

/// A line across both columns that folds what stands under it.
variable_editor CVariableGrid::addHeading(unsigned row)
{
    const SPMVar& variable = model->row(row);
    auto* const line = new QToolButton;
    line->setText(QString::fromUtf8(variable.get_description()));
    line->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    line->setAutoRaise(true);
    line->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    QFont bold = line->font();
    bold.setBold(true);
    line->setFont(bold);
    connect(line, &QToolButton::clicked, this, [this, name = std::string(variable.get_name())] {
        if (folded.erase(name) == 0) folded.insert(name);
        if (model) showFolds();
    });
    setItem(static_cast<int>(row), 0, new QTableWidgetItem); // what is scrolled to
    setSpan(static_cast<int>(row), 0, 1, 2);
    setCellWidget(static_cast<int>(row), 0, line);
    return {line, [](const SPMVarList&, const SPMVar&) {}};
}

void CVariableGrid::showFolds()
{
    std::set<unsigned> filled;
    for (unsigned i = 0; i < shown.size(); ++i) {
        const unsigned heading = model->headingOf(i);
        if (heading != unsigned(-1)) filled.insert(heading);
        setRowHidden(static_cast<int>(i), heading != unsigned(-1) && folded.contains(shown[heading].name));
    }
    for (unsigned i = 0; i < shown.size(); ++i) {
        auto* const line = qobject_cast<QToolButton*>(cellWidget(static_cast<int>(i), 0));
        if (!line) continue;
        line->setArrowType(!filled.contains(i)              ? Qt::NoArrow
                           : folded.contains(shown[i].name) ? Qt::RightArrow
                                                            : Qt::DownArrow);
    }
}

void CVariableGrid::showValues()
{
    isShowing = true;
    for (unsigned i = 0; i < shown.size(); ++i) shown[i].editor.show(*model->GetVarList(), model->row(i));
    isShowing = false;
}

bool CVariableGrid::leadsToRefused()
{
    for (const shown_row& row : shown)
        if (QLineEdit* const field = row.editor.widget ? refused_field(*row.editor.widget) : nullptr) {
            field->setFocus();
            QToolTip::showText(field->mapToGlobal(QPoint(0, field->height())),
                               QStringLiteral("\"%1\" cannot be taken").arg(field->text()), field);
            return true;
        }
    return false;
}

void CVariableGrid::forgetRefused()
{
    for (const shown_row& row : shown)
        if (QLineEdit* const field = row.editor.widget ? refused_field(*row.editor.widget) : nullptr)
            forget_refused(*field);
    if (model) refresh();
}

/// The row whose editor gets the focus is scrolled into sight.
void CVariableGrid::followFocus(const QWidget* now)
{
    const std::size_t row = rowOf(now);
    if (row < shown.size()) scrollTo(indexFromItem(item(static_cast<int>(row), 0)));
}

std::size_t CVariableGrid::rowOf(const QWidget* now) const
{
    const auto holds = [now](const shown_row& row) {
        return now && (row.editor.widget == now || row.editor.widget->isAncestorOf(now));
    };
    return static_cast<std::size_t>(std::ranges::find_if(shown, holds) - shown.begin());
}

void CVariableGrid::watchArrows(QWidget* editor)
{
    editor->installEventFilter(this);
    for (QWidget* const part : editor->findChildren<QWidget*>()) part->installEventFilter(this);
}

bool CVariableGrid::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress) return QTableWidget::eventFilter(watched, event);
    const auto& key = *static_cast<QKeyEvent*>(event);
    const bool isArrow = key.key() == Qt::Key_Up || key.key() == Qt::Key_Down;
    if (!isArrow || (key.modifiers() & ~Qt::KeypadModifier)) return QTableWidget::eventFilter(watched, event);
    focusRowAfter(rowOf(qobject_cast<QWidget*>(watched)), key.key() == Qt::Key_Up ? -1 : 1);
    return true;
}

void CVariableGrid::focusRowAfter(std::size_t row, int step)
{
    const auto takesFocus = [this](int at) {
        const QWidget* const editor = cellWidget(at, 1);
        return editor && !isRowHidden(at) && editor->isEnabled();
    };
    int at = static_cast<int>(row) + step;
    while (at >= 0 && at < rowCount() && !takesFocus(at)) at += step;
    if (at < 0 || at >= rowCount()) return;
    QWidget* editor = cellWidget(at, 1);
    // What is put together of several widgets has the first that can be typed into.
    if (editor->focusPolicy() == Qt::NoFocus && !editor->focusProxy())
        for (QWidget* const part : editor->findChildren<QWidget*>())
            if (part->focusPolicy() & Qt::TabFocus) {
                editor = part;
                break;
            }
    editor->setFocus(Qt::TabFocusReason);
}

} // namespace vldv::host
