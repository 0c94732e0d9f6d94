#include "surface/overlay/overlay_shapes.h"

#include "platform/app/dpi.h"
#include "surface/overlay/overlay_geometry.h"

namespace vldv::surface {

int handle_size() { return CorrectDPISize(2); }

void draw_handle(CDC& dc, CPoint at, colorEntry color)
{
    const int half = handle_size();
    dc.FillSolidRect({at.x - half, at.y - half, at.x + half, at.y + half}, color);
}

void draw_drag(CDC& dc, const selection_rect& drag, const view::view_geometry& geometry)
{
    const CPoint from = to_client(drag.start(), geometry), to = to_client(drag.end(), geometry);
    dc.MoveTo(from);
    dc.LineTo(to);
    draw_handle(dc, from, startColor);
    draw_handle(dc, to, endColor);
}

void draw_cross(CDC& dc, CPoint center)
{
    const int arm = CorrectDPISize(9);
    const auto cross = [&](colorEntry color, int shift) {
        dc.SelectObject(CPen::solid(1, color));
        const CPoint at{center.x + shift, center.y + shift};
        dc.MoveTo(at.x - arm + 1, at.y);
        dc.LineTo(at.x + arm, at.y);
        dc.MoveTo(at.x, at.y - arm + 1);
        dc.LineTo(at.x, at.y + arm);
    };
    cross(0x7F7F7F, 1);
    cross(0xC0C0C0, -1);
    cross(endColor, 0);
}

} // namespace vldv::surface
