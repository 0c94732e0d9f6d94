#pragma once
#include "platform/draw/Region.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace vldv::paint {

/// The pixels of a surface that may be drawn on, as the rectangles of a region from top to bottom.
class clip_bands {
public:
    clip_bands(const std::optional<CRgn>& clip, CSize surface, CPoint origin, double ratio);

    /// The smallest rectangle around them.
    const CRect& box() const noexcept { return extent; }
    /// Calls `draw` with each part of `rect` that may be drawn on.
    template <typename F>
    void each(const CRect& rect, F&& draw) const
    {
        CRect part;
        const auto isAbove = [](const CRect& band, int top) { return band.bottom <= top; };
        for (auto band = std::lower_bound(bands.begin(), bands.end(), rect.top, isAbove);
             band != bands.end() && band->top < rect.bottom; ++band)
            if (part.IntersectRect(rect, *band)) draw(part);
    }

private:
    std::vector<CRect> bands;
    CRect extent;
};

/// A rectangle of the surface's units in pixels, of which a unit has `ratio`.
CRect scaled_rect(const CRect& rect, CPoint origin, double ratio) noexcept;

} // namespace vldv::paint
