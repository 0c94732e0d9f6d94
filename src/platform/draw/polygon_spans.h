#pragma once
#include "platform/draw/geometry.h"
#include "vldv_api.h"

#include <limits>
#include <span>
#include <vector>

namespace vldv::platform {

/// Pixels left … right - 1 of row y.
struct pixel_span {
    int y, left, right;
};

/// Where an edge of a closed figure passes a row: pixels from `x` on lie behind it.
struct edge_crossing {
    int y, x;
    int direction; ///< 1 down, -1 up
};
/// The pixels between crossings that come by rows and in each row from left to right.
VLDV_INTERNAL_API std::vector<pixel_span> spans_between(std::span<const edge_crossing> crossings, bool winding);

/// The pixels whose centres lie inside closed polygons, exactly; a centre on a left or upper edge is inside. With
/// `winding` a point counts that the edges go round at least once, else one that an odd number of edges surrounds.
/// Coordinates are clamped to +-2^26. Rows ascend, spans of a row ascend and do not overlap.
std::vector<pixel_span> polygon_spans(std::span<const std::vector<CPoint>> figures, bool winding);

/// The pixels whose centres lie in or on the ellipse that touches the sides of `rect`, exactly; of rows firstRow …
/// endRow - 1 only.
VLDV_INTERNAL_API std::vector<pixel_span> ellipse_spans(const CRect& rect,
                                                        int firstRow = std::numeric_limits<int>::min(),
                                                        int endRow = std::numeric_limits<int>::max());

} // namespace vldv::platform
