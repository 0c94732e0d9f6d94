#pragma once
#include "paint/raster/raster_op.h"
#include "platform/draw/geometry.h"

#include <cstddef>
#include <span>

namespace vldv::paint {

/// A block of pixels 0xAARRGGBB, rows from the top downwards.
struct pixel_block {
    const std::uint32_t* pixels = nullptr;
    std::ptrdiff_t perRow = 0;
    CRect place; ///< where it lies on the target

    const std::uint32_t* at(int x, int y) const noexcept
    {
        return pixels + (y - place.top) * perRow + (x - place.left);
    }
};

/// Where pixels end up. Rectangles lie within the target and none is empty.
class pixel_sink {
public:
    virtual ~pixel_sink() = default;
    virtual CSize size() const = 0;
    /// The target is this memory or part of it.
    virtual bool isIn(const std::byte*) const { return false; }
    virtual void fill(std::span<const CRect> rects, colorEntry color, raster_op op) = 0;
    /// The part of a block; alpha is not asked.
    virtual void put(const pixel_block& block, const CRect& part, raster_op op) = 0;
    /// Lays the part of a block over what is there; its colours are multiplied by alpha.
    virtual void blend(const pixel_block& block, const CRect& part) = 0;
};

} // namespace vldv::paint
