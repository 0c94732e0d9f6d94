#pragma once
#include "curves/figures/display/curve_pane.h"
#include "vldv_api.h"

#include <span>
#include <vector>

namespace vldv::curves {

/// The polyline of a curve in a pane, its upper left corner at `origin`. Where several samples fall into a column, the
/// first, the lowest, the highest and the last of them stand for all: a line through these covers every pixel that the
/// line through all of them covers, and no other. Memory of `out` is used again.
/// \param first  number of the curve's first sample that is given
VLDV_INTERNAL_API void curve_points(std::span<const std::int16_t> curve, const curve_pane& pane, std::size_t first,
                                    CPoint origin, std::vector<CPoint>& out);
/// A point for each sample.
void curve_points_reference(std::span<const std::int16_t> curve, const curve_pane& pane, std::size_t first,
                            CPoint origin, std::vector<CPoint>& out);

/// The sample at a place between two: on the line through them, rounded. The curve must not be empty.
VLDV_INTERNAL_API double raw_between(std::span<const std::int16_t> curve, double at) noexcept;

} // namespace vldv::curves
