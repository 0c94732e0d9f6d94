// Brushes that extend and erase features: the view that enumerates them is told of every stroke and does the rest.
#include "surface/tools/modes/cursor_tools.h"
#include "surface/tools/overlay_area.h"

namespace vldv::surface {

namespace {

/// What the view is told, and the pointer.
struct brush {
    document::feature_hint press, drag, release;
    tool_pointer pointer;
};

class feature_tool final : public cursor_tool {
public:
    constexpr explicit feature_tool(const brush& told_) noexcept : told(told_) {}

    tool_need needs() const noexcept override { return tool_need::features; }
    void press(const tool_context& on, const tool_event& event) const override
    {
        on.world.sendToFeatures(told.press, event.at);
    }
    void move(const tool_context& on, CPoint at) const override { on.world.sendToFeatures(told.drag, at); }
    void finish(const tool_context& on, const tool_event& event) const override
    {
        on.world.sendToFeatures(told.release, event.at);
    }
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override { return told.pointer; }
    void draw(CDC&, const selection_state&, const view::view_geometry&, const selection_style&) const override {}
    void addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const override
    {
        add(area, drag_area(state.selection, world.geometry()));
    }

private:
    brush told;
};

constexpr feature_tool includeTool({hintIncludePress, hintIncludeDrag, hintIncludeRelease, {5046, cursor_shape::pen}});
constexpr feature_tool
    excludeTool({hintExcludePress, hintExcludeDrag, hintExcludeRelease, {5047, cursor_shape::eraser}});

} // namespace

const cursor_tool& include_tool() noexcept { return includeTool; }
const cursor_tool& exclude_tool() noexcept { return excludeTool; }

} // namespace vldv::surface
