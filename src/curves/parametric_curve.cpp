#include "curves/force_curve.h"
#include "curves/force_stretches.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

/// Smoothed steps from sample to sample, freed of spikes; exactly 0 where values stand still.
struct smooth_steps {
    std::vector<double> values;
    double travel = 0.0; ///< from the first smoothed value to the last
    double reach = 0.0;  ///< from the lowest smoothed value to the highest

    smooth_steps(const double* of, int n) : values(static_cast<std::size_t>(n))
    {
        curves::curve_smoother(n).smooth(of, values.data());
        travel = values.back() - values.front();
        const auto [low, high] = std::ranges::minmax(values);
        reach = high - low;
        curves::take_steps(values.data(), n);
        curves::filter_spikes(values.data(), n);
    }
};

constexpr double mostReach = 1.25; ///< of a way that does not turn back, in travels

/// dY over the way of x, which counts positive whether x rises or falls.
struct curve_slopes {
    std::vector<double> values;
    double spread = 0.0;
};

curve_slopes slopes_of(const double* x, const double* y, int n)
{
    constexpr double leastStep = 0.5; // of the mean step
    smooth_steps up(y, n);
    const smooth_steps along(x, n);
    const double mean = std::fabs(along.travel) / (n - 1), direction = along.travel < 0.0 ? -1.0 : 1.0;
    curve_slopes out{{},
                     along.reach > mostReach * std::fabs(along.travel) ? std::numeric_limits<double>::infinity()
                                                                       : curves::spread_of(up.values.data(), n) / mean};
    for (std::size_t i = 0; i < up.values.size(); ++i)
        up.values[i] /= std::max(direction * along.values[i], leastStep * mean);
    out.values = std::move(up.values);
    return out;
}

/// The line of y over x through the samples of a stretch. Positions that are all equal give no slope.
curves::fitted_line fit_over(const double* x, const double* y, curves::stretch of) noexcept
{
    const auto [first, last] = of;
    const double count = last - first + 1.0;
    double meanX = 0.0, meanY = 0.0;
    for (int i = first; i <= last; ++i) {
        meanX += (x[i] - x[first]) / count;
        meanY += (y[i] - y[first]) / count;
    }
    meanX += x[first];
    meanY += y[first];
    double spread = 0.0, product = 0.0;
    for (int i = first; i <= last; ++i) {
        spread += (x[i] - meanX) * (x[i] - meanX);
        product += (x[i] - meanX) * (y[i] - meanY);
    }
    curves::fitted_line line;
    line.b = spread > 0.0 ? product / spread : 0.0;
    line.a = meanY - line.b * meanX;
    double sum = 0.0, squares = 0.0;
    for (int i = first; i <= last; ++i) {
        const double rest = y[i] - meanY - line.b * (x[i] - meanX);
        sum += rest;
        squares += rest * rest;
    }
    line.rms = curves::deviation(squares / count, sum / count);
    return line;
}

} // namespace

bool curves::positions_turn_back(const double* x, int n)
{
    if (n < 3) return false;
    const smooth_steps along(x, n);
    return along.reach > mostReach * std::fabs(along.travel);
}

void get_parametric_curve_stats(const double* x, const double* y, int n, double slantThreshold, double zeroThreshold,
                                force_curve_stats& stats)
{
    stats.clear();
    if (n < 3) return;
    stats.zero_first = stats.zero_last = n;
    stats.min_index = static_cast<std::int32_t>(std::min_element(y, y + n) - y);
    const curve_slopes slopes = slopes_of(x, y, n);
    if (!std::isfinite(slopes.spread)) return; // x does not travel, or turns back
    const curves::curve_stretches found =
        curves::find_stretches(slopes.values.data(), n, slopes.spread, zeroThreshold, slantThreshold);
    curves::keep_stretches(found, [&](curves::stretch each) { return fit_over(x, y, each); }, stats);
}
