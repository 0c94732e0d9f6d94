#pragma once
#include <QFrame>
#include <functional>
#include <vector>

namespace vldv::host {

/// What stands in the main window while no file is open: recent files and the bundled examples, each a click away.
class CStartPage : public QFrame {
public:
    /// One line of the page.
    struct entry {
        QString title, hint; ///< what is shown; what the pointer and the status bar tell
        std::function<void()> open;
    };

    /// \param area  which the page covers
    explicit CStartPage(QWidget* area);

    void setEntries(std::vector<entry> recent, std::vector<entry> examples, std::function<void()> ask);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* content = nullptr;
};

} // namespace vldv::host
