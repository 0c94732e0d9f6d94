#pragma once
#include "platform/app/Window.h"

#include <set>

namespace vldv::cli {

/// A window that has a size and timers and is never seen: what a view needs to lay itself out. Sizes are not told; who
/// gives one calls `OnSize`.
class CCliWindow : public IWindowPeer {
public:
    explicit CCliWindow(CWnd& logic_) : logic(logic_) {}

    CRect clientRect() const override { return {{}, rect.Size()}; }
    CRect windowRect() const override { return rect; }
    void place(const CRect& wanted) override { rect = wanted; }
    CSize outerSize(CSize client) const override { return client; }
    CPoint clientToScreen(CPoint point) const override { return point + (rect.TopLeft() - CPoint()); }
    void show(bool) override {}
    bool isVisible() const override { return false; }
    bool isMinimized() const override { return false; }
    bool isMaximized() const override { return false; }
    void bringToFront() override {}
    void setTitle(const std::wstring&) override {}
    void setFullScreen(bool, const CRect&) override {}
    void invalidate(const CRgn*, bool) override {}
    void update() override {}
    std::unique_ptr<CDC> clientDC() override { return nullptr; }
    void setCapture(bool) override {}
    bool hasCapture() const override { return false; }
    void setFocus() override {}
    bool hasFocus() const override { return false; }
    void setCursor(cursor_shape) override {}
    void setTimer(unsigned id, unsigned) override { waiting.insert(id); }
    void killTimer(unsigned id) override { waiting.erase(id); }
    void flushTimers() override
    {
        const std::set<unsigned> now = waiting;
        for (const unsigned id : now)
            if (waiting.contains(id)) logic.OnTimer(id);
    }

private:
    CWnd& logic;
    CRect rect;
    std::set<unsigned> waiting;
};

} // namespace vldv::cli
