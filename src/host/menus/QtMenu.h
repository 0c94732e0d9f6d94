#pragma once
#include <QMenu>

namespace vldv {
struct menu_metrics;
}

namespace vldv::host {

/// A menu that shows a strip of each palette beside its name.
class CQtMenu : public QMenu {
public:
    using QMenu::QMenu;
    /// An item that selects a palette.
    void addPalette(QAction& action, unsigned commandId);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    menu_metrics metrics() const;
};

} // namespace vldv::host
