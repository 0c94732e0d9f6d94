#include "view/axes/chart_axes.h"

#include "base/text.h"
#include "base/text/decimals.h"
#include "base/units.h"
#include "view/DCView.h"
#include "view/axes/AxisLabels.h"

#include <algorithm>
#include <cmath>

namespace vldv::view {

namespace {

constexpr int labelGap = 5; // pixels

} // namespace

shown_axis shown_span(const char* units, double start, double span, bool isHeight)
{
    double reads = span != 0.0 ? span : start;
    const char* const unit = isHeight ? default_units_z(units, &reads) : default_units(units, &reads);
    const double shownStart = convert_size(units, unit, start);
    return counted_in_powers({shownStart, shownStart + convert_size(units, unit, span), unit});
}

shown_axis counted_in_powers(shown_axis axis)
{
    constexpr double smallest = 1e-4;
    const double span = std::fabs(axis.end - axis.start);
    if (!(span > 0.0 && span < smallest)) return axis;
    // The power of a thousand below the span, so that the labels count in ones, tens or hundreds of it.
    const int exponent = 3 * static_cast<int>(std::floor(base::decimal_exponent(span) / 3.0));
    const double power = std::pow(10.0, -exponent);
    const std::string unit = base::formatted("1e%d", exponent);
    return {axis.start * power, axis.end * power, axis.units.empty() ? unit : unit + " " + axis.units};
}

void draw_side(CDC& dc, const CPen& pen, const shown_axis& shown, const chart_side& side, int tics, int ticLength)
{
    axis_line axis;
    axis.dc = &dc;
    axis.axisPen = &pen;
    axis.flags = side.flags;
    axis.ticNumber = tics;
    axis.ticLength = ticLength;
    axis.minGap = labelGap;
    axis.x0 = side.from.x;
    axis.y0 = side.from.y;
    axis.x1 = side.to.x;
    axis.y1 = side.to.y;
    axis.start = shown.start;
    axis.end = shown.end;
    axis.units = shown.units.c_str();
    const std::string format = label_format(shown.start, shown.end, tics);
    axis.format = format.c_str();
    DrawAxisLine(&axis);
}

CPen axis_pen(const CDCView& view)
{
    return {PS_SOLID | PS_GEOMETRIC | PS_ENDCAP_SQUARE | PS_JOIN_MITER,
            view.intOption("axis_thickness"),
            view.colorOption("legend"),
            {}};
}

CPen grid_pen(const CDCView& view)
{
    const int width = view.intOption("grid.line.width");
    const auto w = static_cast<std::uint32_t>(std::max(width, 0));
    constexpr std::uint32_t patterned = PS_USERSTYLE | PS_GEOMETRIC | PS_ENDCAP_FLAT;
    switch (view.intOption("grid.line.style")) {
    case 1:
        return {patterned, width, view.colorOption("legend"), {1, 2 * w}};
    case 2:
        return {patterned, width, view.colorOption("legend"), {2 * w + 2, 2 * w + 2}};
    case 3:
        return {patterned, width, view.colorOption("legend"), {2 * w + 2, 2 * w, 1, 2 * w}};
    default:
        return {PS_SOLID | PS_GEOMETRIC, width, view.colorOption("legend"), {}};
    }
}

void draw_chart_frame(CDC& dc, const CDCView& shown, const CRect& pane, const shown_axis& x, const shown_axis& y)
{
    constexpr std::uint32_t labelled = AXIS_LINE | AXIS_TICKS | AXIS_TEXT;
    const CPen pen = axis_pen(shown);
    const int xTics = shown.intOption("tics.x.number"), xLength = shown.intOption("tics.x.length");
    const int yTics = shown.intOption("tics.y.number"), yLength = shown.intOption("tics.y.length");
    const CPoint lowerLeft{pane.left, pane.bottom}, upperRight{pane.right, pane.top};
    draw_side(dc, pen, y, {lowerLeft, pane.TopLeft(), AXIS_VERTICAL | AXIS_OTHER_SIDE | labelled}, yTics, yLength);
    draw_side(dc, pen, y, {pane.BottomRight(), upperRight, AXIS_VERTICAL | AXIS_LINE | AXIS_TICKS}, yTics, yLength);
    draw_side(dc, pen, x, {lowerLeft, pane.BottomRight(), labelled}, xTics, xLength);
    draw_side(dc, pen, x, {pane.TopLeft(), upperRight, AXIS_LINE | AXIS_OTHER_SIDE | AXIS_TICKS}, xTics, xLength);
    if (const int grid = shown.intOption("grid.show")) {
        dc.SelectObject(grid_pen(shown));
        DrawGrid(&dc, pane, grid, x.start, x.end, y.start, y.end, false, xTics, yTics);
    }
}

} // namespace vldv::view
