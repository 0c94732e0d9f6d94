#include "host/dialogs/HelpWindow.h"

#include "host/peer/command_icon.h"

#include <QFile>
#include <QHBoxLayout>
#include <QListWidget>
#include <QTextBrowser>

namespace vldv::host {

namespace {

constexpr QSize usualSize(820, 620);
constexpr int listWidth = 150; // pixels
constexpr int fileRole = Qt::UserRole;

struct help_page {
    const char *title, *file;
};
constexpr help_page helpPages[] = {
    {"The workstation", "workstation.md"},
    {"Surfaces", "surface.md"},
    {"Curves", "curves.md"},
    {"Distributions", "distributions.md"},
    {"Spectra", "spectra.md"},
    {"Features", "features.md"},
    {"Files that open", "formats.md"},
    {"The command line", "command-line.md"},
    {"Licence", "LICENSE"},
};

} // namespace

CHelpWindow::CHelpWindow(QWidget* parent) : QDialog(parent), pages(new QListWidget(this)), text(new QTextBrowser(this))
{
    command_icon(0); // enters the resources
    setWindowTitle(QStringLiteral("Velmira Help"));
    resize(usualSize);
    pages->setFixedWidth(listWidth);
    for (const help_page& page : helpPages) {
        auto* const row = new QListWidgetItem(QString::fromLatin1(page.title), pages);
        row->setData(fileRole, QString::fromLatin1(page.file));
    }
    text->setOpenLinks(false); // the pages stand in the list
    auto* const columns = new QHBoxLayout(this);
    columns->addWidget(pages);
    columns->addWidget(text, 1);
    connect(pages, &QListWidget::currentRowChanged, this, &CHelpWindow::showPage);
    pages->setCurrentRow(0);
}

void CHelpWindow::showPage(int row)
{
    const QString name = pages->item(row)->data(fileRole).toString();
    QFile file(":/help/" + name);
    if (!file.open(QFile::ReadOnly)) return;
    const QString content = QString::fromUtf8(file.readAll());
    if (name.endsWith(".md"))
        text->setMarkdown(content);
    else
        text->setPlainText(content);
}

} // namespace vldv::host
