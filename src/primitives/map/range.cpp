#include "primitives/map/range.h"

#include "primitives/simd/kernels.h"

#include <algorithm>

namespace vldv::primitives {

height_range find_range_reference(std::span<const std::int16_t> heights) noexcept
{
    height_range found;
    for (const std::int16_t height : heights) {
        found.minimum = std::min(found.minimum, height);
        found.maximum = std::max(found.maximum, height);
    }
    return found;
}

height_range find_range(std::span<const std::int16_t> heights) noexcept
{
    return kernels().findRange(heights.data(), heights.size());
}

} // namespace vldv::primitives
