#pragma once
#include "platform/draw/geometry.h"
#include "primitives/map/sample_runs.h"

#include <cstdint>
#include <span>

namespace vldv::surface {

/// The 16-bit samples of one frame, row by row from the lowest. Without samples both sides are 0.
struct sample_frame {
    std::span<const std::int16_t> samples;
    int width = 0, height = 0;
    std::span<const primitives::sample_run> unmeasured = {}; ///< samples that are no heights, in rising order

    bool isEmpty() const noexcept { return width <= 0 || height <= 0; }
    CSize size() const noexcept { return {width, height}; }
    bool contains(CPoint point) const noexcept
    {
        return point.x >= 0 && point.y >= 0 && point.x < width && point.y < height;
    }
    // The point must lie inside.
    std::size_t index(CPoint point) const noexcept
    {
        return static_cast<std::size_t>(point.y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(point.x);
    }
    std::int16_t at(CPoint point) const noexcept { return samples[index(point)]; }
    bool isMeasured(CPoint point) const
    {
        return unmeasured.empty() || primitives::runs_within(index(point), index(point) + 1, unmeasured).empty();
    }
};

} // namespace vldv::surface
