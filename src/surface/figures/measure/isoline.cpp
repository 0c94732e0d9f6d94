#include "surface/figures/measure/isoline.h"

#include "primitives/mask/boundary.h"

namespace vldv::surface {

namespace {

/// Bits of the neighbours of a sample that are at least so high, as `boundarySteps` counts them.
unsigned neighbours_from(const sample_frame& frame, int level, int x, int y)
{
    unsigned found = 0;
    for (unsigned way = 0; way < 8; ++way) {
        const CPoint near{x + primitives::boundarySteps[way].x, y + primitives::boundarySteps[way].y};
        if (frame.contains(near) && frame.at(near) >= level) found |= 1u << way;
    }
    return found;
}

} // namespace

std::vector<CPoint> trace_isoline(const sample_frame& frame, CPoint seed)
{
    std::vector<CPoint> contour;
    if (!frame.contains(seed)) return contour;
    const int level = frame.at(seed);
    primitives::trace_boundary(
        seed.x, seed.y, [&](int x, int y) { return neighbours_from(frame, level, x, y); },
        [&contour] { contour.clear(); }, [&contour](int x, int y) { contour.push_back({x, y}); });
    return contour;
}

const char* why_no_isoline(const sample_frame& frame, CPoint seed)
{
    if (!frame.contains(seed)) return "No isoline: the sample lies outside of the image";
    const unsigned around = neighbours_from(frame, frame.at(seed), seed.x, seed.y);
    if (around == 0) return "No isoline: all samples around are lower";
    return around == 0xFF ? "No isoline: all samples around are at least as high" : "";
}

} // namespace vldv::surface
