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
unsigned neighbours_from(const sample_frame& frame, int level, CPoint at, const measured_test& isMeasured)
{
    return neighbours(frame, at,
                      [&](CPoint near) { return frame.at(near) >= level && (!isMeasured || isMeasured(near)); });
}

} // namespace

std::vector<CPoint> trace_isoline(const sample_frame& frame, CPoint seed, const measured_test& isMeasured)
{
    std::vector<CPoint> contour;
    if (!frame.contains(seed)) return contour;
    const int level = frame.at(seed);
    primitives::trace_boundary(
        seed.x, seed.y, [&](int x, int y) { return neighbours_from(frame, level, {x, y}, isMeasured); },
        [&contour] { contour.clear(); }, [&contour](int x, int y) { contour.push_back({x, y}); });
    return contour;
}

const char* why_no_isoline(const sample_frame& frame, CPoint seed, const measured_test& isMeasured)
{
    if (!frame.contains(seed)) return "No isoline: the sample lies outside of the image";
    const unsigned around = neighbours_from(frame, frame.at(seed), seed, isMeasured);
    const bool hasVoids = isMeasured && neighbours(frame, seed, [&](CPoint near) { return !isMeasured(near); }) != 0;
    if (around == 0)
        return hasVoids ? "No isoline: all samples around are lower or were not measured"
                        : "No isoline: all samples around are lower";
    return around == 0xFF ? "No isoline: all samples around are at least as high" : "";
}

} // namespace vldv::surface
