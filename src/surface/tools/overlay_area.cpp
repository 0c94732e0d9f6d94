#include "surface/tools/overlay_area.h"

#include "surface/overlay/mark_drawing.h"
#include "surface/overlay/overlay_geometry.h"
#include "surface/overlay/overlay_shapes.h"

namespace vldv::surface {

CRect inflated(CRect rect, int by)
{
    rect.InflateRect(by, by);
    return rect;
}

void add(CRgn& area, const CRect& box)
{
    if (!box.IsRectEmpty()) area.CombineRgn(area, CRgn(box), RGN_OR);
}

CRect box_of(const std::vector<CPoint>& samples, const view::view_geometry& geometry)
{
    CRect box;
    for (const CPoint& sample : samples) {
        const CPoint at = to_client(sample, geometry);
        const CRect pixel(at.x, at.y, at.x + 1, at.y + 1);
        box.UnionRect(box, pixel);
    }
    return box;
}

CRect drag_area(const selection_rect& drag, const view::view_geometry& geometry)
{
    return inflated(box_of({drag.start(), drag.end()}, geometry), handle_size());
}

CRect end_area(const selection_rect& drag, const view::view_geometry& geometry, int reach)
{
    return inflated(box_of({drag.end()}, geometry), reach);
}

CRect text_area(CPoint client, std::wstring_view text, std::uint32_t alignment, const ICursorWorld& world)
{
    const CSize extent = world.textExtent(text);
    const int ascent = world.textAscent();
    const CPoint at = clamped_text(client, extent, alignment, ascent, world.geometry().display);
    const std::uint32_t across = alignment & TA_CENTER, down = alignment & TA_BASELINE;
    const int left = across == TA_CENTER ? at.x - extent.cx / 2 : across == TA_RIGHT ? at.x - extent.cx : at.x;
    const int top = down == TA_BASELINE ? at.y - ascent : down == TA_BOTTOM ? at.y - extent.cy : at.y;
    return {{left, top}, extent};
}

void add_measure(CRgn& area, const selection_state& state, const ICursorWorld& world)
{
    if (!state.measure.isVisible) return;
    const CPoint at = to_client(state.measure.position, world.geometry());
    add(area, text_area(at, state.measure.text, state.measure.alignment, world));
}

} // namespace vldv::surface
