#include "surface/tools/modes/drag_tool.h"

#include "surface/overlay/overlay_geometry.h"
#include "surface/overlay/overlay_shapes.h"
#include "surface/tools/overlay_area.h"

#include <cstdlib>

namespace vldv::surface {

void activate(selection_state& state) noexcept
{
    state.selectionActive = true;
    state.measure.isVisible = false;
}

void begin_drag(selection_state& state, CPoint at) noexcept
{
    state.selection = {at.x, at.y, at.x, at.y};
    activate(state);
}

bool is_short(const selection_rect& drag) noexcept
{
    return std::abs(drag.dx()) < shortDrag && std::abs(drag.dy()) < shortDrag;
}

void drag_tool::draw(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
                     const selection_style&) const
{
    draw_drag(dc, state.selection, geometry);
}

void drag_tool::addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const
{
    add(area, drag_area(state.selection, world.geometry()));
}

void point_tool::draw(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
                      const selection_style&) const
{
    draw_handle(dc, to_client(state.selection.end(), geometry), endColor);
}

} // namespace vldv::surface
