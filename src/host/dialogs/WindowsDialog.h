#pragma once
#include "platform/app/Host.h"

#include <QDialog>
#include <string>
#include <vector>

class QListWidget;

namespace vldv::host {

/// The list of open windows: one is activated, several are closed.
class CWindowsDialog : public QDialog {
public:
    /// \param active  the one that is chosen at first; beyond the list for none
    CWindowsDialog(const std::vector<std::wstring>& titles, std::size_t active, QWidget* owner);
    const window_choice& choice() const noexcept { return chosen; }

private:
    void activateCurrent();
    void closeSelected();

    QListWidget* list;
    window_choice chosen;
};

} // namespace vldv::host
