#pragma once
#include "surface/figures/selection_state.h"
#include "surface/tools/cursor_world.h"

namespace surface {

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
/// Where a volume's mark lies on an image of this size.
CPoint mark_sample(const volume_mark& mark, CSize image) noexcept;

struct hit {
    hot_action action = hot_action::none;
    hot_item item;
};
/// What lies at a sample: decorations, marks, curves, vertices of sections, their segments, the mark of a volume; the
/// first of these that is hit.
hit find_hit(const selection_state& state, const ICursorWorld& world, CPoint at, int reach, unsigned flags);

} // namespace surface
