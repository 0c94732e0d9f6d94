#pragma once
#include "surface/figures/selection_state.h"
#include "surface/tools/cursor_world.h"

namespace surface {

/// What the state draws when the mouse works in `mode`, client pixels: all that changes when the state does.
CRgn invalid_region(const selection_state& state, const ICursorWorld& world, cursor_mode mode);
/// All marks with their numbers.
CRgn marks_region(const selection_state& state, const ICursorWorld& world);

} // namespace surface
