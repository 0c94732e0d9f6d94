#pragma once
#include "platform/app/Window.h"
#include "platform/app/menu_item.h"
#include "support/RecordingDC.h"

#include <algorithm>
#include <functional>
#include <map>

/// A window without a screen: geometry as asked for, events when the test pumps. Frames have a border of 4 pixels and a
/// caption of 24, others none.
class HeadlessWindow : public IWindowPeer {
public:
    static constexpr int border = 4, caption = 24, toolsHeight = 26;

    HeadlessWindow(CWnd& logic_, CWnd* parent_, window_kind kind_, std::function<void(CWnd*)> resized_,
                   std::function<void(HeadlessWindow*)> destroyed_, CWnd*& focus_)
        : logic(logic_),
          parent(parent_),
          kind(kind_),
          resized(std::move(resized_)),
          destroyed(std::move(destroyed_)),
          focus(focus_)
    {
    }
    ~HeadlessWindow() override
    {
        if (focus == &logic) focus = nullptr;
        destroyed(this);
    }

    CRect clientRect() const override { return {{}, CSize{rect.Width() - insets().cx, rect.Height() - insets().cy}}; }
    CRect windowRect() const override
    {
        const CPoint origin = parent ? parent->ClientToScreen({}) : CPoint();
        return {origin + (rect.TopLeft() - CPoint()), rect.Size()};
    }
    void place(const CRect& wanted) override
    {
        if (maximized) return;
        const CSize before = rect.Size();
        rect = wanted;
        if (rect.Size() != before) resized(&logic);
    }
    /// As the user does. \param rect_  in client coordinates of the parent
    void maximize(const CRect& rect_)
    {
        place(rect_);
        maximized = true;
    }
    /// The window has another size than it was told last: once for several requests, not at all for an equal one.
    bool takesNewSize()
    {
        const CSize now = clientRect().Size();
        return std::exchange(toldSize, now) != now;
    }
    CSize outerSize(CSize client) const override { return {client.cx + insets().cx, client.cy + insets().cy}; }
    CPoint clientToScreen(CPoint point) const override
    {
        CPoint out = windowRect().TopLeft() + (point - CPoint());
        if (kind == window_kind::frame) out = out + CSize{border, caption};
        return out;
    }
    void show(bool on) override { visible = on; }
    bool isVisible() const override { return visible && (!parent || parent->IsWindowVisible()); }
    bool isMinimized() const override { return false; }
    bool isMaximized() const override { return maximized; }
    void bringToFront() override {}
    void setTitle(const std::wstring& text) override { titles.push_back(text); }
    void setTabs(const std::vector<std::wstring>& names, int, bool) override { tabs = names; }
    int setToolbar(unsigned id, bool large, const std::vector<toolbar_button>& added) override
    {
        toolbar = id;
        toolsAreLarge = large;
        buttons = added;
        return id != 0 || !added.empty() ? toolsHeight : 0;
    }
    std::wstring selectedText() const override { return selection; }
    std::vector<std::vector<std::wstring>> selectedCells() const override { return cells; }
    void selectAll() override { isAllSelected = true; }
    void setText(const std::wstring& shown) override { content = shown; }
    void setTable(const std::vector<std::vector<std::wstring>>& shown) override
    {
        table = shown;
        cells.clear();
    }
    void setFullScreen(bool on, const CRect& screenRect) override
    {
        fullScreen = on;
        const CRect back = std::exchange(restored, rect);
        place(on ? screenRect : back);
    }
    void invalidate(const CRgn* region, bool erase) override
    {
        invalid.CombineRgn(invalid, region ? *region : CRgn(clientRect()), RGN_OR);
        erases |= erase;
    }
    void update() override
    {
        if (invalid.isEmpty()) return;
        invalid = CRgn();
        RecordingDC dc(clientRect().Size());
        if (std::exchange(erases, false)) logic.OnEraseBkgnd(dc);
        logic.OnPaint(dc);
    }
    std::unique_ptr<CDC> clientDC() override { return std::make_unique<RecordingDC>(clientRect().Size()); }
    void setCapture(bool on) override { captured = on; }
    bool hasCapture() const override { return captured; }
    void setFocus() override
    {
        focus = &logic;
        logic.OnSetFocus();
    }
    bool hasFocus() const override { return focus == &logic; }
    void setCursor(cursor_shape shape) override { cursor = shape; }
    void setTimer(unsigned id, unsigned milliseconds) override { timers[id] = milliseconds; }
    void killTimer(unsigned id) override { timers.erase(id); }
    void flushTimers() override
    {
        // Of a timer that sets itself again the new term is not waited for.
        const std::map<unsigned, unsigned> waiting = timers;
        for (const auto& [id, milliseconds] : waiting)
            if (timers.contains(id)) logic.OnTimer(id);
    }

    CRect rect, restored; ///< `rect` in client coordinates of the parent
    bool visible = true, maximized = false, captured = false, fullScreen = false, erases = false;
    CRgn invalid;
    cursor_shape cursor = cursor_shape::arrow;
    std::map<unsigned, unsigned> timers;
    std::vector<std::wstring> titles;
    std::vector<std::wstring> tabs;
    std::wstring content;                                ///< of a text pane
    std::vector<std::vector<std::wstring>> table, cells; ///< of a table; `cells` are what the user selected
    std::wstring selection;                              ///< of the content
    bool isAllSelected = false;
    std::vector<toolbar_button> buttons;
    bool toolsAreLarge = false;
    unsigned toolbar = 0; ///< resource; 0: none
    CWnd& logic;

private:
    CSize toldSize{-1, -1};

    CSize insets() const noexcept { return kind == window_kind::frame ? CSize{2 * border, border + caption} : CSize{}; }

    CWnd* parent;
    window_kind kind;
    std::function<void(CWnd*)> resized;
    std::function<void(HeadlessWindow*)> destroyed;
    CWnd*& focus;
};
