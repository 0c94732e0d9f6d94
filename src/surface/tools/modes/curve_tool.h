#pragma once
#include "surface/figures/selection_state.h"
#include "surface/tools/cursor_world.h"

namespace vldv::surface {

/// Shows how long the active curve is; nothing changes without one.
void show_length(selection_state& state, const ICursorWorld& world);

} // namespace vldv::surface
