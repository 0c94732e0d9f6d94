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

} // namespace vldv::view
