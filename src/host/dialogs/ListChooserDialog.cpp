#include "host/dialogs/ListChooserDialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <functional>

namespace vldv::host {

namespace {

std::vector<std::size_t> selected_rows(const QListWidget& list)
{
    std::vector<std::size_t> rows;
    for (int i = 0; i < list.count(); ++i)
        if (list.item(i)->isSelected()) rows.push_back(static_cast<std::size_t>(i));
    return rows;
}

QListWidget* add_list(QGridLayout& layout, int row, int column, int rows, const std::string& heading)
{
    auto* const list = new QListWidget;
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->setObjectName(QString::fromStdString(heading));
    layout.addWidget(new QLabel(QString::fromStdString(heading)), row, column);
    layout.addWidget(list, row + 1, column, rows, 1);
    return list;
}

QPushButton* add_button(QVBoxLayout& column, const char* text, const std::function<void()>& act)
{
    auto* const button = new QPushButton(QString::fromLatin1(text));
    button->setAutoDefault(false);
    QObject::connect(button, &QPushButton::clicked, button, act);
    column.addWidget(button);
    return button;
}

} // namespace

CListChooserDialog::CListChooserDialog(CListChooser& model_, QWidget* parent) : QDialog(parent), model(model_)
{
    setWindowTitle(QString::fromStdString(model.title));
    auto* const layout = new QGridLayout(this);
    for (std::size_t i = 0; i < model.sources.size(); ++i) addSource(i, *layout);
    const int rows = static_cast<int>(2 * model.sources.size());
    chosen = add_list(*layout, 0, 2, rows - 1, model.chosenHeading);
    auto* const order = new QVBoxLayout;
    layout->addLayout(order, 1, 3, rows - 1, 1);
    const auto move = [this](int by) {
        const int row = chosen->currentRow();
        if (row < 0) return;
        const std::size_t now = model.move(static_cast<std::size_t>(row), by);
        fillChosen();
        chosen->setCurrentRow(static_cast<int>(now));
    };
    add_button(*order, "<", [this] {
        model.remove(selected_rows(*chosen));
        fillChosen();
    });
    add_button(*order, "<<", [this] {
        model.removeAll();
        fillChosen();
    });
    add_button(*order, "Up", [move] { move(-1); });
    add_button(*order, "Down", [move] { move(1); });
    order->addStretch();
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    layout->addWidget(buttons, rows, 0, 1, 4);
    fillChosen();
}

void CListChooserDialog::addSource(std::size_t index, QGridLayout& layout)
{
    const int row = static_cast<int>(2 * index);
    QListWidget* const list = add_list(layout, row, 0, 1, model.sources[index].heading);
    for (const std::string& entry : model.sources[index].entries) list->addItem(QString::fromStdString(entry));
    auto* const take = new QVBoxLayout;
    layout.addLayout(take, row + 1, 1);
    const auto takeSelected = [this, list, index] {
        model.add(index, selected_rows(*list));
        fillChosen();
    };
    add_button(*take, ">", takeSelected);
    add_button(*take, ">>", [this, index] {
        model.addAll(index);
        fillChosen();
    });
    take->addStretch();
    connect(list, &QListWidget::itemDoubleClicked, this, takeSelected);
}

void CListChooserDialog::fillChosen()
{
    chosen->clear();
    for (std::size_t i = 0; i < model.chosen.size(); ++i) chosen->addItem(QString::fromStdString(model.chosenText(i)));
}

} // namespace vldv::host
