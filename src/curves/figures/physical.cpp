#include "curves/figures/physical.h"

#include "base/VLAxis.h"

#include <algorithm>

namespace vldv::curves {

std::vector<float> physical_floats(std::span<const std::int16_t> raw, const VLAxis& values)
{
    const auto scale = static_cast<float>(values.scale), start = static_cast<float>(values.start);
    std::vector<float> out(raw.size());
    std::ranges::transform(raw, out.begin(), [&](std::int16_t v) { return static_cast<float>(v) * scale + start; });
    return out;
}

std::vector<double> physical_values(std::span<const std::int16_t> raw, const VLAxis& values)
{
    std::vector<double> out(raw.size());
    std::ranges::transform(raw, out.begin(), [&](std::int16_t v) { return v * values.scale + values.start; });
    return out;
}

} // namespace vldv::curves
