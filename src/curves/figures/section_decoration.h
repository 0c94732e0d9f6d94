#pragma once
#include "base/VLAxis.h"
#include "curves/figures/profile.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vldv::curves {

struct axes_xy {
    VLAxis x, y;
};

/// Where the points of a drawing lie on a section through a surface: sample numbers of the curve are appended to
/// `positions`. A point belongs to the first segment whose box it lies in and whose line it misses by at most one
/// sample. \param xy  physical coordinates, x and y of each point
/// \return false, with `positions` emptied, when a point lies on no segment; also when `positions` is null
bool Decoration_at_Section(std::span<const double> xy, const axes_xy& axes, std::span<const grid_point> points,
                           std::span<const std::uint32_t> segmentLengths, std::vector<std::uint32_t>* positions);

} // namespace vldv::curves
