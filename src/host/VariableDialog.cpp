#include "host/VariableDialog.h"

#include "base/option_display.h"
#include "platform/Host.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableWidget>
#include <QToolButton>

namespace {

/// Tells the dialog of changes of the list.
class refresher : public IVarListDialogPeer {
public:
    explicit refresher(CVariableDialog* dialog_) : dialog(dialog_) {}
    void refresh() override
    {
        if (dialog) dialog->refresh();
    }

private:
    QPointer<CVariableDialog> dialog;
};

/// The widget that edits one variable; `store` gets what the user made of it.
QWidget* make_editor(const SPMVarList& list, const SPMVar& variable, const std::function<void(const QString&)>& store)
{
    if (variable.type == SPM_VAR_BOOLEAN) {
        auto* const box = new QCheckBox;
        box->setChecked(static_cast<bool>(variable));
        QObject::connect(box, &QCheckBox::toggled, box, [store](bool on) { store(on ? "true" : "false"); });
        return box;
    }
    const base::shown_field field = base::shown_field_of(list, variable);
    const QString shown = QString::fromStdString(base::shown_text(list, variable));
    if (variable.type == SPM_VAR_ENUM || field.what == base::shown_field::kind::list) {
        auto* const box = new QComboBox;
        for (unsigned i = 0; i < variable.get_enum_size(); ++i)
            box->addItem(QString::fromUtf8(variable.get_enum_label(i)));
        for (const std::string& choice : field.choices) box->addItem(QString::fromStdString(choice));
        box->setCurrentText(shown);
        QObject::connect(box, &QComboBox::textActivated, box, store);
        return box;
    }
    auto* const line = new QLineEdit(shown);
    line->setFrame(false);
    QObject::connect(line, &QLineEdit::editingFinished, line, [line, store] {
        if (line->isModified()) store(line->text());
        line->setModified(false);
    });
    if (field.what != base::shown_field::kind::path && field.what != base::shown_field::kind::hexadecimal) return line;
    auto* const both = new QWidget;
    auto* const layout = new QHBoxLayout(both);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(line);
    auto* const more = new QToolButton;
    more->setText(QStringLiteral("..."));
    layout->addWidget(more);
    both->setFocusProxy(line);
    QObject::connect(more, &QToolButton::clicked, both, [both, line, store, field] {
        QString chosen;
        if (field.what == base::shown_field::kind::path) {
            chosen = field.saves ? QFileDialog::getSaveFileName(both, {}, line->text())
                                 : QFileDialog::getOpenFileName(both, {}, line->text());
        } else {
            // Colours are kept with red in the low byte.
            const unsigned bgr = line->text().toUInt(nullptr, 0);
            const QColor before(int(bgr & 255), int(bgr >> 8 & 255), int(bgr >> 16 & 255));
            const QColor color = QColorDialog::getColor(before, both);
            if (color.isValid())
                chosen = QStringLiteral("0x%1").arg(color.red() | color.green() << 8 | color.blue() << 16, 0, 16);
        }
        if (!chosen.isEmpty()) store(chosen);
    });
    return both;
}

} // namespace

CVariableDialog::CVariableDialog(CVarListDlg& model_, QWidget* parent)
    : QDialog(parent), model(model_), table(new QTableWidget(this))
{
    const platform::variable_layout& layout = model.layout();
    setWindowTitle(layout.title.empty() ? QStringLiteral("Options") : QString::fromStdString(layout.title));
    table->setColumnCount(2);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    const bool hasHeadings = !layout.nameHeading.empty() || !layout.valueHeading.empty();
    table->setHorizontalHeaderLabels({hasHeadings ? QString::fromStdString(layout.nameHeading) : "Option",
                                      hasHeadings ? QString::fromStdString(layout.valueHeading) : "Value"});
    placeAll();
    fill();
    model.setPeer(std::make_unique<refresher>(this));
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
    const platform::variable_layout& layout = model.layout();
    QRect all = pixels(layout.grid);
    table->setGeometry(all);
    for (const platform::layout_button& row : layout.buttons) {
        QString text = QString::fromStdString(row.name);
        if (text.isEmpty()) text = row.what == platform::layout_button::kind::ok ? "OK" : "Cancel";
        auto* const button = new QPushButton(text, this);
        button->setGeometry(pixels(row.place));
        button->setAutoDefault(false); // the Return key takes a value and does not close the dialog
        all |= button->geometry();
        connect(button, &QPushButton::clicked, this, [this, row] {
            setFocus(); // a value that is being typed counts
            model.press(row);
            if (!model.isOpen()) QDialog::done(model.result());
        });
    }
    setFixedSize(all.right() + all.left() + 1, all.bottom() + all.top() + 1);
    table->setColumnWidth(0, table->width() * 11 / 20);
}

void CVariableDialog::fill()
{
    filling = true;
    table->setRowCount(static_cast<int>(model.rowCount()));
    for (unsigned i = 0; i < model.rowCount(); ++i) {
        const SPMVar& variable = model.row(i);
        auto* const name = new QTableWidgetItem(QString::fromUtf8(variable.get_description()));
        name->setFlags(Qt::ItemIsEnabled);
        table->setItem(static_cast<int>(i), 0, name);
        QWidget* const editor = make_editor(model.list(), variable, [this, i](const QString& text) {
            if (filling) return;
            model.edit(i, text.toUtf8().constData());
            refresh(); // shows what was stored, also where the text was not taken
        });
        table->setCellWidget(static_cast<int>(i), 1, editor);
    }
    filling = false;
}

void CVariableDialog::refresh()
{
    // Between two events: the editor that caused the change is still running.
    QMetaObject::invokeMethod(
        this,
        [this] {
            const int row = table->currentRow();
            fill();
            if (row >= 0) table->setCurrentCell(row, 1);
        },
        Qt::QueuedConnection);
}

void CVariableDialog::done(int result)
{
    if (model.isOpen())
        model.EndDialog(result == QDialog::Accepted ? CVarListDlg::resultOk : CVarListDlg::resultCancel);
    QDialog::done(result);
}

void host::add_open_options(QFileDialog& dialog, const open_prompt& prompt)
{
    auto* const layout = qobject_cast<QGridLayout*>(dialog.layout());
    if (!layout || !prompt.variables || prompt.variables->empty()) return;
    auto* const row = new QWidget(&dialog);
    auto* const inside = new QHBoxLayout(row);
    inside->setContentsMargins(0, 0, 0, 0);
    static const SPMVarList none;
    for (SPMVar& variable : *prompt.variables) {
        if (variable.type == SPM_VAR_NONE) continue;
        inside->addWidget(new QLabel(QString::fromUtf8(variable.get_description()), row));
        inside->addWidget(make_editor(none, variable, [&variable](const QString& text) {
            base::take_shown_text(none, variable, text.toUtf8().constData());
        }));
    }
    inside->addStretch();
    layout->addWidget(row, layout->rowCount(), 0, 1, layout->columnCount());
}
