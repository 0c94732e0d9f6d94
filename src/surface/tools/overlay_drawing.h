#pragma once
#include "surface/tools/modes/cursor_tool.h"

namespace vldv::surface {

/// What is being selected or measured, in the manner of the mode: region, line, angle or point with its handles.
void draw_selection(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
                    const selection_style& style);
/// What a drag shows above marks and curves.
void draw_above(CDC& dc, const selection_state& state, const view::view_geometry& geometry);
void draw_region_of_interest(CDC& dc, const selection_state& state, const view::view_geometry& geometry);
/// The smallest region that covers what the mode and the measurement draw, client pixels.
CRgn drawn_area(const selection_state& state, const ICursorWorld& world, cursor_mode mode);

} // namespace vldv::surface
