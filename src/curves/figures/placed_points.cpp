#include "curves/figures/placed_points.h"

#include "base/streams/rounding.h"

namespace vldv::curves {

void placed_points::settle(const std::vector<std::int64_t>& now, std::vector<grid_point>& points)
{
    if (lengths.size() != now.size()) {
        lengths = now;
        put = points;
        return;
    }
    points = put;
    if (lengths == now) return;
    for (grid_point& point : points)
        for (std::size_t d = 0; d < point.size() && d < now.size(); ++d)
            if (lengths[d] > 0)
                point[d] = base::nearest_int(static_cast<double>(point[d]) * static_cast<double>(now[d]) /
                                             static_cast<double>(lengths[d]));
}

} // namespace vldv::curves
