#include "host/dialogs/about.h"

#include <QApplication>
#include <QMessageBox>

namespace vldv::host {

namespace {

constexpr int pictureSide = 64; // pixels

} // namespace

QString about_text()
{
    const QString libraries = QStringLiteral("Qt ") + qVersion() + QStringLiteral(", " VLDV_LIBRARIES);
    return QStringLiteral("<h3>Velmira %1</h3>"
                          "<p>Opens, measures and processes what a scanning-probe microscope recorded.</p>"
                          "<p>Free software under the GNU General Public License, version 3 or later, without any "
                          "warranty. The licence stands under Help, Contents.</p>"
                          "<p>Built with %2.</p>")
        .arg(QStringLiteral(VLDV_VERSION), libraries.toHtmlEscaped());
}

void show_about(QWidget* over)
{
    QMessageBox box(QMessageBox::NoIcon, QStringLiteral("About Velmira"), about_text(), QMessageBox::Ok, over);
    box.setTextFormat(Qt::RichText);
    box.setIconPixmap(QApplication::windowIcon().pixmap(pictureSide));
    box.exec();
}

} // namespace vldv::host
