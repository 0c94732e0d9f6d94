#include "platform/draw/shown_part.h"

#include <algorithm>

namespace vldv::platform {

namespace {

shown_part brought_inside(double from, double width) noexcept
{
    const double begin = std::clamp(from, 0.0, 1.0 - width);
    return width >= 1.0 ? shown_part{} : shown_part{begin, begin + width};
}

/// Pixels of the whole curve stay far below the ends of 32-bit numbers in any window.
constexpr double narrowest = 1.0 / (1 << 17);
constexpr double fewestSteps = 2.0; // from sample to sample

} // namespace

shown_part zoomed(const shown_part& part, double factor, double around, std::uint32_t samples) noexcept
{
    const double least = samples > 1 ? std::clamp(fewestSteps / (samples - 1.0), narrowest, 1.0) : 1.0;
    const double width = std::clamp(part.width() / factor, std::min(least, part.width()), 1.0);
    return brought_inside(part.fromPane(around) - around * width, width);
}

shown_part panned(const shown_part& part, double by) noexcept
{
    return brought_inside(part.from + by * part.width(), part.width());
}

} // namespace vldv::platform
