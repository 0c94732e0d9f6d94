#include "host/window/QtGridPane.h"

#include "platform/app/View.h"
#include "platform/app/grid_content.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <QTableView>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace vldv::host {

/// The content as the toolkit asks for it. It keeps no cell.
class CQtGridPane::model : public QAbstractTableModel {
public:
    model(const IGridContent* content_, QObject* parent) : QAbstractTableModel(parent), content(content_) {}

    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : shownRows; }
    int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : shownColumns; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        // The content may have fewer rows by now than the table knows.
        const auto row = static_cast<std::size_t>(index.row());
        if (!index.isValid() || row >= content->gridRows()) return {};
        if (role == Qt::DisplayRole)
            return QString::fromStdWString(content->gridCell(row, static_cast<std::size_t>(index.column())));
        if (role == Qt::TextAlignmentRole) return int(Qt::AlignRight | Qt::AlignVCenter);
        if (role == Qt::ForegroundRole && content->isGridRowGrey(row)) return QColor(Qt::gray);
        return {};
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (role != Qt::DisplayRole) return {};
        if (orientation == Qt::Vertical) return section + 1;
        const auto& headings = content->gridHeadings();
        const auto column = static_cast<std::size_t>(section);
        return column < headings.size() ? QString::fromStdWString(headings[column]) : QString();
    }
    void refresh()
    {
        const int nextRows = static_cast<int>(content->gridRows()),
                  nextColumns = static_cast<int>(content->gridHeadings().size());
        if (nextRows != shownRows || nextColumns != shownColumns) {
            beginResetModel();
            shownRows = nextRows;
            shownColumns = nextColumns;
            endResetModel();
            return;
        }
        if (shownRows == 0 || shownColumns == 0) return;
        emit dataChanged(index(0, 0), index(shownRows - 1, shownColumns - 1));
        emit headerDataChanged(Qt::Horizontal, 0, shownColumns - 1);
    }

private:
    const IGridContent* content;
    int shownRows = 0, shownColumns = 0;
};

CQtGridPane::CQtGridPane(CWnd& logic_, QWidget* parent)
    : CQtPeer(logic_, new QWidget(parent)),
      content(dynamic_cast<const IGridContent*>(&logic_)),
      rows(new model(content, widget)),
      table(new QTableView(widget)),
      footer(new QTableWidget(widget)),
      note(new QLabel(widget))
{
    auto* const layout = new QVBoxLayout(widget);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(2);
    layout->addWidget(table, 1);
    layout->addWidget(footer);
    layout->addWidget(note);
    widget->setFocusProxy(table);
    note->setWordWrap(true);
    table->setModel(rows);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setWordWrap(false);
    // Rows of one height: none has to be measured.
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    footer->horizontalHeader()->hide();
    footer->setEditTriggers(QAbstractItemView::NoEditTriggers);
    footer->setSelectionMode(QAbstractItemView::NoSelection);
    footer->setFocusPolicy(Qt::NoFocus);
    footer->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    footer->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    footer->verticalHeader()->setDefaultSectionSize(table->verticalHeader()->defaultSectionSize());
    connectClicks();
}

void CQtGridPane::connectClicks()
{
    table->installEventFilter(this);
    connect(table->horizontalScrollBar(), &QScrollBar::valueChanged, footer->horizontalScrollBar(),
            &QScrollBar::setValue);
    connect(table->horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int column, int, int width) { footer->setColumnWidth(column, width); });
    auto* const view = dynamic_cast<CView*>(&logic);
    if (!view) return;
    table->horizontalHeader()->setSectionsClickable(true);
    table->horizontalHeader()->setHighlightSections(false);
    connect(table->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [view](int column) { view->OnTableHeading(static_cast<unsigned>(column)); });
    connect(table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this, view](const QModelIndex& now, const QModelIndex&) {
                if (now.isValid() && !isShowing) view->OnTableRow(static_cast<unsigned>(now.row()));
            });
}

void CQtGridPane::gridChanged()
{
    if (!content) return;
    isShowing = true;
    const bool isFirst = rows->columnCount({}) == 0;
    rows->refresh();
    if (isFirst)
        for (int column = 0; column < rows->columnCount({}); ++column) {
            constexpr int padding = 24;
            const int heading = table->fontMetrics().horizontalAdvance(
                rows->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
            table->setColumnWidth(column, std::max(heading + padding, table->fontMetrics().averageCharWidth() * 12));
        }
    showFooter();
    isShowing = false;
}

void CQtGridPane::showFooter()
{
    const auto lines = content->gridFooter();
    footer->setRowCount(static_cast<int>(lines.size()));
    footer->setColumnCount(rows->columnCount({}));
    QStringList names;
    for (std::size_t row = 0; row < lines.size(); ++row)
        for (std::size_t cell = 0; cell < lines[row].size(); ++cell) {
            const QString text = QString::fromStdWString(lines[row][cell]);
            if (cell == 0) {
                names += text;
                continue;
            }
            auto* const item = new QTableWidgetItem(text);
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            footer->setItem(static_cast<int>(row), static_cast<int>(cell - 1), item);
        }
    footer->setVerticalHeaderLabels(names);
    const int height = footer->verticalHeader()->defaultSectionSize() * static_cast<int>(lines.size());
    footer->setFixedHeight(height + 2 * footer->frameWidth());
    footer->setVisible(!lines.empty());
    note->setText(QString::fromStdWString(content->gridNote()));
    note->setVisible(!note->text().isEmpty());
    alignFooter();
}

/// Its columns stand below those of the table.
void CQtGridPane::alignFooter()
{
    const int names =
        std::max(footer->verticalHeader()->sizeHint().width(), table->verticalHeader()->sizeHint().width());
    footer->verticalHeader()->setFixedWidth(names);
    table->verticalHeader()->setFixedWidth(names);
    for (int column = 0; column < footer->columnCount(); ++column)
        footer->setColumnWidth(column, table->columnWidth(column));
}

void CQtGridPane::showGridRow(std::size_t row)
{
    const QModelIndex index = rows->index(static_cast<int>(row), 0);
    if (!index.isValid()) return;
    isShowing = true;
    table->selectRow(index.row());
    table->scrollTo(index);
    isShowing = false;
}

std::vector<std::size_t> CQtGridPane::selectedGridRows() const
{
    std::vector<std::size_t> chosen;
    for (const QModelIndex& index : table->selectionModel()->selectedRows())
        chosen.push_back(static_cast<std::size_t>(index.row()));
    std::ranges::sort(chosen);
    return chosen;
}

void CQtGridPane::selectAll()
{
    table->setFocus();
    table->selectAll();
}

/// Keys that the table does not take go to the view.
bool CQtGridPane::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == widget.data() && event->type() == QEvent::Resize) tellSizeLater();
    if (watched == table && event->type() == QEvent::KeyPress) {
        const auto* const press = static_cast<QKeyEvent*>(event);
        if (press->key() == Qt::Key_Delete) return logic.OnKeyDown(VK_DELETE);
    }
    return false;
}

} // namespace vldv::host
