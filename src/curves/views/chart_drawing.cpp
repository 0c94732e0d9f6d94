#include "curves/views/chart_drawing.h"

#include "view/DCView.h"

#include <vector>

namespace vldv::curves {

void draw_chart_frame(CDC& dc, const CDCView& view, const CRect& pane, const view::shown_axis& x,
                      const view::shown_axis& y)
{
    constexpr std::uint32_t labelled = AXIS_LINE | AXIS_TICKS | AXIS_TEXT;
    const CPen pen = view::axis_pen(view);
    const int xTics = view.intOption("tics.x.number"), xLength = view.intOption("tics.x.length");
    const int yTics = view.intOption("tics.y.number"), yLength = view.intOption("tics.y.length");
    const CPoint lowerLeft{pane.left, pane.bottom}, upperRight{pane.right, pane.top};
    view::draw_side(dc, pen, y, {lowerLeft, pane.TopLeft(), AXIS_VERTICAL | AXIS_OTHER_SIDE | labelled}, yTics,
                    yLength);
    view::draw_side(dc, pen, y, {pane.BottomRight(), upperRight, AXIS_VERTICAL | AXIS_LINE | AXIS_TICKS}, yTics,
                    yLength);
    view::draw_side(dc, pen, x, {lowerLeft, pane.BottomRight(), labelled}, xTics, xLength);
    view::draw_side(dc, pen, x, {pane.TopLeft(), upperRight, AXIS_LINE | AXIS_OTHER_SIDE | AXIS_TICKS}, xTics, xLength);
    if (const int grid = view.intOption("grid.show")) {
        dc.SelectObject(view::grid_pen(view));
        DrawGrid(&dc, pane, grid, x.start, x.end, y.start, y.end, false, xTics, yTics);
    }
}

void draw_page_line(CDC& dc, CPoint origin, std::span<const CPoint> points)
{
    std::vector<fine_point> line;
    line.reserve(points.size());
    for (const CPoint& each : points)
        line.push_back({origin.x + double{1.0} * each.x / partsOnPage, origin.y + double{1.0} * each.y / partsOnPage});
    dc.Polyline(std::span<const fine_point>(line));
}

/// A line without length.
void draw_mark_dot(CDC& dc, CPoint at)
{
    constexpr colorEntry color = 0x0000FF;
    constexpr int width = 4;
    dc.SelectObject(CPen{PS_SOLID | PS_GEOMETRIC | PS_ENDCAP_ROUND, width, color, {}});
    dc.MoveTo(at);
    dc.LineTo(at.x + 1, at.y);
}

} // namespace vldv::curves
