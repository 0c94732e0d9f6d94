#pragma once
#include "surface/tools/mouse_tool.h"

namespace vldv::surface {

/// What a press would do, and with what.
struct hit {
    hot_action action = hot_action::none;
    hot_item item;
};

/// One kind of thing that the mouse takes hold of in every mode: how it is hit, and what a drag does with it. The state
/// keeps action and item of the hit from one message to the next.
class hot_tool : public mouse_tool {
public:
    /// The actions of this kind.
    virtual bool does(hot_action action) const noexcept = 0;
    /// What lies under the mouse; `hot_action::none` where nothing of this kind does.
    virtual hit find(const selection_state& state, const ICursorWorld& world, const tool_event& event) const = 0;
    /// The mode in whose manner the drawing changes meanwhile.
    virtual cursor_mode changedMode(cursor_mode mode) const noexcept { return mode; }

    // Most things are where they belong at every move.
    void move(const tool_context&, CPoint) const override {}
    void release(const tool_context& on, const tool_event&) const override { abandon(on); }
    void abandon(const tool_context&) const override {}

protected:
    ~hot_tool() = default;
};

} // namespace vldv::surface
