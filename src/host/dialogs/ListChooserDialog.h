#pragma once
#include "platform/dialogs/ListChooser.h"

#include <QDialog>

class QGridLayout;
class QListWidget;

namespace vldv::host {

/// The widgets of a list chooser: the sources above each other at the left, the chosen list at the right.
class CListChooserDialog : public QDialog {
public:
    CListChooserDialog(CListChooser& model_, QWidget* parent);

private:
    void addSource(std::size_t index, QGridLayout& layout);
    void fillChosen();

    CListChooser& model;
    QListWidget* chosen;
};

} // namespace vldv::host
