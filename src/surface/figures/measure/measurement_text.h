#pragma once
#include "base/VLAxis.h"
#include "primitives/map/sample_runs.h"
#include "surface/figures/selection_state.h"

#include <cstdint>
#include <span>
#include <string>

/// What a surface measures under the cursor and between the ends of a drag, as numbers and as texts.
namespace vldv::surface {

/// A frame with the axes that the user chose for it.
struct measured_surface {
    const std::int16_t* samples = nullptr; ///< rows of `width`
    int width = 0, height = 0;
    std::span<const primitives::sample_run> unmeasured; ///< samples that are no heights, in rising order
    VLAxis x, y, z;
    bool isAbsoluteX = false,
         isAbsoluteY = false; ///< positions count from the axis's origin, not from the first sample
    bool isEmpty() const noexcept { return !samples || width <= 0 || height <= 0; }
};

/// Whether the sample at a point, or at the edge next to it, is a height.
bool is_measured(const measured_surface& surface, CPoint point);
/// Length of a drag in units of the X axis, through the steps of both axes.
double drag_length(const measured_surface& surface, const selection_rect& drag);
/// Height at the end of a drag less that at its start, in units of the Z axis. Ends outside count as at the edge.
double drag_height(const measured_surface& surface, const selection_rect& drag);
/// Angle between two drags, 0 to 180 degrees, both scaled by the steps of the axes.
double angle_between(const measured_surface& surface, const selection_rect& first, const selection_rect& second);

/// The line of the status bar for the cursor at `source`, which may lie outside: where it is and what a drag has
/// measured so far, each number in the unit in which it reads well; behind them, where a height is none because its
/// sample was not measured. Empty without samples and in modes that measure nothing.
std::wstring status_text(const measured_surface& surface, const selection_state& drawn, CPoint source);

/// The line "distance, height" of a drag, numbers in the units of the axes; before the first mark with its header. A
/// height from or to a sample that was not measured is told so.
std::wstring distance_table_text(const measured_surface& surface, const selection_state& drawn);

} // namespace vldv::surface
