#pragma once
#include "surface/figures/selection_state.h"
#include "surface/tools/tool_pointer.h"

namespace surface {

/// How a new shape joins the region with these keys: Ctrl before Alt before Shift.
combine_mode combine_of(modifier_keys keys) noexcept;
/// The pointer that tells what a press does in the mode; in a drag of a region, what is done to it.
tool_pointer mode_pointer(const selection_state& state, modifier_keys keys) noexcept;

} // namespace surface
