#include "host/window/QtPanes.h"

#include "platform/app/View.h"
#include "view/panes/text_pages.h"

#include <QEvent>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QTextOption>
#include <QVBoxLayout>
#include <map>
#include <set>

namespace vldv::host {

CQtTextPane::CQtTextPane(CWnd& logic_, QWidget* parent)
    : CQtPeer(logic_, new QWidget(parent)), editor(new QPlainTextEdit(widget))
{
    auto* const layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(editor);
    editor->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    editor->setLineWrapMode(QPlainTextEdit::NoWrap);
    editor->setReadOnly(true);
    widget->setFocusProxy(editor);
}

namespace {

/// Cells stand below the heading of their column: as wide tab stops as the widest cells ask for.
QList<QTextOption::Tab> tab_stops(const std::wstring& text, double characterWidth)
{
    QList<QTextOption::Tab> stops;
    for (const std::size_t start : view::column_starts(text))
        stops.append({static_cast<double>(start) * characterWidth, QTextOption::LeftTab});
    return stops;
}

} // namespace

void CQtTextPane::setText(const std::wstring& text)
{
    QTextOption option = editor->document()->defaultTextOption();
    option.setTabs(tab_stops(text, QFontMetricsF(editor->font()).horizontalAdvance('0')));
    editor->document()->setDefaultTextOption(option);
    editor->setPlainText(QString::fromStdWString(text));
    editor->moveCursor(QTextCursor::End);
}

QString selected_text(const QPlainTextEdit& editor)
{
    return editor.textCursor()
        .selectedText()
        .replace(QChar::ParagraphSeparator, '\n')
        .replace(QChar::LineSeparator, '\n');
}

std::wstring CQtTextPane::selectedText() const { return selected_text(*editor).toStdWString(); }

void CQtTextPane::selectAll()
{
    editor->setFocus();
    editor->selectAll();
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
    widget->setFocusProxy(table); // keys go to the rows
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents); // all lines of a long text
    table->horizontalHeader()->setStretchLastSection(true);
    connect(search, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (auto* const view = dynamic_cast<CView*>(&logic)) view->setFilter(text.toStdWString());
    });
    connectClicks();
}

/// The view hears of headings and rows: of each press, and of keys that lead to another row.
void CQtTablePane::connectClicks()
{
    auto* const view = dynamic_cast<CView*>(&logic);
    if (!view) return;
    table->viewport()->installEventFilter(this);
    connect(table->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [view](int column) { view->OnTableHeading(static_cast<unsigned>(column)); });
    connect(table, &QTableWidget::currentCellChanged, this, [this](int row, int, int before, int) {
        if (row != before) tellRow(toldRow = row);
    });
    connect(table, &QTableWidget::cellPressed, this, [this](int row, int) {
        if (row != toldRow) tellRow(row);
    });
    connect(table, &QTableWidget::cellActivated, this, [this, view](int row, int) {
        if (row >= 0 && !isShowing) view->OnTableRowActivated(static_cast<unsigned>(row));
    });
}

void CQtTablePane::tellRow(int row)
{
    auto* const view = dynamic_cast<CView*>(&logic);
    if (view && row >= 0 && !isShowing) view->OnTableRow(static_cast<unsigned>(row));
}

std::vector<std::vector<std::wstring>> CQtTablePane::selectedCells() const
{
    std::map<int, std::map<int, std::wstring>> cells; // by row and column
    std::set<int> columns;
    for (const QModelIndex& index : table->selectionModel()->selectedIndexes()) {
        cells[index.row()][index.column()] = index.data().toString().toStdWString();
        columns.insert(index.column());
    }
    std::vector<std::vector<std::wstring>> rows;
    for (auto& [row, line] : cells) {
        std::vector<std::wstring>& out = rows.emplace_back();
        for (const int column : columns) out.push_back(line[column]); // empty between selected ones
    }
    return rows;
}

void CQtTablePane::selectAll()
{
    table->setFocus();
    table->selectAll();
}

void CQtTablePane::setTable(const std::vector<std::vector<std::wstring>>& rows)
{
    isShowing = true;
    const bool isFirst = table->columnCount() == 0;
    table->clearSelection(); // it counts rows, and they are others now
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
    // The focus would choose a first cell by itself, and the view would take that for a click.
    if (!table->currentIndex().isValid()) table->setCurrentCell(0, 0, QItemSelectionModel::NoUpdate);
    isShowing = false;
}

bool CQtTablePane::eventFilter(QObject* watched, QEvent* event)
{
    const bool isPane = watched == widget.data(); // else the inside of the table
    if (isPane && event->type() == QEvent::Resize) tellSizeLater();
    if (!isPane && event->type() == QEvent::MouseButtonPress) toldRow = -1;
    return false;
}

} // namespace vldv::host
