#include "curves/map_scale.h"

#include "base/rounding.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace curves {

std::int16_t map_scale::sample(double number) const noexcept
{
    return isPlain ? static_cast<std::int16_t>(base::round_half_up(number)) : packed(number * step);
}

map_scale choose_map_scale(std::span<const double> numbers, double step, double coarsest)
{
    map_scale out{step, true, {}, 0.0, 0.0};
    double sum = 0.0;
    std::size_t count = 0;
    for (const double number : numbers) {
        if (!std::isfinite(number)) continue;
        out.least = count ? std::min(out.least, number) : number;
        out.most = count ? std::max(out.most, number) : number;
        sum += number;
        ++count;
    }
    if (count == 0) return out;
    const double reach = std::max(std::fabs(out.least), std::fabs(out.most));
    const bool fits = base::round_half_up(out.least) >= std::numeric_limits<std::int16_t>::min() &&
                      base::round_half_up(out.most) <= std::numeric_limits<std::int16_t>::max();
    out.isPlain = fits && (reach >= coarsest || reach == 0.0);
    if (!out.isPlain)
        out.packed = choose_packing(sum / static_cast<double>(count) * step, out.least * step, out.most * step);
    return out;
}

force_map make_map(std::span<const double> numbers, const map_scale& scale, const std::string& units)
{
    force_map out;
    out.values = scale.isPlain ? VLAxis(0.0, scale.step, units.c_str())
                               : VLAxis(scale.packed.zero, scale.packed.step, units.c_str());
    const std::int16_t lowest = scale.sample(scale.least);
    out.samples.reserve(numbers.size());
    for (const double number : numbers) {
        const bool isMeasured = std::isfinite(number);
        out.samples.push_back(isMeasured ? scale.sample(number) : lowest);
        out.voids += isMeasured ? 0 : 1;
    }
    return out;
}

} // namespace curves
