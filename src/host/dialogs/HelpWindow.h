#pragma once
#include <QDialog>

class QListWidget;
class QTextBrowser;

namespace vldv::host {

/// The pages of the documentation that come with the program, beside the windows that they speak of.
class CHelpWindow : public QDialog {
public:
    explicit CHelpWindow(QWidget* parent);

private:
    void showPage(int row);

    QListWidget* pages;
    QTextBrowser* text;
};

} // namespace vldv::host
