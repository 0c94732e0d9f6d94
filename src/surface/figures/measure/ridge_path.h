#pragma once
#include "surface/figures/sample_frame.h"

#include <vector>

namespace vldv::surface {

/// The way from one sample to another that stays highest: every step costs its length times 1 on the highest sample
/// around to 64 on the lowest. The search covers the box of both points and a margin of half its longer side, 16 at
/// least; where that is too large to be searched while the mouse moves, only what lies near the straight line.
/// \return from `from` to `to`, both included, each sample beside the next; empty when one lies outside the frame
std::vector<CPoint> ridge_path(const sample_frame& frame, CPoint from, CPoint to);

/// The samples of the straight line between two, both included.
std::vector<CPoint> straight_path(CPoint from, CPoint to);

/// The corners of a line that stays within `radius` of the path: its ends and as few points between as that takes. A
/// radius of 0 keeps all points.
std::vector<CPoint> simplified(const std::vector<CPoint>& path, double radius);

} // namespace vldv::surface
