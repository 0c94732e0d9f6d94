#pragma once
#include "platform/dialogs/Dialog.h"

#include <QDialog>

namespace vldv::host {

/// The widgets of a dialog whose controls stand in the resources.
class CFormDialog : public QDialog {
public:
    CFormDialog(CDialog& model_, QWidget* parent);
    ~CFormDialog() override;

protected:
    void done(int result) override;

private:
    QWidget* makeControl(const dialog_control& control);
    void command(unsigned id);

    CDialog& model;
};

} // namespace vldv::host
