#include "host/window/preview_pane.h"

#include "platform/app/Host.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace vldv::host {

namespace {

constexpr int paneWidth = 220, settleTime = 150; // pixels; milliseconds before a file is read: the user may walk on

/// The pane's widgets and the file that waits to be shown.
class preview_pane : public QWidget {
public:
    preview_pane(QWidget* parent, const open_prompt& prompt_)
        : QWidget(parent), prompt(prompt_), picture(new QLabel), text(new QLabel), on(new QCheckBox(tr("&Preview")))
    {
        setFixedWidth(paneWidth);
        picture->setAlignment(Qt::AlignCenter);
        text->setWordWrap(true);
        text->setTextFormat(Qt::PlainText);
        text->setAlignment(Qt::AlignTop | Qt::AlignLeft);
        text->setObjectName(QStringLiteral("preview.text"));
        picture->setObjectName(QStringLiteral("preview.picture"));
        on->setChecked(true);
        auto* const column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(on);
        column->addWidget(picture);
        column->addWidget(text, 1);
        timer.setSingleShot(true);
        timer.setInterval(settleTime);
        connect(&timer, &QTimer::timeout, this, [this] { show(); });
        connect(on, &QCheckBox::toggled, this, [this] { show(); });
    }

    void choose(const QString& path)
    {
        if (std::exchange(chosen, path) == path) return;
        picture->clear();
        text->clear();
        timer.start();
    }

private:
    void show()
    {
        picture->clear();
        text->clear();
        if (!on->isChecked() || !QFileInfo(chosen).isFile()) return;
        const file_preview shown = prompt.preview(chosen.toStdWString());
        text->setText(QString::fromStdString(shown.text));
        if (shown.pixels.empty()) return;
        const QImage image(reinterpret_cast<const uchar*>(shown.pixels.data()), shown.size.cx, shown.size.cy,
                           shown.size.cx * 4, QImage::Format_RGB32);
        const int times =
            std::max(1, paneWidth / std::max({1, image.width(), image.height()})); // a map of curves is small
        // A pixmap may go on using the image's bytes.
        picture->setPixmap(QPixmap::fromImage(image.scaled(image.size() * times).copy()));
    }

    const open_prompt& prompt;
    QLabel *picture, *text;
    QCheckBox* on;
    QTimer timer;
    QString chosen;
};

} // namespace

int add_preview(QFileDialog& dialog, const open_prompt& prompt)
{
    auto* const layout = qobject_cast<QGridLayout*>(dialog.layout());
    if (!layout || !prompt.preview) return 0;
    auto* const pane = new preview_pane(&dialog, prompt);
    layout->addWidget(pane, 0, layout->columnCount(), layout->rowCount(), 1);
    QObject::connect(&dialog, &QFileDialog::currentChanged, pane, [pane](const QString& path) { pane->choose(path); });
    // A name that is typed selects its file, but does not walk to it. Several names are in quotes.
    if (auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
        QObject::connect(name, &QLineEdit::textChanged, pane, [pane, &dialog](const QString& text) {
            if (!text.contains('"')) pane->choose(dialog.directory().absoluteFilePath(text));
        });
    return paneWidth;
}

} // namespace vldv::host
