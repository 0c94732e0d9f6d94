#include "curves/figures/pairs/pair_force.h"

#include "curves/figures/force/force_analysis.h"
#include "curves/figures/force/force_curve.h"
#include "curves/figures/force/force_report.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace vldv::curves {

namespace {

/// Numbers that are none get values between those beside them; both ends are numbers.
void fill_between(std::vector<double>& values)
{
    for (std::size_t before = 0, at = 1; at < values.size(); ++at) {
        if (!std::isfinite(values[at])) continue;
        const double step = (values[at] - values[before]) / static_cast<double>(at - before);
        for (std::size_t i = before + 1; i < at; ++i)
            values[i] = values[before] + step * static_cast<double>(i - before);
        before = at;
    }
}

/// Physical, from the first pair that was measured to the last one.
struct measured_pairs {
    std::size_t first = 0;
    std::vector<double> x, y;
    std::vector<bool> gaps;

    measured_pairs(const pair_series& series, const VLAxis& axisX, const VLAxis& axisY)
    {
        std::size_t end = series.size();
        while (first < end && !series.isMeasured(first)) ++first;
        while (end > first && !series.isMeasured(end - 1)) --end;
        for (std::size_t i = first; i < end; ++i) {
            x.push_back(axisX.at(series.x[i]));
            y.push_back(axisY.at(series.y[i]));
            if (!series.gaps.empty()) gaps.push_back(series.gaps[i]);
        }
        fill_between(x);
        fill_between(y);
    }
};

} // namespace

force_curve_stats pair_force_stats(const pair_series& series, const VLAxis& x, const VLAxis& y, double slantThreshold,
                                   double zeroThreshold)
{
    const measured_pairs pairs(series, x, y);
    force_curve_stats stats;
    get_parametric_curve_stats(pairs.x.data(), pairs.y.data(), static_cast<int>(pairs.y.size()), slantThreshold,
                               zeroThreshold, stats, pairs.gaps);
    if (pairs.first != 0 && pairs.y.size() >= 3) count_from_begin(static_cast<int>(pairs.first), false, stats);
    return stats;
}

double pair_minimum(const pair_series& series, const VLAxis& x, const VLAxis& y, const force_curve_stats& stats)
{
    const auto at = static_cast<std::size_t>(stats.min_index);
    return at < series.size() ? y.at(series.y[at]) - stats.zeroAt(x.at(series.x[at])) : 0.0;
}

std::string pair_force_heading(const VLAxis& x, const VLAxis& y)
{
    return force_header(y.get_units(), slope_name(x.get_units()));
}

std::string pair_force_row(unsigned number, const pair_series& series, const VLAxis& x, const VLAxis& y,
                           const force_curve_stats& stats)
{
    // Lines run over physical positions: no step turns their slopes into units.
    return force_row({number, force_slope(stats, 1.0), 1.0, pair_minimum(series, x, y, stats)}, stats);
}

} // namespace vldv::curves
