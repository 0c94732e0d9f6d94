#pragma once
#include "surface/tools/tool_context.h"
#include "surface/tools/tool_pointer.h"

namespace vldv::surface {

/// What the left button does where it is pressed. The machine snaps, tracks, captures and repaints around each call;
/// tools keep nothing themselves. Points are samples.
class mouse_tool {
public:
    virtual void press(const tool_context& on, const tool_event& event) const = 0;
    /// A press is at once the first move of its drag.
    virtual bool movesOnPress() const noexcept { return false; }
    virtual void move(const tool_context& on, CPoint at) const = 0;
    virtual void release(const tool_context& on, const tool_event& event) const = 0;
    /// The drag ended without a release.
    virtual void abandon(const tool_context& on) const = 0;
    /// Tells of a point that the drag has reached.
    virtual void showStatus(const tool_context& on, CPoint at) const { on.world.showStatus(at); }
    /// The pointer that tells what a press would do, or what the drag does.
    virtual tool_pointer pointerFor(const selection_state& state, modifier_keys keys) const noexcept = 0;

protected:
    ~mouse_tool() = default;
};

} // namespace vldv::surface
