#include "host/dialogs/FailuresDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace vldv::host {

namespace {

constexpr QSize usualSize(760, 360);

QTableWidgetItem* cell(const QString& text, const QString& tip)
{
    auto* const item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    item->setToolTip(tip);
    return item;
}

/// Most reasons begin with the path, which the list shows already.
QString reason_of(const file_failure& failure)
{
    const QString path = QString::fromStdWString(failure.path), reason = QString::fromStdString(failure.reason);
    return reason.startsWith(path + ": ") ? reason.mid(path.size() + 2) : reason;
}

} // namespace

CFailuresDialog::CFailuresDialog(const std::vector<file_failure>& failures, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Velmira"));
    resize(usualSize);
    auto* const table = new QTableWidget(static_cast<int>(failures.size()), 2);
    table->setHorizontalHeaderLabels({QStringLiteral("File"), QStringLiteral("Reason")});
    table->verticalHeader()->hide();
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
    QString all;
    for (int row = 0; row < table->rowCount(); ++row) {
        const file_failure& each = failures[static_cast<std::size_t>(row)];
        const QString path = QString::fromStdWString(each.path), reason = reason_of(each);
        table->setItem(row, 0, cell(QFileInfo(path).fileName(), path));
        table->setItem(row, 1, cell(reason, reason));
        all += path + "\t" + reason + "\n";
    }
    table->setTextElideMode(Qt::ElideMiddle); // the ending stays
    table->setWordWrap(false);
    table->resizeColumnToContents(0);
    table->setColumnWidth(0, std::min(table->columnWidth(0), usualSize.width() / 2));
    table->horizontalHeader()->setStretchLastSection(true);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    QPushButton* const copy = buttons->addButton(QStringLiteral("&Copy"), QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, copy, [all] { QApplication::clipboard()->setText(all); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto* const rows = new QVBoxLayout(this);
    rows->addWidget(new QLabel(QStringLiteral("%1 files could not be opened:").arg(failures.size())));
    rows->addWidget(table);
    rows->addWidget(buttons);
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    buttons->button(QDialogButtonBox::Ok)->setFocus();
}

} // namespace vldv::host
