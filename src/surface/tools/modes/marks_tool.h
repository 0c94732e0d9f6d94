#pragma once
#include "surface/figures/selection_state.h"
#include "surface/tools/cursor_world.h"

namespace vldv::surface {

/// Shows how many marks there are.
void show_total(selection_state& state, const ICursorWorld& world);
/// All marks with their numbers, client pixels.
void add_marks(CRgn& area, const selection_state& state, const ICursorWorld& world);

} // namespace vldv::surface
