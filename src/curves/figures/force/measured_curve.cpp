#include "curves/figures/force/measured_curve.h"

#include "curves/figures/force/force_analysis.h"
#include "curves/figures/force/force_curve.h"
#include "curves/figures/physical.h"

#include <algorithm>

namespace vldv::curves {

measured_curve::measured_curve(std::span<const std::int16_t> raw, const VLAxis& axis, const std::vector<bool>& gaps)
{
    std::size_t begin = 0, end = raw.size();
    if (!gaps.empty()) {
        while (begin < end && gaps[begin]) ++begin;
        while (end > begin && gaps[end - 1]) --end;
        voids.assign(gaps.begin() + static_cast<std::ptrdiff_t>(begin),
                     gaps.begin() + static_cast<std::ptrdiff_t>(end));
        if (std::ranges::find(voids, true) == voids.end()) voids.clear();
    }
    first = static_cast<int>(begin);
    values = physical_values(raw.subspan(begin, end - begin), axis);
}

template <class Use>
void measured_curve::fromFirst(force_curve_stats& stats, Use use) const
{
    if (first != 0) count_from_begin(-first, true, stats);
    use();
    if (first != 0) count_from_begin(first, true, stats);
}

void measured_curve::findLines(double zeroThreshold, double slantThreshold, force_curve_stats& stats) const
{
    get_force_curve_stats(values.data(), count(), zeroThreshold, slantThreshold, stats, voids);
    if (first != 0) count_from_begin(first, true, stats);
}

void measured_curve::findMinima(int window, force_curve_stats& stats) const
{
    stats.local_minima.clear();
    fromFirst(stats, [&] { find_loc_fmin(values.data(), count(), stats, window); });
}

void measured_curve::findValleys(force_curve_stats& stats) const
{
    fromFirst(stats, [&] { get_force_curve_valleys(values.data(), count(), stats); });
}

double measured_curve::minimum(const force_curve_stats& stats) const noexcept
{
    const auto at = static_cast<std::size_t>(std::max(stats.min_index - first, 0));
    return at < values.size() ? values[at] - stats.zeroAt(stats.min_index) : 0.0;
}

} // namespace vldv::curves
