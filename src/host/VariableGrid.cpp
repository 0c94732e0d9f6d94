#include "host/VariableGrid.h"

#include <QApplication>
#include <QHeaderView>

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
    setFocusPolicy(Qt::NoFocus); // the Tab key goes from editor to editor
    verticalHeader()->hide();
    horizontalHeader()->setStretchLastSection(true);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { followFocus(now); });
    rebuild();
    model->setPeer(std::make_unique<refresher>(this));
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

void CVariableGrid::rebuild()
{
    shown.clear();
    setRowCount(0);
    setRowCount(static_cast<int>(model->rowCount()));
    for (unsigned i = 0; i < model->rowCount(); ++i) {
        const SPMVar& variable = model->row(i);
        auto* const name = new QTableWidgetItem(QString::fromUtf8(variable.get_description()));
        name->setFlags(Qt::ItemIsEnabled);
        name->setToolTip(name->text());
        setItem(static_cast<int>(i), 0, name);
        const auto store = [this, i](const QString& text) {
            if (!model) return;
            model->edit(i, text.toUtf8().constData());
            refresh(); // shows what was stored, also where the text was not taken
        };
        shown.push_back({variable.get_name(), variable.get_description(), variable.type,
                         host::make_variable_editor(*model->GetVarList(), variable, store)});
        setCellWidget(static_cast<int>(i), 1, shown.back().editor.widget);
    }
}

void CVariableGrid::showValues()
{
    isShowing = true;
    for (unsigned i = 0; i < shown.size(); ++i) shown[i].editor.show(*model->GetVarList(), model->row(i));
    isShowing = false;
}

/// The row whose editor gets the focus is scrolled into sight.
void CVariableGrid::followFocus(const QWidget* now)
{
    for (std::size_t i = 0; now && i < shown.size(); ++i) {
        const QWidget* const editor = shown[i].editor.widget;
        if (editor == now || editor->isAncestorOf(now)) return scrollTo(indexFromItem(item(static_cast<int>(i), 0)));
    }
}
