#pragma once
#include "platform/draw/geometry.h"
#include "view/axes/chart_axes.h"

class CDC;
class CDCView;

namespace vldv::curves {

/// Axes along all sides of a pane, labelled at the left and below, and the grid inside, as the view's options say.
void draw_chart_frame(CDC& dc, const CDCView& view, const CRect& pane, const view::shown_axis& x,
                      const view::shown_axis& y);

/// Where a mark meets its curve: a round dot of four pixels.
void draw_mark_dot(CDC& dc, CPoint at);

} // namespace vldv::curves
