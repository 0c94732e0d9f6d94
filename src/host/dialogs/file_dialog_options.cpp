#include "host/dialogs/file_dialog_options.h"

#include "base/variables/option_display.h"
#include "host/dialogs/variable_editor.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QStackedWidget>
#include <algorithm>
#include <filesystem>

namespace vldv::host {

namespace {

/// Labels and editors in a row; what is edited changes at once.
QWidget* row_of(const std::vector<SPMVar*>& variables, QWidget* parent)
{
    auto* const row = new QWidget(parent);
    auto* const inside = new QHBoxLayout(row);
    inside->setContentsMargins(0, 0, 0, 0);
    static const SPMVarList none;
    for (SPMVar* const variable : variables) {
        if (variable->type == SPM_VAR_NONE) continue;
        inside->addWidget(new QLabel(QString::fromUtf8(variable->get_description()), row));
        const auto store = [variable](const QString& text) {
            return base::take_shown_text(none, *variable, text.toUtf8().constData());
        };
        inside->addWidget(make_variable_editor(none, *variable, store).widget);
    }
    inside->addStretch();
    return row;
}

void add_below(QFileDialog& dialog, QWidget* widget)
{
    if (auto* const layout = qobject_cast<QGridLayout*>(dialog.layout()))
        layout->addWidget(widget, layout->rowCount(), 0, 1, layout->columnCount());
}

/// The field in which the user writes the name.
QLineEdit* name_field(const QFileDialog& dialog)
{
    return dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
}

} // namespace

void add_open_options(QFileDialog& dialog, const open_prompt& prompt)
{
    if (!prompt.variables || prompt.variables->empty()) return;
    std::vector<SPMVar*> variables;
    for (SPMVar& each : *prompt.variables) variables.push_back(&each);
    add_below(dialog, row_of(variables, &dialog));
}

filter_choice::filter_choice(QFileDialog& dialog_, const save_prompt::choice& wanted_)
    : dialog(dialog_), wanted(wanted_), pages(new QStackedWidget(&dialog_))
{
    for (const std::vector<SPMVar*>& each : wanted.variables) pages->addWidget(row_of(each, pages));
    add_below(dialog, pages);
    const QStringList filters = dialog.nameFilters();
    if (wanted.first < static_cast<std::size_t>(filters.size()))
        dialog.selectNameFilter(filters[static_cast<qsizetype>(wanted.first)]);
    follow();
    connect(&dialog, &QFileDialog::filterSelected, this, [this] { follow(); });
}

std::size_t filter_choice::chosen() const
{
    return static_cast<std::size_t>(std::max<qsizetype>(dialog.nameFilters().indexOf(dialog.selectedNameFilter()), 0));
}

void filter_choice::follow()
{
    const std::size_t pair = chosen();
    pages->setCurrentIndex(static_cast<int>(pair));
    if (!wanted.nameFor) return;
    const auto extension = std::filesystem::path(wanted.nameFor(L"a", pair)).extension().string();
    dialog.setDefaultSuffix(QString::fromStdString(extension).mid(1));
    QLineEdit* const field = name_field(dialog);
    if (field && !field->text().isEmpty())
        field->setText(QString::fromStdWString(wanted.nameFor(field->text().toStdWString(), pair)));
}

std::unique_ptr<filter_choice> add_filter_choice(QFileDialog& dialog, const save_prompt& prompt)
{
    return prompt.filters ? std::make_unique<filter_choice>(dialog, *prompt.filters) : nullptr;
}

} // namespace vldv::host
