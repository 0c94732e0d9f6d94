#pragma once
#include "platform/draw/geometry.h"

#include <span>

class CDC;

namespace vldv::curves {

/// What a pixel of a pane is parted into on a page, which shows more than pixels.
inline constexpr int partsOnPage = 16;
/// A line on a page. \param points  counted in these parts from `origin`
void draw_page_line(CDC& dc, CPoint origin, std::span<const CPoint> points);

/// Where a mark meets its curve: a round dot of four pixels.
void draw_mark_dot(CDC& dc, CPoint at);

} // namespace vldv::curves
