#include "surface/figures/region_edit.h"

namespace vldv::surface {

namespace {

CRgn joined(const selection_state& state, const CRgn& drawn, CSize image)
{
    if (!state.selectionActive) return drawn;
    switch (state.combine) {
    case combine_mode::add:
        return CRgn::combined(state.region, drawn, RGN_OR);
    case combine_mode::subtract: {
        const CRgn whole(CRect({0, 0}, image));
        return CRgn::combined(state.region.isEmpty() ? whole : state.region, drawn, RGN_DIFF);
    }
    case combine_mode::move: {
        CRgn moved = state.region;
        moved.OffsetRgn(state.selection.dx(), state.selection.dy());
        return moved;
    }
    default:
        return drawn;
    }
}

} // namespace

CRect covered_rect(const selection_rect& drag) noexcept
{
    CRect rect(drag.left, drag.top, drag.right, drag.bottom);
    rect.NormalizeRect();
    ++rect.right;
    ++rect.bottom;
    return rect;
}

void finish_region(selection_state& state, const CRgn& drawn, CSize image)
{
    state.region = joined(state, drawn, image);
    if (state.combine != combine_mode::replace) {
        state.selection.left = state.selection.right;
        state.selection.top = state.selection.bottom;
        state.combine = combine_mode::replace;
        state.tracking = false;
    }
    state.region.CombineRgn(state.region, CRgn(CRect(0, 0, image.cx - 1, image.cy - 1)), RGN_AND);
    if (state.region.isEmpty()) state.selectionActive = false;
}

void invert_region(selection_state& state, CSize image)
{
    const CRgn around(CRect(-image.cx, -image.cy, 2 * image.cx, 2 * image.cy));
    state.region.CombineRgn(around, state.region, RGN_DIFF);
}

CRect selection_bounds(const selection_state& state, const CRect& sourceWindow, CSize image)
{
    CRect bounds;
    if (is_region_mode(state.mode) && state.selectionActive &&
        bounds.IntersectRect(state.region.GetRgnBox(), sourceWindow))
        return bounds;
    return CRect({0, 0}, image);
}

} // namespace vldv::surface
