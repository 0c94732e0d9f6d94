#pragma once
#include "platform/draw/DC.h"
#include "view/AxisLine.h"

#include <string>

class CDCView;

/// What charts and the legends of surfaces have in common: axes along the sides of a picture, and their grid.
namespace vldv::view {

/// The ends of an axis as the user reads them, both in the unit in which the span, or else the start, reads well.
struct shown_axis {
    double start = 0.0, end = 0.0;
    std::string units;
};
shown_axis shown_span(const char* units, double start, double span, bool isHeight);
/// An axis as it is, or where its unit has no smaller prefix for a span below 10^-4, counted in powers of 1000:
/// 5e-9 to 6e-9 of no unit as 5 to 6 of "1e-9". Ticks and labels know no spans below 10^-6.
shown_axis counted_in_powers(shown_axis axis);

/// A side of a picture, from the start of its axis on, with flags of `axis_line`.
struct chart_side {
    CPoint from, to;
    std::uint32_t flags;
};
/// Line, ticks and labels as the flags say. Labels have as many digits as tell neighbours apart.
void draw_side(CDC& dc, const CPen& pen, const shown_axis& shown, const chart_side& side, int tics, int ticLength);

/// By the view's options "axis_thickness", "grid.line.width", "grid.line.style" and "legend", its colour.
CPen axis_pen(const CDCView& view);
CPen grid_pen(const CDCView& view);

/// Axes along all sides of a pane, labelled at the left and below, and the grid inside, as the view's options say.
void draw_chart_frame(CDC& dc, const CDCView& shown, const CRect& pane, const shown_axis& x, const shown_axis& y);

} // namespace vldv::view
