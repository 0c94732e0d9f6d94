#pragma once
#include "platform/dialogs/PictureChooser.h"

#include <QDialog>

class QListWidget;

namespace vldv::host {

/// The widgets of a picture chooser: pictures in rows, each over its caption.
class CPictureChooserDialog : public QDialog {
public:
    CPictureChooserDialog(CPictureChooser& model_, QWidget* parent);

    void accept() override;

private:
    void fill();

    CPictureChooser& model;
    QListWidget* list;
};

} // namespace vldv::host
