#include "surface/tools/marks_tool.h"

#include "surface/figures/measurements.h"

namespace surface {

void show_total(selection_state& state, const ICursorWorld& world)
{
    state.measure = total_text(state.marks.size(), world.frame().size());
}

} // namespace surface
