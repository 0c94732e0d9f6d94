#pragma once
#include <vector>

namespace vldv::view {

struct axis_tick {
    double value;
    int offset; ///< pixels from the axis's start towards its end
    bool operator==(const axis_tick&) const = default;
};

/// Where an axis has its ticks.
struct axis_ticks {
    double end = 0.0;   ///< value at the far end, moved off the start where both were too close
    double step = 0.0;  ///< from tick to tick, negative on a falling axis; 1 to 9 times a power of ten
    double scale = 0.0; ///< pixels for one unit of value
    std::vector<axis_tick> ticks;

    /// Pixels from the axis's start to `value`, halves up.
    int offsetOf(double value, double start) const noexcept;
};

/// Places ticks at whole multiples of a step on the axis from `start` to `end`, both included, `pixels` long. The step
/// is (end - start) / ticNumber cut to its leading digit, so there are `ticNumber` steps or up to twice as many.
/// \param ticNumber  wanted steps: 0 and negative numbers mean 5, more than 100000 count as 100000
/// \param out  keeps its memory; no ticks when the span is not finite
void find_ticks(double start, double end, int pixels, int ticNumber, axis_ticks& out);

} // namespace vldv::view
