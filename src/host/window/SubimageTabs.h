#pragma once
#include <QSize>
#include <QTabBar>
#include <vector>

namespace vldv::host {

/// Tabs that keep their sizes. The toolkit asks for the sizes of all tabs again for each one that is added, and each
/// answer measures a text: thousands of curves took a quarter of a minute.
class CSubimageTabs : public QTabBar {
public:
    explicit CSubimageTabs(QWidget* parent = nullptr) : QTabBar(parent) {}

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
    void tabRemoved(int index) override;
    /// Another font or style.
    void changeEvent(QEvent* event) override;

private:
    mutable std::vector<QSize> sizes; ///< of the first tabs, as far as they were asked for
};

} // namespace vldv::host
