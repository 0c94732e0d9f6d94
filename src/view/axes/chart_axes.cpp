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

} // namespace vldv::view
