#include "surface/isoline.h"

#include "primitives/boundary.h"

namespace surface {

std::vector<CPoint> trace_isoline(const sample_frame& frame, CPoint seed)
{
    std::vector<CPoint> contour;
    if (!frame.contains(seed)) return contour;
    const auto neighbours = [&frame, level = frame.at(seed)](int x, int y) {
        unsigned found = 0;
        for (unsigned way = 0; way < 8; ++way) {
            const CPoint near{x + primitives::boundary_steps[way].x, y + primitives::boundary_steps[way].y};
            if (frame.contains(near) && frame.at(near) >= level) found |= 1u << way;
        }
        return found;
    };
    primitives::trace_boundary(
        seed.x, seed.y, neighbours, [&contour] { contour.clear(); },
        [&contour](int x, int y) { contour.push_back({x, y}); });
    return contour;
}

} // namespace surface
