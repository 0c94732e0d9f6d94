#include "curves/figures/force/map_scale.h"

#include "base/streams/rounding.h"
#include "base/text/six_digits.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace vldv::curves {

std::int16_t map_scale::sample(double number) const noexcept
{
    return isPlain ? static_cast<std::int16_t>(base::round_half_up(number)) : packed(number * step);
}

map_scale choose_map_scale(std::span<const double> numbers, double step, double coarsest)
{
    map_scale out{step, true, {}, 0.0, 0.0};
    bool any = false;
    for (const double number : numbers) {
        if (!std::isfinite(number)) continue;
        out.least = any ? std::min(out.least, number) : number;
        out.most = any ? std::max(out.most, number) : number;
        any = true;
    }
    if (!any) return out;
    const double reach = std::max(std::fabs(out.least), std::fabs(out.most));
    const bool fits = base::round_half_up(out.least) >= std::numeric_limits<std::int16_t>::min() &&
                      base::round_half_up(out.most) <= std::numeric_limits<std::int16_t>::max();
    out.isPlain = fits && (reach >= coarsest || reach == 0.0);
    if (out.isPlain) return out;
    const base::raw_axis axis =
        base::six_digit_axis(out.least * step, out.most * step, std::numeric_limits<std::int16_t>::min(),
                             std::numeric_limits<std::int16_t>::max());
    out.packed = {axis.start, axis.scale};
    return out;
}

namespace {

/// The lower median of the finite numbers, 0 without any.
double median_of(std::span<const double> numbers)
{
    std::vector<double> finite;
    std::ranges::copy_if(numbers, std::back_inserter(finite), [](double each) { return std::isfinite(each); });
    if (finite.empty()) return 0.0;
    const auto middle = finite.begin() + static_cast<std::ptrdiff_t>((finite.size() - 1) / 2);
    std::ranges::nth_element(finite, middle);
    return *middle;
}

} // namespace

force_map make_map(std::span<const double> numbers, const map_scale& scale, const std::string& units)
{
    force_map out;
    out.values = scale.isPlain ? VLAxis(0.0, scale.step, units.c_str())
                               : VLAxis(scale.packed.zero, scale.packed.step, units.c_str());
    const bool isWhole = std::ranges::all_of(numbers, [](double each) { return std::isfinite(each); });
    const std::int16_t middle = isWhole ? std::int16_t{0} : scale.sample(median_of(numbers));
    out.samples.reserve(numbers.size());
    for (const double number : numbers) {
        const bool isMeasured = std::isfinite(number);
        out.samples.push_back(isMeasured ? scale.sample(number) : middle);
        if (isMeasured) continue;
        ++out.voids;
        const std::uint64_t at = out.samples.size() - 1;
        if (!out.voidRanges.empty() && out.voidRanges.back().first + out.voidRanges.back().count == at)
            ++out.voidRanges.back().count;
        else
            out.voidRanges.push_back({at, 1});
    }
    return out;
}

} // namespace vldv::curves
