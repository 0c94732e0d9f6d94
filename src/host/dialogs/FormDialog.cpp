#include "host/dialogs/FormDialog.h"

#include "host/peer/QtPeer.h"

#include <QFontMetrics>
#include <QFrame>
#include <QPushButton>
#include <QRadioButton>

namespace vldv::host {

CFormDialog::CFormDialog(CDialog& model_, QWidget* parent) : QDialog(parent), model(model_)
{
    setWindowTitle(QString::fromUtf8(model.layout().title));
    // Dialog units become pixels by the font, so that texts fit at any size.
    const QFontMetrics metrics(font());
    const double unitX = metrics.averageCharWidth() / 4.0, unitY = metrics.height() / 8.0;
    int right = 0, bottom = 0;
    for (const dialog_control& control : model.layout().controls) {
        QWidget* const widget = makeControl(control);
        const QRect place(qRound(control.left * unitX), qRound(control.top * unitY), qRound(control.width * unitX),
                          std::max(qRound(control.height * unitY), widget->minimumSizeHint().height()));
        widget->setGeometry(place);
        right = std::max(right, qRound((control.left + control.width + 7) * unitX));
        bottom = std::max(bottom, place.bottom() + qRound(7 * unitY));
    }
    setFixedSize(right, bottom);
}

CFormDialog::~CFormDialog()
{
    for (const dialog_control& control : model.layout().controls)
        if (CWnd* const pane = model.pane(control.id)) pane->DestroyWindow();
}

QWidget* CFormDialog::makeControl(const dialog_control& control)
{
    const unsigned id = control.id;
    const QString text = QString::fromUtf8(control.text);
    switch (control.kind) {
    case control_kind::pane: {
        auto* const widget = new QWidget(this);
        widget->setAccessibleName(text);
        if (CWnd* const pane = model.pane(id)) pane->setPeer(std::make_unique<CQtPeer>(*pane, widget));
        return widget;
    }
    case control_kind::radio: {
        auto* const button = new QRadioButton(text, this);
        button->setChecked(model.isChecked(id));
        connect(button, &QRadioButton::clicked, this, [this, id] { command(id); });
        return button;
    }
    default: {
        auto* const button = new QPushButton(text, this);
        button->setAutoDefault(true); // the Return key presses the one with the focus
        button->setDefault(control.kind == control_kind::defaultButton);
        connect(button, &QPushButton::clicked, this, [this, id] { command(id); });
        return button;
    }
    }
}

void CFormDialog::command(unsigned id)
{
    model.OnCommand(id);
    if (!model.isOpen()) QDialog::done(model.result());
}

void CFormDialog::done(int result)
{
    // Closed by the window's own means: the Escape key, the frame.
    if (model.isOpen()) model.OnCancel();
    QDialog::done(result);
}

} // namespace vldv::host
