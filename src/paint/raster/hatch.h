#pragma once
#include "platform/draw/drawing.h"
#include "platform/draw/polygon_spans.h"

#include <span>
#include <vector>

namespace vldv::paint {

/// Pixels of an area that a hatch splits.
struct hatched_spans {
    std::vector<platform::pixel_span> lines, between;
};

/// \param origin  where lines cross, in pixels   \param ratio  pixels that a line is wide
hatched_spans split_by_hatch(std::span<const platform::pixel_span> area, hatch_style style, CPoint origin,
                             double ratio);

} // namespace vldv::paint
