// Every click goes on with the active curve, with Ctrl it begins another one; its length is shown.
#include "surface/tools/modes/curve_tool.h"

#include "platform/app/dpi.h"
#include "surface/figures/measure/measurements.h"
#include "surface/tools/modes/cursor_tools.h"
#include "surface/tools/modes/drag_tool.h"
#include "surface/tools/overlay_area.h"

namespace vldv::surface {

namespace {

class curve final : public point_tool {
public:
    void finish(const tool_context& on, const tool_event& event) const override
    {
        std::vector<std::vector<CPoint>>& curves = on.state.curves;
        if (curves.empty() || (event.flags & MK_CONTROL)) curves.insert(curves.begin(), std::vector<CPoint>());
        curves.front().push_back(event.at);
        show_length(on.state, on.world);
        on.state.selectionActive = false;
    }
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5007, cursor_shape::crossCurve};
    }
    void addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const override;
};

void curve::addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const
{
    const view::view_geometry geometry = world.geometry();
    const int vertex = CorrectDPISize(3);
    add(area, end_area(state.selection, geometry, vertex));
    CRect all;
    for (const std::vector<CPoint>& each : state.curves) all.UnionRect(all, box_of(each, geometry));
    if (!all.IsRectEmpty()) add(area, inflated(all, vertex + 1));
}

constexpr curve tool;

} // namespace

void show_length(selection_state& state, const ICursorWorld& world)
{
    if (state.curves.empty()) return;
    state.measure = length_text(state.curves.front(), steps_of(world.axisX(), world.axisY()));
}

const cursor_tool& curve_tool() noexcept { return tool; }

} // namespace vldv::surface
