#pragma once
#include "platform/draw/geometry.h"

#include <cstddef>
#include <vector>

namespace vldv::surface {

/// Within `reach` samples on each axis.
bool is_vertex_hit(CPoint vertex, CPoint at, int reach) noexcept;
/// Inside the box of the segment, its sides included, and within `reach` samples of the line through it.
bool is_segment_hit(CPoint from, CPoint to, CPoint at, int reach) noexcept;

/// The first vertex that is hit, or `hot_item::none`.
std::size_t find_vertex(const std::vector<CPoint>& points, CPoint at, int reach) noexcept;
/// The end vertex of the first segment that is hit, or `hot_item::none`.
std::size_t find_segment(const std::vector<CPoint>& points, CPoint at, int reach) noexcept;

/// A point of one image as it lies on an image of another size; cut towards zero.
CPoint rescaled(CPoint point, CSize from, CSize to) noexcept;

} // namespace vldv::surface
