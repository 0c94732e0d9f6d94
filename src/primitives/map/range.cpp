#include "primitives/map/range.h"

#include "primitives/cpu.h"
#include "primitives/simd.h"

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
#if defined(__x86_64__)
    if (has_avx512()) return simd::find_range_avx512(heights);
    if (has_avx2()) return simd::find_range_avx2(heights);
#endif
    return find_range_reference(heights);
}

} // namespace vldv::primitives
