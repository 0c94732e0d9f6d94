#include "curves/views/chart_drawing.h"

#include "platform/draw/DC.h"

#include <vector>

namespace vldv::curves {

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
