#pragma once
#include "platform/draw/DC.h"
#include "surface/figures/selection_state.h"
#include "view/axes/view_geometry.h"

namespace vldv::surface {

/// Colours as drawn over any picture.
constexpr colorEntry startColor = 0x0000FF, endColor = 0x00FF00, lineColor = 0xFF0000;

/// Half the side of a handle, pixels.
int handle_size();
void draw_handle(CDC& dc, CPoint at, colorEntry color);
/// From the start, red, to the moving end, green.
void draw_drag(CDC& dc, const selection_rect& drag, const view::view_geometry& geometry);
/// Where a volume shows its curve: a cross with shadow and highlight.
void draw_cross(CDC& dc, CPoint center);

} // namespace vldv::surface
