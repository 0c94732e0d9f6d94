#pragma once
#include "host/peer/QtPeer.h"
#include "host/window/frame_drag.h"

#include <QMdiSubWindow>
#include <functional>
#include <string>
#include <vector>

class CFrameWnd;
class QMdiArea;
class QTabBar;
class QToolBar;

namespace vldv::host {

/// A document's frame: a window in the main window's area, its content being tabs and the view.
class CQtFrame : public CQtPeer {
public:
    CQtFrame(CWnd& logic_, QMdiArea& area);
    ~CQtFrame() override;

    CSize outerSize(CSize client) const override;
    void place(const CRect& rect) override;
    CRect windowRect() const override;
    void show(bool on) override;
    void bringToFront() override;
    void setTabs(const std::vector<std::wstring>& names, int selected, bool visible) override;
    int setToolbar(unsigned id, bool large, const std::vector<toolbar_button>& added) override;
    /// Shows the state that commands have now.
    void refreshTools();
    QMdiSubWindow* subWindow() const noexcept { return sub; }
    /// What is left of its size in this room, with a picture of the same shape, which does not get too small to be
    /// used.
    QSize sizeInside(const QSize& room) const;

protected:
    QWidget* outer() const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    CSize decoration() const;
    std::function<bool(unsigned, CCmdUI*)> ownRoute();

    QPointer<QMdiSubWindow> sub;
    void placeStrips();

    QTabBar* tabs;
    std::vector<std::wstring> tabNames; ///< as the bar shows them
    QToolBar* tools;
    frame_drag drag;
};

} // namespace vldv::host
