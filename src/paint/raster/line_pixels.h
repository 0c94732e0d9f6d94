#pragma once
#include "paint/raster/pen_pattern.h"
#include "platform/draw/polygon_spans.h"

#include <span>
#include <vector>

namespace vldv::paint {

/// Pixels of a line and of the gaps of its pattern. A pixel may appear twice where the line meets itself.
struct line_spans {
    std::vector<platform::pixel_span> line, gaps;
    std::vector<CRect> uprights; ///< parts of the line that are a pixel wide, which `line` leaves out
};

/// A line one pixel wide through the points. An open one leaves its last pixel out, and so does each stretch before the
/// next begins; a closed one goes back to its start. Ties between two pixels go to the greater coordinate, so that a
/// line covers the same pixels both ways but for its ends. What lies outside `bounds` may be missing.
line_spans thin_line(std::span<const CPoint> points, bool closed, const device_pen& pen, const CRect& bounds);

/// The part first … last of a stretch from `from` to `to`, measured from 0 to `length`, that can come within
/// `margin` of `bounds`; first >= last when nothing can.
struct visible_part {
    double first, last;
};
visible_part find_visible_part(double fromX, double fromY, double toX, double toY, double length, const CRect& bounds,
                               double margin);

} // namespace vldv::paint
