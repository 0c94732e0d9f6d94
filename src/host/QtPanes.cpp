#include "host/QtPanes.h"

#include "platform/View.h"

#include <QEvent>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QVBoxLayout>

CQtTextPane::CQtTextPane(CWnd& logic_, QWidget* parent)
    : CQtPeer(logic_, new QWidget(parent)), editor(new QPlainTextEdit(widget))
{
    auto* const layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(editor);
    editor->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    editor->setLineWrapMode(QPlainTextEdit::NoWrap);
    editor->setReadOnly(true);
}

void CQtTextPane::setText(const std::wstring& text)
{
    editor->setPlainText(QString::fromStdWString(text));
    editor->moveCursor(QTextCursor::End);
}

// The widgets inside paint and take keys themselves.
bool CQtTextPane::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize) tellSizeLater();
    return false;
}

CQtTablePane::CQtTablePane(CWnd& logic_, QWidget* parent)
    : CQtPeer(logic_, new QWidget(parent)), search(new QLineEdit(widget)), table(new QTableWidget(widget))
{
    auto* const layout = new QVBoxLayout(widget);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(search);
    layout->addWidget(table);
    search->setPlaceholderText(QStringLiteral("Search"));
    search->setClearButtonEnabled(true);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents); // all lines of a long text
    table->horizontalHeader()->setStretchLastSection(true);
    connect(search, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (auto* const view = dynamic_cast<CView*>(&logic)) view->setFilter(text.toStdWString());
    });
}

void CQtTablePane::setTable(const std::vector<std::vector<std::wstring>>& rows)
{
    const bool isFirst = table->columnCount() == 0;
    const std::size_t columns = rows.empty() ? 0 : rows.front().size();
    table->setColumnCount(static_cast<int>(columns));
    table->setRowCount(rows.empty() ? 0 : static_cast<int>(rows.size() - 1));
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (std::size_t column = 0; column < columns && column < rows[row].size(); ++column) {
            auto* const item = new QTableWidgetItem(QString::fromStdWString(rows[row][column]));
            if (row == 0)
                table->setHorizontalHeaderItem(static_cast<int>(column), item);
            else
                table->setItem(static_cast<int>(row - 1), static_cast<int>(column), item);
        }
    if (isFirst) table->resizeColumnsToContents();
}

bool CQtTablePane::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize) tellSizeLater();
    return false;
}
