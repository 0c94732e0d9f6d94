// Both keys down: the mouse drags the part of the image on show.
#include "surface/tools/hot/hot_tools.h"

#include <algorithm>

namespace vldv::surface {

namespace {

class pan_tool final : public hot_tool {
public:
    bool does(hot_action action) const noexcept override { return action == hot_action::pan; }
    hit find(const selection_state&, const ICursorWorld&, const tool_event& event) const override
    {
        constexpr unsigned both = MK_SHIFT | MK_CONTROL;
        return {(event.flags & both) == both ? hot_action::pan : hot_action::none, {}};
    }
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5044, cursor_shape::grab};
    }
    void press(const tool_context& on, const tool_event& event) const override { on.drag.anchor = event.at; }
    void move(const tool_context& on, CPoint at) const override;
};

/// Brings the sample that was pressed on under the cursor again, as far as the image goes.
void pan_tool::move(const tool_context& on, CPoint at) const
{
    const CRect window = on.world.geometry().source;
    const CSize size = on.world.frame().size();
    const int dx = std::clamp(on.drag.anchor.x - at.x, -window.left, std::max(-window.left, size.cx - window.right));
    const int dy = std::clamp(on.drag.anchor.y - at.y, -window.top, std::max(-window.top, size.cy - window.bottom));
    if (dx == 0 && dy == 0) return;
    CRect moved = window;
    moved.OffsetRect(dx, dy);
    on.world.setSourceWindow(moved);
}

constexpr pan_tool tool;

} // namespace

const hot_tool& hot_pan() noexcept { return tool; }

} // namespace vldv::surface
