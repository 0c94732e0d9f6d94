#include "surface/figures/measure/snapping.h"

#include <algorithm>
#include <limits>

namespace vldv::surface {

CPoint snapped_point(const sample_frame& frame, CPoint at, snap_mode mode, int radius)
{
    if (mode == snap_mode::off || !frame.contains(at)) return at;
    const int reach = std::clamp(radius, 0, std::max(frame.width, frame.height));
    const int sign = mode == snap_mode::toMaximum ? 1 : -1;
    CPoint best = at;
    int bestValue = frame.isMeasured(at) ? sign * frame.at(at) : std::numeric_limits<int>::min();
    std::int64_t bestDistance = 0;
    for (int y = std::max(0, at.y - reach); y < std::min(frame.height, at.y + reach); ++y)
        for (int x = std::max(0, at.x - reach); x < std::min(frame.width, at.x + reach); ++x) {
            const int value = sign * frame.at({x, y});
            const std::int64_t distance = std::int64_t{x} * x + std::int64_t{y} * y;
            if (value < bestValue || (value == bestValue && distance <= bestDistance) || !frame.isMeasured({x, y}))
                continue;
            best = {x, y};
            bestValue = value;
            bestDistance = distance;
        }
    return best;
}

} // namespace vldv::surface
