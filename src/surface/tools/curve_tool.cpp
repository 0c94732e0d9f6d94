#include "surface/tools/curve_tool.h"

#include "surface/figures/measurements.h"

namespace surface {

void show_length(selection_state& state, const ICursorWorld& world)
{
    if (state.curves.empty()) return;
    state.measure = length_text(state.curves.front(), steps_of(world.axisX(), world.axisY()));
}

} // namespace surface
