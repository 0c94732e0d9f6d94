#pragma once
#include "platform/draw/polygon_spans.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vldv::paint {

/// A point to 1/256 of a pixel.
struct fixed_point {
    std::int64_t x = 0, y = 0;
};
inline constexpr std::int64_t fixedOne = 256;

using fixed_figure = std::vector<fixed_point>;

/// The pixels within `bounds` whose centres lie inside closed polygons, by the rules of `platform::polygon_spans`: a
/// centre on a left or upper edge is inside. Takes time by the rows of `bounds`, however large the polygons are.
std::vector<platform::pixel_span> scan_convert(std::span<const fixed_figure> figures, bool winding,
                                               const CRect& bounds);

/// Puts spans in order and joins those that touch or overlap, so that each pixel appears once.
void join_spans(std::vector<platform::pixel_span>& spans);

} // namespace vldv::paint
