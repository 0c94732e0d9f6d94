// Fibres and the like: every drag traces the ridge on from the last corner, and the object is kept with the image.
#include "surface/figures/measure/lengthy_object.h"
#include "surface/figures/measure/measurements.h"
#include "surface/overlay/overlay_geometry.h"
#include "surface/overlay/overlay_shapes.h"
#include "surface/tools/modes/cursor_tools.h"
#include "surface/tools/modes/drag_tool.h"
#include "surface/tools/overlay_area.h"

namespace vldv::surface {

namespace {

constexpr tool_pointer plainPointer{5010, cursor_shape::crossLengthyObject},
    continuePointer{5041, cursor_shape::crossPlus};

class lengthy final : public point_tool {
public:
    void press(const tool_context& on, const tool_event& event) const override;
    void move(const tool_context& on, CPoint at) const override
    {
        if (on.state.lengthy.path.empty()) return;
        on.state.selection.endAt(at);
        on.state.lengthy = extended(on.drag.object, on.world.frame(), at);
    }
    void finish(const tool_context& on, const tool_event& event) const override;
    tool_pointer pointerFor(const selection_state&, modifier_keys keys) const noexcept override
    {
        return keys.control ? continuePointer : plainPointer;
    }
    bool showsModifiers() const noexcept override { return true; }
    void drawAbove(CDC& dc, const selection_state& state, const view::view_geometry& geometry) const override
    {
        if (!state.tracking || state.lengthy.path.size() < 2) return;
        dc.SelectObject(CPen::solid(1, endColor));
        dc.Polyline(to_client(state.lengthy.path, geometry));
    }
    void addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const override
    {
        const view::view_geometry geometry = world.geometry();
        add(area, end_area(state.selection, geometry, handle_size()));
        add(area, inflated(box_of(state.lengthy.path, geometry), handle_size()));
    }
};

/// Ctrl goes on with the last object.
void lengthy::press(const tool_context& on, const tool_event& event) const
{
    selection_state& state = on.state;
    const sample_frame frame = on.world.frame();
    state.selection = {event.at.x, event.at.y, event.at.x, event.at.y};
    if (!(event.flags & MK_CONTROL) || state.lengthy.path.empty()) state.lengthy = extended({}, frame, event.at);
    on.drag.object = state.lengthy;
    state.lengthy = extended(on.drag.object, frame, event.at);
    if (!state.lengthy.path.empty()) activate(state);
}

void lengthy::finish(const tool_context& on, const tool_event& event) const
{
    selection_state& state = on.state;
    state.selectionActive = false;
    if (state.lengthy.path.empty()) return;
    const double radius = on.world.option("lengthy_object.simplify.r");
    state.lengthy = finished(extended(on.drag.object, on.world.frame(), event.at), radius);
    // Along the corners the steps from sample to sample do not count as a detour.
    const std::vector<CPoint>& measured = radius > 0.0 ? state.lengthy.corners : state.lengthy.path;
    state.measure = lengthy_object_text(measured, steps_of(on.world.axisX(), on.world.axisY()));
    on.world.storeLengthyObject(state.lengthy.path);
}

constexpr lengthy tool;

} // namespace

const cursor_tool& lengthy_tool() noexcept { return tool; }

} // namespace vldv::surface
