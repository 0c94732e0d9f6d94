#include "host/dialogs/VariableDialog.h"

#include "host/dialogs/VariableGrid.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <algorithm>
#include <utility>

namespace vldv::host {

namespace {

/// Ends the window with its dialog.
class closer : public IVarListDialogPeer {
public:
    explicit closer(CVariableDialog* dialog_) : dialog(dialog_) {}
    void close() override
    {
        if (dialog) dialog->finish();
    }

private:
    QPointer<CVariableDialog> dialog;
};

} // namespace

CVariableDialog::CVariableDialog(CVarListDlg& model_, QWidget* parent)
    : QDialog(parent), model(&model_), table(new CVariableGrid(model_.grid(), this))
{
    const platform::variable_layout& layout = model->layout();
    setWindowTitle(layout.title.empty() ? QStringLiteral("Options") : QString::fromStdString(layout.title));
    const bool hasHeadings = !layout.nameHeading.empty() || !layout.valueHeading.empty();
    table->setHorizontalHeaderLabels({hasHeadings ? QString::fromStdString(layout.nameHeading) : "Option",
                                      hasHeadings ? QString::fromStdString(layout.valueHeading) : "Value"});
    placeAll();
    for (int row = 0; row < table->rowCount(); ++row)
        if (QWidget* const first = table->cellWidget(row, 1)) {
            first->setFocus();
            break;
        }
    model->setPeer(std::make_unique<closer>(this));
}

/// Dialog units become pixels by the font, so that texts fit at any size.
void CVariableDialog::placeAll()
{
    const QFontMetrics metrics(font());
    const double unitX = metrics.averageCharWidth() * 1.25 / 4.0, unitY = metrics.height() * 1.25 / 8.0;
    const auto pixels = [&](const RECT& units) {
        return QRect(QPoint(qRound(units.left * unitX), qRound(units.top * unitY)),
                     QPoint(qRound(units.right * unitX) - 1, qRound(units.bottom * unitY) - 1));
    };
    const platform::variable_layout& layout = model->layout();
    gridPlace = pixels(layout.grid);
    QRect all = gridPlace;
    table->setGeometry(all);
    for (const platform::layout_button& row : layout.buttons) {
        QString text = QString::fromStdString(row.name);
        if (text.isEmpty()) text = row.what == platform::layout_button::kind::ok ? "OK" : "Cancel";
        auto* const button = new QPushButton(text, this);
        buttons.push_back({button, pixels(row.place)});
        // The Return key takes a value that is being typed, and then presses the button with the focus, else OK.
        button->setAutoDefault(true);
        button->setDefault(row.what == platform::layout_button::kind::ok);
        button->setToolTip(QString::fromStdString(row.tip));
        all |= buttons.back().place;
        connect(button, &QPushButton::clicked, this, [this, row] {
            setFocus(); // a value that is being typed counts
            const bool isLeft = row.what == platform::layout_button::kind::ok && table->leadsToRefused();
            if (model && !isLeft) model->press(row);
            if (model && row.id == "default") table->forgetRefused();
        });
    }
    leastSize = QSize(all.right() + all.left() + 1, all.bottom() + all.top() + 1);
    // On a screen that is smaller than the layout the grid gives way to the buttons.
    constexpr double shareOfScreen = 0.85;
    const QSize fitting = screen()->availableSize() * shareOfScreen;
    setMinimumSize(leastSize.boundedTo(fitting));
    fitColumns();
    resize((leastSize + roomForRows()).boundedTo(fitting));
    resizeEvent(nullptr); // the toolkit's own comes when the window is shown
}

/// Check boxes need no more than their column's heading; names take the rest.
void CVariableDialog::fitColumns()
{
    bool hasBoxesOnly = table->rowCount() > 0;
    for (int row = 0; row < table->rowCount(); ++row)
        hasBoxesOnly &= qobject_cast<QCheckBox*>(table->cellWidget(row, 1)) != nullptr;
    if (!hasBoxesOnly) return table->setColumnWidth(0, table->width() * 11 / 20);
    QHeaderView& header = *table->horizontalHeader();
    header.setStretchLastSection(false);
    header.setSectionResizeMode(0, QHeaderView::Stretch);
    header.setSectionResizeMode(1, QHeaderView::ResizeToContents);
}

/// By how much the grid of the layout is too small for its rows and names, as far as the screen allows.
QSize CVariableDialog::roomForRows() const
{
    constexpr int mostRows = 20;
    constexpr double shareOfScreen = 0.6;
    const QHeaderView &names = *table->horizontalHeader(), &lines = *table->verticalHeader();
    const int rows = std::min(lines.length(), mostRows * lines.defaultSectionSize());
    const int frame = 2 * table->frameWidth();
    const bool isStretched = names.sectionResizeMode(0) == QHeaderView::Stretch;
    const int width =
        isStretched ? table->sizeHintForColumn(0) + table->sizeHintForColumn(1) + 2 * names.fontMetrics().height() : 0;
    const QSize most = screen()->availableSize() * shareOfScreen - leastSize;
    return QSize(width + frame - gridPlace.width(), rows + names.sizeHint().height() + frame - gridPlace.height())
        .boundedTo(most)
        .expandedTo(QSize(0, 0));
}

/// What stands beside or below the grid keeps its distance to it.
void CVariableDialog::resizeEvent(QResizeEvent*)
{
    const QSize more = size() - leastSize;
    table->setGeometry(gridPlace.adjusted(0, 0, more.width(), more.height()));
    for (const auto& [button, place] : buttons)
        button->setGeometry(place.translated(place.left() > gridPlace.right() ? more.width() : 0,
                                             place.top() > gridPlace.bottom() ? more.height() : 0));
}

void CVariableDialog::finish()
{
    table->detach();
    const int result = std::exchange(model, nullptr)->result();
    QDialog::done(result == CVarListDlg::resultOk ? Accepted : Rejected);
}

/// Closed by the window's own means: the Escape key, the frame.
void CVariableDialog::done(int result)
{
    if (model) model->EndDialog(result == Accepted ? CVarListDlg::resultOk : CVarListDlg::resultCancel);
}

} // namespace vldv::host
