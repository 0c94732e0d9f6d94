#include "host/dialogs/file_dialog.h"

#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHeaderView>
#include <QScreen>
#include <QTreeView>

namespace vldv::host {

namespace {

/// Pictures and types by the name alone. The toolkit would read the begin of each file for them, in the thread that
/// draws and again whenever a folder changes: a folder into which an instrument records would keep it busy.
class name_icons : public QFileIconProvider {
public:
    QIcon icon(const QFileInfo& file) const override
    {
        return QFileIconProvider::icon(file.isDir() ? QAbstractFileIconProvider::Folder
                                                    : QAbstractFileIconProvider::File);
    }
    QString type(const QFileInfo& file) const override { return file.suffix(); }
};

/// "name|*.a;*.b|name|*.c||" as the toolkit's list.
QStringList name_filters(const std::string& filter)
{
    QStringList out;
    const QStringList fields = QString::fromStdString(filter).split('|');
    for (qsizetype i = 0; i + 1 < fields.size() && !fields[i].isEmpty(); i += 2) {
        QString name = fields[i];
        // The toolkit reads patterns from the parentheses, so those of the name have to go.
        if (const qsizetype open = name.lastIndexOf('('); open > 0) name = name.left(open).trimmed();
        QString patterns = fields[i + 1];
        patterns.replace(';', ' ').replace(',', ' ').replace("*.*", "*");
        out << name + " (" + patterns + ")";
    }
    return out;
}

/// Sizes and dates as wide as they are, names as wide as the room allows; without the type, which the toolkit takes
/// from the extension and has other ideas of.
void fit_columns(const QFileDialog& dialog)
{
    auto* const files = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    if (!files) return;
    constexpr int typeColumn = 2;
    files->setColumnHidden(typeColumn, true);
    QHeaderView& header = *files->header();
    header.setStretchLastSection(false);
    header.setSectionResizeMode(QHeaderView::ResizeToContents);
    header.setSectionResizeMode(0, QHeaderView::Stretch);
}

/// What window managers put around a dialog, about.
constexpr QSize around(16, 48);

} // namespace

void size_file_dialog(QFileDialog& dialog, const QSize& wanted)
{
    dialog.resize(wanted.boundedTo(dialog.screen()->availableSize() - around));
}

void prepare_file_dialog(QFileDialog& dialog, const std::string& filter)
{
    static name_icons icons; // the dialog does not own it
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setIconProvider(&icons);
    const QStringList filters = name_filters(filter);
    constexpr int mostWithPatterns = 4; // a list of all formats would unfold over the whole screen
    dialog.setOption(QFileDialog::HideNameFilterDetails, filters.size() > mostWithPatterns);
    dialog.setNameFilters(filters);
    fit_columns(dialog);
}

} // namespace vldv::host
