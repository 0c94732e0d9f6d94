#pragma once
#include "platform/draw/geometry.h"

#include <cstdint>
#include <span>

namespace vldv::surface {

/// The 16-bit samples of one frame, row by row from the lowest. Without samples both sides are 0.
struct sample_frame {
    std::span<const std::int16_t> samples;
    int width = 0, height = 0;

    bool isEmpty() const noexcept { return width <= 0 || height <= 0; }
    CSize size() const noexcept { return {width, height}; }
    bool contains(CPoint point) const noexcept
    {
        return point.x >= 0 && point.y >= 0 && point.x < width && point.y < height;
    }
    /// The point must lie inside.
    std::int16_t at(CPoint point) const noexcept
    {
        return samples[static_cast<std::size_t>(point.y) * static_cast<std::size_t>(width) +
                       static_cast<std::size_t>(point.x)];
    }
};

} // namespace vldv::surface
