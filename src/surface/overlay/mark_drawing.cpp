#include "surface/overlay/mark_drawing.h"

#include "platform/app/dpi.h"
#include "surface/overlay/overlay_geometry.h"
#include "surface/overlay/overlay_shapes.h"

#include <array>
#include <cstdlib>

namespace vldv::surface {

namespace {

/// Points of a shape in pixels of 96 dots per inch around `at`.
template <std::size_t N>
std::array<CPoint, N> placed(const CPoint (&shape)[N], CPoint at)
{
    std::array<CPoint, N> out;
    for (std::size_t i = 0; i < N; ++i) out[i] = {at.x + CorrectDPISize(shape[i].x), at.y + CorrectDPISize(shape[i].y)};
    return out;
}

void draw_tick(CDC& dc, CPoint at)
{
    static constexpr CPoint upper[] = {{-4, -5}, {0, -2}, {4, -7}}, lower[] = {{-4, -3}, {0, 0}, {4, -5}};
    dc.SelectObject(CPen::solid(2, endColor));
    dc.Polyline(placed(upper, at));
    const int before = dc.SetROP2(R2_COPYPEN);
    dc.Polyline(placed(lower, at));
    dc.SetROP2(before);
}

void draw_arrow(CDC& dc, CPoint at)
{
    static constexpr CPoint shaft[] = {{-8, 0}, {-1, 0}}, head[] = {{-4, -3}, {-1, 0}, {-5, 4}};
    static constexpr CPoint outline[] = {{-9, -1}, {-9, 1}, {-5, 1}, {-5, 5}, {0, 0}, {-5, -5}, {-5, -1}, {-9, -1}};
    dc.SelectObject(CPen::solid(1, 0xFFFFFF)); // turns any colour round, whatever was drawn before
    const int before = dc.SetROP2(R2_NOT);
    dc.Polyline(placed(shaft, at));
    dc.Polyline(placed(head, at));
    dc.SetROP2(R2_XORPEN);
    dc.Polyline(placed(outline, at));
    dc.SetROP2(before);
}

bool is_near(CPoint a, CPoint b, int distance)
{
    return std::abs(a.x - b.x) <= distance && std::abs(a.y - b.y) <= distance;
}

void draw_vertices(CDC& dc, const std::vector<CPoint>& points, int radius)
{
    const CPen before = dc.SelectObject(CPen::null());
    const CPoint* last = nullptr;
    for (const CPoint& point : points) {
        if (last && is_near(point, *last, 2 * radius)) continue;
        dc.SelectObject(CBrush::solid(&point == points.data() ? startColor : endColor));
        dc.Ellipse({point.x - radius, point.y - radius, point.x + radius, point.y + radius});
        last = &point;
    }
    dc.SelectObject(before);
}

} // namespace

CPoint clamped_text(CPoint at, CSize extent, std::uint32_t alignment, int ascent, const CRect& inside) noexcept
{
    const std::uint32_t across = alignment & TA_CENTER, down = alignment & TA_BASELINE;
    const int left = across == TA_CENTER ? at.x - extent.cx / 2 : across == TA_RIGHT ? at.x - extent.cx : at.x;
    const int top = down == TA_BASELINE ? at.y - ascent : down == TA_BOTTOM ? at.y - extent.cy : at.y;
    CSize shift{std::min(0, inside.right - (left + extent.cx)), std::min(0, inside.bottom - (top + extent.cy))};
    shift.cx = std::max(shift.cx, inside.left - left);
    shift.cy = std::max(shift.cy, inside.top - top);
    return at + shift;
}

void draw_mark(CDC& dc, CPoint at, int shape)
{
    if (shape == mark_style::ticks)
        draw_tick(dc, at);
    else
        draw_arrow(dc, at);
}

CRect mark_box(CPoint at, int shape)
{
    // Of the tables above, with the second pixel of a tick's line.
    const CRect box = shape == mark_style::ticks ? CRect(-5, -8, 6, 2) : CRect(-9, -5, 1, 6);
    return {at.x + CorrectDPISize(box.left), at.y + CorrectDPISize(box.top), at.x + CorrectDPISize(box.right),
            at.y + CorrectDPISize(box.bottom)};
}

void draw_marks(CDC& dc, const std::vector<CPoint>& marks, const view::view_geometry& geometry, const mark_style& style)
{
    if (marks.empty()) return;
    const int saved = dc.SaveDC();
    dc.SetBkMode(TRANSPARENT);
    dc.setTextRim(true);
    dc.SetBkColor(style.background);
    dc.SetTextColor(style.text);
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const CPoint at = to_client(marks[i], geometry);
        draw_mark(dc, at, style.drawn);
        if (!style.isNumbered || !geometry.source.PtInRect(marks[i])) continue; // clamping would bring it into sight
        const std::wstring number = std::to_wstring(i + 1);
        const CPoint label =
            clamped_text({at.x + CorrectDPISize(4), at.y + CorrectDPISize(1)}, dc.GetTextExtent(number),
                         dc.GetTextAlign(), dc.GetTextMetrics().tmAscent, geometry.display);
        dc.TextOut(label.x, label.y, number);
    }
    dc.RestoreDC(saved);
}

void draw_curves(CDC& dc, const std::vector<std::vector<CPoint>>& curves, const view::view_geometry& geometry)
{
    const int saved = dc.SaveDC();
    for (const std::vector<CPoint>& curve : curves) {
        if (curve.empty()) continue;
        const std::vector<CPoint> points = to_client(curve, geometry);
        draw_vertices(dc, points, CorrectDPISize(&curve == &curves.front() ? 3 : 2));
        dc.SelectObject(CPen::dotted(lineColor));
        dc.Polyline(points);
    }
    dc.RestoreDC(saved);
}

} // namespace vldv::surface
