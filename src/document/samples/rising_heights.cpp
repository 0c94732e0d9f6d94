#include "document/samples/rising_heights.h"

#include <algorithm>

namespace vldv::document {

// The samples are turned as ~raw = -1 - raw, which stays within 16 bits for each sample; -raw would not for -32768.
// start + raw * scale = (start - scale) + (-1 - raw) * (-scale), so that the heights stay the same.
VLAxis turned_axis(const VLAxis& axis) { return {axis.start - axis.scale, -axis.scale, axis.get_units()}; }

void turn_heights(std::span<const std::int16_t> samples, std::int16_t* out) noexcept
{
    std::ranges::transform(samples, out, [](std::int16_t raw) { return static_cast<std::int16_t>(~raw); });
}

rising_heights::rising_heights(std::span<const std::int16_t> given, const VLAxis& givenAxis)
    : shown(given), shownAxis(givenAxis)
{
    if (!(givenAxis.scale < 0.0)) return;
    turned.resize(given.size());
    turn_heights(given, turned.data());
    shown = turned;
    shownAxis = turned_axis(givenAxis);
}

} // namespace vldv::document
