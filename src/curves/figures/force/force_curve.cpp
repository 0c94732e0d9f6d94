#include "curves/figures/force/force_curve.h"

#include "curves/figures/force/force_stretches.h"
#include "primitives/fit/linear_fit.h"

#include <algorithm>
#include <cmath>
#include <numbers>

using namespace vldv;

namespace {

/// The line through the values of a stretch, both ends included. \param rest  room for as many
curves::fitted_line fit_stretch(const double* y, curves::stretch of, double* rest) noexcept
{
    const auto [first, last] = of;
    const int count = last - first + 1;
    std::copy_n(y + first, count, rest);
    linear_fit line;
    remove_plane(rest, 1, count, &line);
    double powers[2];
    moments(powers, 2, rest, count, 1);
    return {line.A - first * line.B, line.B, curves::deviation(powers[1], powers[0])};
}

} // namespace

void get_force_curve_stats(const double* y, int n, double zeroThreshold, double slantThreshold,
                           force_curve_stats& stats, const std::vector<bool>& gaps)
{
    stats.clear();
    if (n <= 0) return;
    // Stretches are told by the steps from sample to sample: near contact they are steep, where the probe is free they
    // are flat, both against the spread of all steps. The lines are then fitted to the values themselves, not to the
    // smoothed ones.
    std::vector<double> work(static_cast<std::size_t>(n));
    curves::curve_smoother(n).smooth(y, work.data());
    curves::take_steps(work.data(), n);
    curves::filter_spikes(work.data(), n);
    const double spread = curves::spread_of(work.data(), n);
    const curves::curve_stretches found =
        curves::find_stretches(work.data(), n, spread, zeroThreshold, slantThreshold, gaps);
    const auto fit = [&](curves::stretch each) {
        return curves::has_gap(each, gaps) ? curves::fit_over(nullptr, y, each, gaps)
                                           : fit_stretch(y, each, work.data());
    };
    curves::keep_stretches(found, fit, stats);
    stats.min_index = static_cast<std::int32_t>(std::min_element(y, y + n) - y);
}

void find_loc_fmin(const double* y, int n, force_curve_stats& stats, int window, const double* x)
{
    const std::int64_t w = std::max(window, 0), width = 2 * w + 1;
    const std::int64_t end = std::min<std::int64_t>(stats.zero_first + w, n);
    const auto rest = [&](std::int64_t i) {
        return y[i] - stats.zero_a - stats.zero_b * (x ? x[i] : static_cast<double>(i));
    };
    for (std::int64_t i = std::max<std::int64_t>(stats.slant_last - w, 0); end > i + width;) {
        // A sample is a minimum when it is the lowest, the first of equals, among itself and `window` samples on either
        // side.
        std::int64_t lowest = 0;
        for (std::int64_t k = 1; k < width; ++k)
            if (rest(i + k) < rest(i + lowest)) lowest = k;
        if (lowest == w) stats.local_minima.push_back(static_cast<std::int32_t>(i + w));
        // Behind the lowest of the first half no sample before the window's end can be the next; one of the second
        // half comes to the middle.
        i += lowest <= w ? lowest + 1 : lowest - w;
    }
}

namespace vldv::curves {

double force_slope(const force_curve_stats& stats, double positionScale) noexcept
{
    return (stats.slant_b - stats.zero_b) / positionScale;
}

double slope_angle(double slope) noexcept { return std::atan(std::fabs(slope)) * 180.0 / std::numbers::pi; }

double force_minimum(const double* y, const force_curve_stats& stats, const double* x) noexcept
{
    return y[stats.min_index] - stats.zeroAt(x ? x[stats.min_index] : stats.min_index);
}

double valley_area(const std::int16_t* raw, raw_scale values, double positionScale, const force_curve_stats& stats,
                   force_curve_stats::valley valley) noexcept
{
    const auto [a, b] = valley;
    // The trapezium rule in raw samples: all inner distances from the zero line and half of those at the two ends. The
    // line is straight, so that its value half way between the ends is the mean of its values at them.
    double sum = 0.0;
    for (int i = a + 1; i < b; ++i) sum += stats.zeroAt(i) - (raw[i] * values.scale + values.zero);
    const double ends = stats.zeroAt((a + b) * 0.5) - values.zero - (raw[a] + raw[b]) * values.scale * 0.5;
    return positionScale * (sum + ends);
}

double valley_area_over(const double* x, const double* y, const force_curve_stats& stats,
                        force_curve_stats::valley valley) noexcept
{
    double area = 0.0;
    for (int i = valley.first; i < valley.second; ++i)
        area += 0.5 * (x[i + 1] - x[i]) * (stats.zeroAt(x[i]) - y[i] + stats.zeroAt(x[i + 1]) - y[i + 1]);
    return area;
}

} // namespace vldv::curves
