#include "view/axes/SizeLine.h"

namespace {

constexpr CSize head{10, 5}; ///< pixels along and across
constexpr int fontHeight = -12;

void draw_line(CDC& dc, CPoint from, CPoint to)
{
    dc.MoveTo(from.x, from.y);
    dc.LineTo(to.x, to.y);
}

/// From left to right at the height 0, the number above its middle.
void draw_double_arrow(CDC& dc, int length, const std::wstring& text)
{
    const int last = length - 1;
    draw_line(dc, {0, 0}, {length, 0});
    for (const int side : {-head.cy, head.cy}) {
        draw_line(dc, {0, 0}, {head.cx, side});
        draw_line(dc, {last, 0}, {last - head.cx, side});
    }
    const CSize extent = dc.GetTextExtent(text);
    dc.TextOut((length - extent.cx) / 2, -extent.cy, text);
}

std::wstring number_text(int pixels) { return L" " + std::to_wstring(pixels) + L" "; }

} // namespace

void CSizeLine::OnPaint(CDC& dc)
{
    const CSize size = GetClientRect().Size();
    const int saved = dc.SaveDC();
    dc.SelectObject(CPen::solid(1, 0));
    CFont font;
    font.height = fontHeight;
    dc.SelectObject(font);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(0);
    const double y = size.cy / 3, x = size.cx / 3, bottom = size.cy - 1;
    dc.SetWorldTransform({.dy = y});
    draw_double_arrow(dc, size.cx, number_text(size.cx));
    dc.SetWorldTransform({.m11 = 0.0, .m12 = -1.0, .m21 = 1.0, .m22 = 0.0, .dx = x, .dy = bottom}); // upwards
    draw_double_arrow(dc, size.cy, number_text(size.cy));
    dc.RestoreDC(saved);
}
