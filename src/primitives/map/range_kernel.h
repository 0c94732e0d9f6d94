// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/map/range.h"
#include "primitives/simd/vector.h"

namespace vldv::primitives::simd {
namespace {

/// Smallest and largest of what came to each place.
struct place_ranges {
    vec<std::int16_t> low = all<std::int16_t>(32767), high = all<std::int16_t>(-32768);
    void include(vec<std::int16_t> heights)
    {
        low = lower(low, heights);
        high = higher(high, heights);
    }
    void include(const place_ranges& other)
    {
        low = lower(low, other.low);
        high = higher(high, other.high);
    }
    height_range joined() const
    {
        const auto lesser = [](auto a, auto b) { return a < b ? a : b; };
        const auto larger = [](auto a, auto b) { return a > b ? a : b; };
        return {folded(low, lesser), folded(high, larger)};
    }
};

inline void include(height_range& range, std::int16_t height)
{
    range.minimum = height < range.minimum ? height : range.minimum;
    range.maximum = height > range.maximum ? height : range.maximum;
}

height_range find_range(const std::int16_t* heights, std::size_t count) noexcept
{
    constexpr std::size_t lanes = wide<std::int16_t>, step = 4 * lanes;
    place_ranges ranges[4];
    std::size_t i = 0;
    for (; i + step <= count; i += step)
        for (std::size_t k = 0; k < 4; ++k) ranges[k].include(load(heights + i + k * lanes));
    for (std::size_t k = 1; k < 4; ++k) ranges[0].include(ranges[k]);
    for (; i + lanes <= count; i += lanes) ranges[0].include(load(heights + i));
    height_range found = ranges[0].joined();
    for (; i < count; ++i) include(found, heights[i]);
    return found;
}

} // namespace
} // namespace vldv::primitives::simd
