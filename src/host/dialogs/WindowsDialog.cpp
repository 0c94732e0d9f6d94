#include "host/dialogs/WindowsDialog.h"

#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace vldv::host {

CWindowsDialog::CWindowsDialog(const std::vector<std::wstring>& titles, std::size_t active, QWidget* owner)
    : QDialog(owner), list(new QListWidget(this))
{
    setWindowTitle(QStringLiteral("Windows..."));
    resize(520, 360);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    for (const std::wstring& title : titles) list->addItem(QString::fromStdWString(title));
    if (active < titles.size()) list->setCurrentRow(static_cast<int>(active));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    QPushButton* const activate = buttons->addButton(QStringLiteral("&Activate"), QDialogButtonBox::AcceptRole);
    QPushButton* const close = buttons->addButton(QStringLiteral("&Close windows"), QDialogButtonBox::ActionRole);
    auto* const rows = new QVBoxLayout(this);
    rows->addWidget(list);
    rows->addWidget(buttons);
    activate->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(activate, &QPushButton::clicked, this, &CWindowsDialog::activateCurrent);
    connect(close, &QPushButton::clicked, this, &CWindowsDialog::closeSelected);
    connect(list, &QListWidget::itemDoubleClicked, this, &CWindowsDialog::activateCurrent);
}

void CWindowsDialog::activateCurrent()
{
    if (list->currentRow() >= 0) chosen.activated = static_cast<std::size_t>(list->currentRow());
    accept();
}

void CWindowsDialog::closeSelected()
{
    for (const QListWidgetItem* item : list->selectedItems())
        chosen.closed.push_back(static_cast<std::size_t>(list->row(item)));
    accept();
}

} // namespace vldv::host
