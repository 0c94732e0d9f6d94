#include "paint/raster/clip_bands.h"

#include <cmath>

namespace vldv::paint {

CRect scaled_rect(const CRect& rect, CPoint origin, double ratio) noexcept
{
    constexpr double limit = 1 << 30;
    const auto edge = [&](int at, int from) {
        return static_cast<int>(std::lround(std::clamp((double{1} * at - from) * ratio, -limit, limit)));
    };
    return {edge(rect.left, origin.x), edge(rect.top, origin.y), edge(rect.right, origin.x),
            edge(rect.bottom, origin.y)};
}

clip_bands::clip_bands(const std::optional<CRgn>& clip, CSize surface, CPoint origin, double ratio)
{
    const CRect whole({}, surface);
    if (!clip) {
        if (!whole.IsRectEmpty()) bands.push_back(whole);
    } else {
        CRect part;
        for (const CRect& rect : clip->rectangles())
            if (part.IntersectRect(scaled_rect(rect, origin, ratio), whole)) bands.push_back(part);
    }
    for (const CRect& band : bands) extent.UnionRect(extent, band);
}

} // namespace vldv::paint
