#pragma once
#include "surface/tools/tool_context.h"
#include "surface/tools/tool_pointer.h"

namespace surface {

/// What a press would do, and with what.
struct hit {
    hot_action action = hot_action::none;
    hot_item item;
};

/// One kind of thing that the mouse takes hold of in every mode: how it is hit, what press and drag do with it, and
/// the pointer that says so. The state keeps action and item of the hit from one message to the next.
class hot_tool {
public:
    /// The actions of this kind.
    virtual bool does(hot_action action) const noexcept = 0;
    /// What lies under the mouse; `hot_action::none` where nothing of this kind does.
    virtual hit find(const selection_state& state, const ICursorWorld& world, const tool_event& event) const = 0;
    virtual tool_pointer pointerFor(hot_action action, modifier_keys keys) const noexcept = 0;

    virtual void press(const tool_context& on, const tool_event& event) const = 0;
    /// A press is at once the first move of its drag.
    virtual bool movesOnPress() const noexcept { return false; }
    virtual void move(const tool_context&, CPoint) const {}
    /// The drag is over, however it ended.
    virtual void end(ICursorWorld&) const {}
    /// The mode in whose manner the drawing changes meanwhile.
    virtual cursor_mode changedMode(cursor_mode mode) const noexcept { return mode; }

protected:
    ~hot_tool() = default;
};

} // namespace surface
