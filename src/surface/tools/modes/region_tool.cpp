#include "surface/tools/modes/region_tool.h"

#include "surface/figures/region_edit.h"
#include "surface/overlay/overlay_geometry.h"
#include "surface/overlay/overlay_shapes.h"
#include "surface/tools/modes/drag_tool.h"
#include "surface/tools/overlay_area.h"

#include <cstdlib>

namespace vldv::surface {

namespace {

/// How a new shape joins the region with these keys: Ctrl before Alt before Shift.
combine_mode combine_of(modifier_keys keys) noexcept
{
    if (keys.control) return combine_mode::add;
    if (keys.alt) return combine_mode::subtract;
    return keys.shift ? combine_mode::move : combine_mode::replace;
}

bool is_narrow(const selection_rect& drag) noexcept
{
    return std::abs(drag.dx()) < shortDrag || std::abs(drag.dy()) < shortDrag;
}

/// The region as a drag of its own moves it.
CRgn moved_region(const selection_state& state)
{
    CRgn moved = state.region;
    moved.OffsetRgn(state.selection.dx(), state.selection.dy());
    return moved;
}

void fill_region(CDC& dc, const CRgn& region, const view::view_geometry& geometry, const selection_style& style)
{
    if (style.filled == selection_style::none) return;
    const CRgn filled =
        CRgn::combined(CRgn(geometry.display), region, style.filled == selection_style::inner ? RGN_AND : RGN_DIFF);
    if (filled.isEmpty()) return;
    const int before = dc.SetBkMode(TRANSPARENT);
    dc.FillRgn(filled, CBrush::hatched(HS_BDIAGONAL, style.color));
    dc.SetBkMode(before);
}

} // namespace

CBrush region_brush() { return CBrush::hatched(HS_FDIAGONAL, lineColor); }

void region_tool::press(const tool_context& on, const tool_event& event) const
{
    selection_state& state = on.state;
    state.combine = combine_of({.control = (event.flags & MK_CONTROL) != 0,
                                .alt = on.world.isKeyDown(VK_MENU),
                                .shift = (event.flags & MK_SHIFT) != 0});
    // A region that was selected before the mode changed twice is not seen and takes no part.
    if (state.combine == combine_mode::replace || !state.selectionActive) state.region = CRgn();
    state.isoline.clear();
    begin_drag(state, event.at);
}

void region_tool::finish(const tool_context& on, const tool_event&) const
{
    selection_state& state = on.state;
    if (is_narrow(state.selection) && state.combine == combine_mode::replace) {
        state.region = CRgn();
        state.selectionActive = false;
    } else {
        join(on);
    }
    share(on.world);
}

void region_tool::join(const tool_context& on) const
{
    finish_region(on.state, shape(on.state), on.world.frame().size());
    on.world.refreshZoomWindow();
}

void region_tool::share(ICursorWorld& world)
{
    if (world.option("SelectionSynchr") != 0.0) world.shareSelection();
}

tool_pointer region_tool::pointerFor(const selection_state& state, modifier_keys keys) const noexcept
{
    return pointers()[static_cast<int>(state.tracking ? state.combine : combine_of(keys))];
}

void region_tool::draw(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
                       const selection_style& style) const
{
    const bool isMoved = state.tracking && state.combine == combine_mode::move;
    if (state.tracking && !isMoved) drawShape(dc, state, geometry);
    const CRgn region = to_client(isMoved ? moved_region(state) : state.region, geometry);
    dc.FrameRgn(region, region_brush(), 1, 1);
    if (!state.tracking) fill_region(dc, region, geometry, style);
}

void region_tool::addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const
{
    const view::view_geometry geometry = world.geometry();
    add(area, drag_area(state.selection, geometry));
    const bool isMoved = state.tracking && state.combine == combine_mode::move;
    if (state.tracking && !isMoved) return;
    const bool fillsOutside = static_cast<int>(world.option("SelectionFill")) == selection_style::outer;
    if (!isMoved && fillsOutside && state.selectionActive)
        add(area, geometry.display);
    else
        area.CombineRgn(area, to_client(isMoved ? moved_region(state) : state.region, geometry), RGN_OR);
}

} // namespace vldv::surface
