// The profile of one row or column, which opens at the press and follows mouse and keys.
#include "surface/tools/modes/cursor_tools.h"
#include "surface/tools/modes/drag_tool.h"
#include "view/image/SectionSource.h"

#include <algorithm>

namespace vldv::surface {

namespace {

constexpr int pageStep = 10; // rows or columns

/// How far a key moves a profile; 0 for other keys.
int step_of(unsigned key) noexcept
{
    switch (key) {
    case VK_PRIOR:
        return pageStep;
    case VK_NEXT:
        return -pageStep;
    case VK_LEFT:
    case VK_DOWN:
        return -1;
    case VK_UP:
    case VK_RIGHT:
        return 1;
    default:
        return 0;
    }
}

/// Moves the document's first profile across its image. \param by  0: to where the selection is
void move_profile(const tool_context& on, int by)
{
    ISection* const line = on.world.firstLine();
    const CSize size = on.world.frame().size();
    if (!line || line->getPointsNumber() < 2 || size.cx <= 0 || size.cy <= 0) return;
    const CPoint first = line->getSectionPoint(0), last = line->getSectionPoint(1);
    CPoint from, to{size.cx - 1, size.cy - 1};
    if (line->isHorizontal())
        from.y = to.y = std::clamp(by ? first.y + by : on.state.selection.top, 0, size.cy - 1);
    else
        from.x = to.x = std::clamp(by ? first.x + by : on.state.selection.left, 0, size.cx - 1);
    if (first == from && last == to) return;
    line->setSectionPoint(0, from);
    line->setSectionPoint(1, to);
    line->reloadSection();
}

class profile_tool : public drag_tool {
public:
    tool_need needs() const noexcept override { return tool_need::lines; }
    void press(const tool_context& on, const tool_event& event) const override
    {
        const selection_rect span = spanAt(event.at, on.world.geometry().source);
        on.state.selection = span;
        on.world.openLine(span.start(), span.end());
        activate(on.state);
    }
    void move(const tool_context& on, CPoint at) const override
    {
        on.state.selection = spanAt(at, on.world.geometry().source);
        move_profile(on, 0);
    }
    void finish(const tool_context& on, const tool_event&) const override { on.state.selectionActive = false; }
    bool key(const tool_context& on, unsigned key) const override;

protected:
    ~profile_tool() = default;

private:
    /// The whole row or column of the window on show.
    virtual selection_rect spanAt(CPoint at, const CRect& window) const noexcept = 0;
};

bool profile_tool::key(const tool_context& on, unsigned key) const
{
    const int step = step_of(key);
    if (step == 0) return false;
    move_profile(on, step);
    if (const ISection* const line = on.world.firstLine(); line && line->getPointsNumber() > 0)
        on.world.showStatus(line->getSectionPoint(0));
    return true;
}

class line_profile final : public profile_tool {
public:
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5008, cursor_shape::crossLine};
    }

private:
    selection_rect spanAt(CPoint at, const CRect& window) const noexcept override
    {
        return {window.left, at.y, window.right - 1, at.y};
    }
};

class column_profile final : public profile_tool {
public:
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5009, cursor_shape::crossColumn};
    }

private:
    selection_rect spanAt(CPoint at, const CRect& window) const noexcept override
    {
        return {at.x, window.top, at.x, window.bottom - 1};
    }
};

constexpr line_profile lineTool;
constexpr column_profile columnTool;

} // namespace

const cursor_tool& line_profile_tool() noexcept { return lineTool; }
const cursor_tool& column_profile_tool() noexcept { return columnTool; }

} // namespace vldv::surface
