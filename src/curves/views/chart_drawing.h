#pragma once
#include "platform/draw/geometry.h"
#include "view/axes/chart_axes.h"

#include <span>

class CDC;
class CDCView;

namespace vldv::curves {

/// Axes along all sides of a pane, labelled at the left and below, and the grid inside, as the view's options say.
void draw_chart_frame(CDC& dc, const CDCView& view, const CRect& pane, const view::shown_axis& x,
                      const view::shown_axis& y);

/// What a pixel of a pane is parted into on a page, which shows more than pixels.
inline constexpr int partsOnPage = 16;
/// A line on a page. \param points  counted in these parts from `origin`
void draw_page_line(CDC& dc, CPoint origin, std::span<const CPoint> points);

/// Where a mark meets its curve: a round dot of four pixels.
void draw_mark_dot(CDC& dc, CPoint at);

} // namespace vldv::curves
