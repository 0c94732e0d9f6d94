#include "surface/figures/measure/isoline.h"

#include "primitives/mask/boundary.h"

namespace vldv::surface {

namespace {

/// Bits of the neighbours of a sample for which `counts` holds, as `boundarySteps` counts them.
template <class Counts>
unsigned neighbours(const sample_frame& frame, CPoint at, const Counts& counts)
{
    unsigned found = 0;
    for (unsigned way = 0; way < 8; ++way) {
        const CPoint near{at.x + primitives::boundarySteps[way].x, at.y + primitives::boundarySteps[way].y};
        if (frame.contains(near) && counts(near)) found |= 1u << way;
    }
    return found;
}

/// Those that are at least so high and were measured.
unsigned neighbours_from(const sample_frame& frame, int level, CPoint at)
{
    return neighbours(frame, at, [&](CPoint near) { return frame.at(near) >= level && frame.isMeasured(near); });
}

} // namespace

std::vector<CPoint> trace_isoline(const sample_frame& frame, CPoint seed)
{
    std::vector<CPoint> contour;
    if (!frame.contains(seed) || !frame.isMeasured(seed)) return contour;
    const int level = frame.at(seed);
    primitives::trace_boundary(
        seed.x, seed.y, [&](int x, int y) { return neighbours_from(frame, level, {x, y}); },
        [&contour] { contour.clear(); }, [&contour](int x, int y) { contour.push_back({x, y}); });
    return contour;
}

const char* why_no_isoline(const sample_frame& frame, CPoint seed)
{
    if (!frame.contains(seed)) return "No isoline: the sample lies outside of the image";
    if (!frame.isMeasured(seed)) return "No isoline: the sample was not measured";
    const unsigned around = neighbours_from(frame, frame.at(seed), seed);
    const bool hasVoids = neighbours(frame, seed, [&](CPoint near) { return !frame.isMeasured(near); }) != 0;
    if (around == 0)
        return hasVoids ? "No isoline: all samples around are lower or were not measured"
                        : "No isoline: all samples around are lower";
    return around == 0xFF ? "No isoline: all samples around are at least as high" : "";
}

} // namespace vldv::surface
