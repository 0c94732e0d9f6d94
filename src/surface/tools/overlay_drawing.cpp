#include "surface/tools/overlay_drawing.h"

#include "surface/overlay/overlay_geometry.h"
#include "surface/overlay/overlay_shapes.h"
#include "surface/tools/modes/cursor_tools.h"
#include "surface/tools/overlay_area.h"

namespace vldv::surface {

void draw_selection(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
                    const selection_style& style)
{
    if (!state.selectionActive) return;
    dc.SelectObject(CPen::dotted(lineColor));
    tool_of(state.mode).draw(dc, state, geometry, style);
}

void draw_above(CDC& dc, const selection_state& state, const view::view_geometry& geometry)
{
    tool_of(state.mode).drawAbove(dc, state, geometry);
}

void draw_region_of_interest(CDC& dc, const selection_state& state, const view::view_geometry& geometry)
{
    if (!state.roiActive) return;
    CRect box = scaled(state.roi, geometry);
    box.NormalizeRect();
    dc.FrameRect(box, CBrush::solid(startColor));
}

CRgn drawn_area(const selection_state& state, const ICursorWorld& world, cursor_mode mode)
{
    CRgn area;
    tool_of(mode).addArea(area, state, world);
    add_measure(area, state, world);
    return area;
}

} // namespace vldv::surface
