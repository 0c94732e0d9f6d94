#pragma once
#include "surface/figures/sample_frame.h"

namespace vldv::surface {

/// What the cursor is drawn to; the numbers are those of the option.
enum class snap_mode { off = 0, toMaximum = 1, toMinimum = 2 };

/// The extreme sample around `at`: columns and rows from `radius` below it up to `radius` above, the far ones left out.
/// Of equal samples the one farther from the image's origin is taken, wherever the cursor is; without one beyond the
/// cursor's own sample the point stays. A point outside the frame stays too. Samples that were not measured draw
/// nothing to them.
CPoint snapped_point(const sample_frame& frame, CPoint at, snap_mode mode, int radius);

} // namespace vldv::surface
