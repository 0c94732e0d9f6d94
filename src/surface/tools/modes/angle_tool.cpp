// The angle between two lines, one drag each.
#include "surface/figures/measure/measurements.h"
#include "surface/overlay/overlay_shapes.h"
#include "surface/tools/modes/cursor_tools.h"
#include "surface/tools/modes/drag_tool.h"
#include "surface/tools/overlay_area.h"

namespace vldv::surface {

namespace {

class angle final : public drag_tool {
public:
    void enter(const tool_context& on) const override { on.state.angleFirstArmPending = true; }
    void finish(const tool_context& on, const tool_event& event) const override;
    void abandon(const tool_context& on) const override
    {
        on.state.selectionActive = false;
        on.state.angleFirstArmPending = true;
    }
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5005, cursor_shape::crossAngle};
    }
    void draw(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
              const selection_style& style) const override
    {
        // While a new first arm is drawn, the last one belongs to an angle that is gone.
        if (!(state.angleFirstArmPending && state.tracking)) draw_drag(dc, state.firstArm, geometry);
        drag_tool::draw(dc, state, geometry, style);
    }
    void addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const override
    {
        drag_tool::addArea(area, state, world);
        if (state.angleFirstArmPending) add(area, drag_area(state.firstArm, world.geometry()));
    }
};

void angle::finish(const tool_context& on, const tool_event&) const
{
    selection_state& state = on.state;
    if (is_short(state.selection)) return abandon(on);
    if (state.angleFirstArmPending)
        state.firstArm = state.selection;
    else
        state.measure = angle_text(state.firstArm, state.selection, steps_of(on.world.axisX(), on.world.axisY()));
    state.angleFirstArmPending = !state.angleFirstArmPending;
}

constexpr angle tool;

} // namespace

const cursor_tool& angle_tool() noexcept { return tool; }

} // namespace vldv::surface
