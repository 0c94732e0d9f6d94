#pragma once
#include "surface/figures/selection_state.h"
#include "surface/tools/cursor_world.h"

#include <vector>

namespace vldv::surface {

/// What a drag has to remember from its press until the button goes up; every press begins a new one.
struct drag_memory {
    CPoint anchor;               ///< sample that was pressed on
    std::vector<CPoint> section; ///< points of the section that is moved, as they were at the press
    lengthy_trace object;        ///< what the trace of a lengthy object goes on from
};

/// What tools work on: they keep nothing themselves.
struct tool_context {
    selection_state& state;
    ICursorWorld& world;
    drag_memory& drag;
};

/// A message of the mouse, in samples.
struct tool_event {
    CPoint at;          ///< snapped
    unsigned flags = 0; ///< `mouse_flags`
    int reach = 0;      ///< what lies so near on each axis is hit
};

} // namespace vldv::surface
