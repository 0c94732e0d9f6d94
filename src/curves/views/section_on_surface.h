#pragma once
#include "platform/draw/geometry.h"

class CDC;

namespace vldv::curves {

/// A filled triangle whose tip touches a point of a line from one side.
/// \param angle  of the line, radians, client coordinates \param size  of its height, before DPI
void draw_section_mark(CDC& dc, CPoint tip, double angle, int size);
/// A filled square around a point. \param size  a third of its side, before DPI
void draw_section_point(CDC& dc, CPoint at, int size, bool isFirst);

} // namespace vldv::curves
