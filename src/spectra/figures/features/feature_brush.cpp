#include "spectra/figures/features/feature_brush.h"

#include "base/streams/rounding.h"

#include <cmath>

namespace vldv::spectra {

feature_brush::feature_brush(int radius)
{
    // A disc as the half width of each of its rows: a stamp fills whole runs of bits instead of asking sample by
    // sample.
    const int reach = std::max(radius, 0);
    for (int dy = -reach; dy <= reach; ++dy) {
        int dx = 0;
        while (std::int64_t{dx + 1} * (dx + 1) + std::int64_t{dy} * dy <= std::int64_t{reach} * reach) ++dx;
        halfWidths.push_back(dx);
    }
}

void feature_brush::stamp(primitives::bit_image& mask, CPoint from, CPoint to, bool value) const
{
    const CSize way = to - from;
    const double length = std::hypot(way.cx, way.cy);
    const double directionX = length > 0.0 ? way.cx / length : 0.0, directionY = length > 0.0 ? way.cy / length : 0.0;
    const int reach = static_cast<int>(halfWidths.size()) / 2;
    const long last = std::lround(length);
    for (long k = 0; k <= last; ++k) {
        const int x = base::nearest_int(from.x + static_cast<double>(k) * directionX);
        const int y = base::nearest_int(from.y + static_cast<double>(k) * directionY);
        for (int row = -reach; row <= reach; ++row) {
            const int half = halfWidths[static_cast<std::size_t>(row + reach)];
            mask.fill(y + row, x - half, x + half + 1, value);
        }
    }
}

} // namespace vldv::spectra
