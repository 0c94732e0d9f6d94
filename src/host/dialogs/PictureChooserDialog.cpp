#include "host/dialogs/PictureChooserDialog.h"

#include <QDialogButtonBox>
#include <QIcon>
#include <QImage>
#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace vldv::host {

namespace {

constexpr int side = 128, captionHeight = 44; // pixels

QPixmap pixmap_of(const CPictureChooser::entry& entry)
{
    if (entry.pixels.empty()) return {};
    const auto* const bytes = reinterpret_cast<const uchar*>(entry.pixels.data());
    QPixmap picture = QPixmap::fromImage(QImage(bytes, entry.size.cx, entry.size.cy, QImage::Format_RGB32));
    QPainter painter(&picture);
    painter.setPen(Qt::gray); // the background of a curve is that of the list
    painter.drawRect(0, 0, picture.width() - 1, picture.height() - 1);
    return picture;
}

} // namespace

CPictureChooserDialog::CPictureChooserDialog(CPictureChooser& model_, QWidget* parent)
    : QDialog(parent), model(model_), list(new QListWidget(this))
{
    setWindowTitle(QString::fromStdString(model.title));
    resize(560, 400);
    list->setViewMode(QListView::IconMode);
    list->setResizeMode(QListView::Adjust);
    list->setMovement(QListView::Static);
    list->setWordWrap(true);
    list->setSelectionMode(model.takesSeveral ? QAbstractItemView::ExtendedSelection
                                              : QAbstractItemView::SingleSelection);
    int highest = side / 4;
    for (const CPictureChooser::entry& entry : model.entries) highest = std::max(highest, entry.size.cy);
    list->setIconSize({side, highest});
    list->setGridSize({side + side / 4, highest + captionHeight});
    fill();
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton* const ok = buttons->button(QDialogButtonBox::Ok);
    ok->setDefault(true);
    auto* const rows = new QVBoxLayout(this);
    rows->addWidget(list);
    rows->addWidget(buttons);
    const auto update = [this, ok] { ok->setEnabled(!list->selectedItems().isEmpty()); };
    connect(list, &QListWidget::itemSelectionChanged, this, update);
    connect(list, &QListWidget::itemDoubleClicked, this, &CPictureChooserDialog::accept);
    connect(buttons, &QDialogButtonBox::accepted, this, &CPictureChooserDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    if (list->count() > 0) list->setCurrentRow(0);
    update();
    list->setFocus();
}

void CPictureChooserDialog::fill()
{
    for (const CPictureChooser::entry& entry : model.entries) {
        const QString caption = QString::fromStdString(entry.caption);
        auto* const item = new QListWidgetItem(QIcon(pixmap_of(entry)), caption, list);
        item->setToolTip(caption); // a long one is cut
    }
}

void CPictureChooserDialog::accept()
{
    model.chosen.clear();
    for (int i = 0; i < list->count(); ++i)
        if (list->item(i)->isSelected()) model.chosen.push_back(static_cast<std::size_t>(i));
    if (!model.chosen.empty()) QDialog::accept();
}

} // namespace vldv::host
