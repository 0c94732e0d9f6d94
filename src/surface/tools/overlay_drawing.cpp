#include "surface/tools/overlay_drawing.h"

#include "platform/draw/dpi.h"

namespace surface {

namespace {

const CBrush hatchBrush = CBrush::hatched(HS_FDIAGONAL, lineColor);

/// Half the side of a handle, pixels.
int handle_size() { return CorrectDPISize(2); }

void draw_handle(CDC& dc, CPoint at, colorEntry color)
{
    const int half = handle_size();
    dc.FillSolidRect({at.x - half, at.y - half, at.x + half, at.y + half}, color);
}

CRect normalized(CRect rect)
{
    rect.NormalizeRect();
    return rect;
}

/// From the start, red, to the moving end, green.
void draw_drag(CDC& dc, const selection_rect& drag, const view::view_geometry& geometry)
{
    const CPoint from = to_client(drag.start(), geometry), to = to_client(drag.end(), geometry);
    dc.MoveTo(from);
    dc.LineTo(to);
    draw_handle(dc, from, startColor);
    draw_handle(dc, to, endColor);
}

void draw_new_shape(CDC& dc, const selection_state& state, const view::view_geometry& geometry)
{
    CRect box = normalized(scaled(state.selection, geometry));
    ++box.right;
    ++box.bottom;
    switch (state.mode) {
    case cursor_mode::rectangle:
        dc.FrameRect(box, hatchBrush);
        draw_handle(dc, to_client(state.selection.start(), geometry), startColor);
        draw_handle(dc, to_client(state.selection.end(), geometry), endColor);
        break;
    case cursor_mode::ellipse:
        dc.FrameRgn(CRgn::ellipse(box), hatchBrush, 1, 1);
        break;
    default:
        if (state.isoline.size() > 2) dc.Polyline(to_client(state.isoline, geometry));
        break;
    }
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

void draw_region(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
                 const selection_style& style)
{
    CRgn region = state.region;
    if (state.tracking && state.combine == combine_mode::move)
        region.OffsetRgn(state.selection.dx(), state.selection.dy());
    else if (state.tracking)
        draw_new_shape(dc, state, geometry);
    region = to_client(region, geometry);
    dc.FrameRgn(region, hatchBrush, 1, 1);
    if (!state.tracking) fill_region(dc, region, geometry, style);
    if (state.mode == cursor_mode::isoline) draw_handle(dc, to_client(state.selection.end(), geometry), endColor);
}

} // namespace

CPoint to_client(CPoint sample, const view::view_geometry& geometry) noexcept
{
    return {geometry.xToClient(sample.x), geometry.yToClient(sample.y)};
}

std::vector<CPoint> to_client(const std::vector<CPoint>& samples, const view::view_geometry& geometry)
{
    std::vector<CPoint> out;
    out.reserve(samples.size());
    for (const CPoint& sample : samples) out.push_back(to_client(sample, geometry));
    return out;
}

CRect scaled(const selection_rect& rect, const view::view_geometry& geometry) noexcept
{
    return {geometry.xToClient(rect.left), geometry.yToClient(rect.bottom), geometry.xToClient(rect.right),
            geometry.yToClient(rect.top)};
}

CRgn to_client(const CRgn& region, const view::view_geometry& geometry)
{
    if (geometry.source.IsRectEmpty()) return CRgn();
    // Single precision, as regions are transformed by the records of drawing surfaces.
    const float scaleX = static_cast<float>(geometry.display.Width()) / static_cast<float>(geometry.source.Width());
    const float scaleY = static_cast<float>(-geometry.display.Height()) / static_cast<float>(geometry.source.Height());
    const float dx = static_cast<float>(geometry.display.left) - static_cast<float>(geometry.source.left) * scaleX;
    const float dy = static_cast<float>(geometry.display.top) - static_cast<float>(geometry.source.bottom) * scaleY;
    return region.transformed({.m11 = scaleX, .m22 = scaleY, .dx = dx, .dy = dy});
}

void draw_selection(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
                    const selection_style& style)
{
    if (!state.selectionActive) return;
    dc.SelectObject(CPen::dotted(lineColor));
    switch (state.mode) {
    case cursor_mode::rectangle:
    case cursor_mode::ellipse:
    case cursor_mode::isoline:
        return draw_region(dc, state, geometry, style);
    case cursor_mode::angle:
        if (!(state.angleFirstArmPending && state.tracking)) draw_drag(dc, state.firstArm, geometry);
        return draw_drag(dc, state.selection, geometry);
    case cursor_mode::section:
    case cursor_mode::distance:
    case cursor_mode::lineProfile:
    case cursor_mode::columnProfile:
        return draw_drag(dc, state.selection, geometry);
    case cursor_mode::marks:
    case cursor_mode::curve:
    case cursor_mode::lengthyObject:
        return draw_handle(dc, to_client(state.selection.end(), geometry), endColor);
    default:
        return;
    }
}

void draw_trace(CDC& dc, const selection_state& state, const view::view_geometry& geometry)
{
    if (state.mode != cursor_mode::lengthyObject || !state.tracking || state.lengthy.path.size() < 2) return;
    dc.SelectObject(CPen::solid(1, endColor));
    dc.Polyline(to_client(state.lengthy.path, geometry));
}

void draw_region_of_interest(CDC& dc, const selection_state& state, const view::view_geometry& geometry)
{
    if (state.roiActive) dc.FrameRect(normalized(scaled(state.roi, geometry)), CBrush::solid(startColor));
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

} // namespace surface
