#include "host/dialogs/variable_editor.h"

#include "base/variables/option_display.h"
#include "platform/app/WinApp.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QPointer>
#include <QToolButton>
#include <QWheelEvent>
#include <algorithm>

namespace vldv::host {

namespace {

constexpr QSize swatchSize(30, 14); // pixels

using base::shown_field;

/// A list that the wheel turns only while it has the focus: it stands in a grid that is scrolled.
class calm_list : public QComboBox {
public:
    calm_list() { setFocusPolicy(Qt::StrongFocus); }

protected:
    void wheelEvent(QWheelEvent* event) override
    {
        if (hasFocus())
            QComboBox::wheelEvent(event);
        else
            event->ignore();
    }
};

QString shown_text(const SPMVarList& list, const SPMVar& variable)
{
    return QString::fromStdString(base::shown_text(list, variable));
}

QStringList choices_of(const SPMVarList& list, const SPMVar& variable)
{
    QStringList out;
    for (unsigned i = 0; i < variable.get_enum_size(); ++i) out << QString::fromUtf8(variable.get_enum_label(i));
    for (const std::string& choice : base::shown_field_of(list, variable).choices)
        out << QString::fromStdString(choice);
    return out;
}

variable_editor make_check_box(const storing& store)
{
    auto* const box = new QCheckBox;
    QObject::connect(box, &QCheckBox::toggled, box, [store](bool on) { store(on ? "true" : "false"); });
    return {box, [box](const SPMVarList&, const SPMVar& variable) {
                const QSignalBlocker quiet(box);
                box->setChecked(static_cast<bool>(variable));
            }};
}

variable_editor make_choice(const storing& store)
{
    auto* const box = new calm_list;
    QObject::connect(box, &QComboBox::textActivated, box, store);
    return {box, [box](const SPMVarList& list, const SPMVar& variable) {
                const QSignalBlocker quiet(box);
                QStringList offered;
                for (int i = 0; i < box->count(); ++i) offered << box->itemText(i);
                // A choice moves to another place of its variable's list; what is offered keeps its order.
                const QStringList choices = choices_of(list, variable);
                if (!std::is_permutation(offered.begin(), offered.end(), choices.begin(), choices.end())) {
                    box->clear();
                    box->addItems(choices);
                }
                box->setCurrentText(shown_text(list, variable));
            }};
}

/// Colours are kept with red in the low byte.
QColor color_of(unsigned bgr) { return {int(bgr & 255), int(bgr >> 8 & 255), int(bgr >> 16 & 255)}; }

QString kept_text(const QColor& color)
{
    return QStringLiteral("0x%1").arg(color.red() | color.green() << 8 | color.blue() << 16, 6, 16, QLatin1Char('0'));
}

/// As everywhere else: "#ff0000" is red. Numbers that are no colour stay numbers.
QString color_text(unsigned bgr)
{
    constexpr unsigned white = 0xffffff;
    return bgr <= white ? color_of(bgr).name() : QStringLiteral("0x%1").arg(bgr, 0, 16);
}

/// What was typed as a colour, as it is kept; all else, numbers too, as it was typed.
QString kept_color(const QString& typed)
{
    const QColor color(typed.startsWith('#') ? typed : QString());
    return color.isValid() ? kept_text(color) : typed;
}

/// A patch of the colour in a frame, so that it is seen on any background.
void show_color(QToolButton& button, const QColor& color)
{
    const double ratio = button.devicePixelRatioF();
    QPixmap patch(button.iconSize() * ratio);
    patch.setDevicePixelRatio(ratio);
    patch.fill(color);
    QPainter painter(&patch);
    painter.setPen(button.palette().color(QPalette::ButtonText));
    painter.drawRect(QRectF(0.5, 0.5, button.iconSize().width() - 1.0, button.iconSize().height() - 1.0));
    button.setIcon(patch);
}

void ask_color(QWidget& above, const QColor& before, const storing& store)
{
    const QColor color = QColorDialog::getColor(before, &above);
    if (color.isValid()) store(kept_text(color));
}

/// The ending that the first pattern of a filter asks for: "Videos (*.avi)|*.avi" gives "avi".
std::string extension_of(const std::string& filter)
{
    const std::size_t pattern = filter.find("|*.");
    if (pattern == std::string::npos) return {};
    const std::string rest = filter.substr(pattern + 3);
    const std::string extension = rest.substr(0, rest.find_first_of("|;, "));
    return extension == "*" ? std::string() : extension;
}

void ask_path(const shown_field& field, const QString& before, const storing& store)
{
    CWinApp* const app = AfxGetApp();
    if (!app) return;
    const std::string filter = field.filter + "||";
    if (field.saves) {
        const auto path = app->host().askSavePath(
            {.suggestedPath = before.toStdWString(), .filter = filter, .extension = extension_of(field.filter)});
        if (path) store(QString::fromStdWString(*path));
        return;
    }
    open_prompt prompt;
    if (!before.isEmpty()) prompt.folder = QFileInfo(before).path().toStdWString();
    prompt.filter = filter;
    const std::vector<std::wstring> paths = app->host().askOpenPaths(prompt);
    if (!paths.empty()) store(QString::fromStdWString(paths.front()));
}

constexpr const char* refusedMark = "refused"; // property of a field

void mark_refused(QLineEdit& line, bool isRefused)
{
    line.setProperty(refusedMark, isRefused);
    QPalette colors;
    if (isRefused) colors.setColor(QPalette::Text, Qt::red);
    line.setPalette(colors);
}

/// What cannot be taken stays, so that the user can mend it.
void store_typed(QLineEdit& line, const storing& store)
{
    const QString typed = line.text();
    line.setModified(false);
    const bool isTaken = store(typed);
    mark_refused(line, !isTaken);
    if (isTaken) return;
    line.setText(typed);
    line.setModified(true);
}

QLineEdit* make_line(const storing& store)
{
    auto* const line = new QLineEdit;
    line->setFrame(false);
    QObject::connect(line, &QLineEdit::editingFinished, line, [line, store] {
        if (line->isModified()) store_typed(*line, store);
    });
    return line;
}

struct line_with_button {
    QWidget* both;
    QLineEdit* line;
    QToolButton* button;
};

line_with_button make_line_with_button(const storing& store)
{
    auto* const both = new QWidget;
    auto* const layout = new QHBoxLayout(both);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* const line = make_line(store);
    auto* const button = new QToolButton;
    layout->addWidget(line);
    layout->addWidget(button);
    both->setFocusProxy(line);
    return {both, line, button};
}

/// A path with a button that asks for it.
variable_editor make_path(const shown_field& field, const storing& store)
{
    const auto [both, field_line, button] = make_line_with_button(store);
    QLineEdit* const line = field_line; // closures hold no bindings
    button->setText(QStringLiteral("..."));
    QObject::connect(button, &QToolButton::clicked, both,
                     [line, store, field] { ask_path(field, line->text(), store); });
    return {both, [line](const SPMVarList& list, const SPMVar& variable) {
                if (!line->isModified()) line->setText(shown_text(list, variable));
            }};
}

/// A colour's digits with a patch of it, which opens the palette of all colours.
variable_editor make_color(const storing& store)
{
    const auto [editor, field_line, patch] =
        make_line_with_button([store](const QString& typed) { return store(kept_color(typed)); });
    QWidget* const both = editor; // closures hold no bindings
    QLineEdit* const line = field_line;
    QToolButton* const button = patch;
    button->setIconSize(swatchSize);
    button->setToolTip(QStringLiteral("Choose a colour"));
    button->setAccessibleName(button->toolTip());
    button->setFocusPolicy(Qt::StrongFocus);
    QObject::connect(button, &QToolButton::clicked, both,
                     [owner = QPointer(both), line, store] { ask_color(*owner, QColor(line->text()), store); });
    return {both, [line, button](const SPMVarList&, const SPMVar& variable) {
                const auto bgr = static_cast<unsigned>(static_cast<int>(variable));
                if (!line->isModified()) line->setText(color_text(bgr));
                show_color(*button, color_of(bgr));
            }};
}

variable_editor make_widget(const SPMVarList& list, const SPMVar& variable, const storing& store)
{
    if (variable.type == SPM_VAR_BOOLEAN) return make_check_box(store);
    const shown_field field = base::shown_field_of(list, variable);
    if (variable.type == SPM_VAR_ENUM || field.what == shown_field::kind::list) return make_choice(store);
    if (base::is_color(list, variable)) return make_color(store);
    if (field.what == shown_field::kind::path) return make_path(field, store);
    auto* const line = make_line(store);
    return {line, [line](const SPMVarList& values, const SPMVar& shown) {
                if (!line->isModified()) line->setText(shown_text(values, shown));
            }};
}

} // namespace

void forget_refused(QLineEdit& field)
{
    field.setModified(false);
    mark_refused(field, false);
}

QLineEdit* refused_field(QWidget& editor)
{
    const auto isRefused = [](const QLineEdit& line) { return line.property(refusedMark).toBool(); };
    if (auto* const line = qobject_cast<QLineEdit*>(&editor)) return isRefused(*line) ? line : nullptr;
    for (QLineEdit* const line : editor.findChildren<QLineEdit*>())
        if (isRefused(*line)) return line;
    return nullptr;
}

variable_editor make_variable_editor(const SPMVarList& list, const SPMVar& variable, const storing& store)
{
    variable_editor editor = make_widget(list, variable, store);
    editor.show(list, variable);
    return editor;
}

} // namespace vldv::host
