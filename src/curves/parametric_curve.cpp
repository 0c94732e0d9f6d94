#include "curves/force_curve.h"
#include "curves/force_stretches.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// Smoothed steps from sample to sample, freed of spikes; exactly 0 where values stand still.
std::vector<double> steps_of(const double* values, int n)
{
    std::vector<double> steps(static_cast<std::size_t>(n));
    curves::curve_smoother(n).smooth(values, steps.data());
    curves::take_steps(steps.data(), n);
    curves::filter_spikes(steps.data(), n);
    return steps;
}

/// dY/dX, and NaN where there is no dX: it is on neither side of any threshold.
struct curve_slopes {
    std::vector<double> values;
    double spread = 0.0;
};

curve_slopes slopes_of(const double* x, const double* y, int n)
{
    curve_slopes out{steps_of(y, n), 0.0};
    const std::vector<double> along = steps_of(x, n);
    double sum = 0.0, squares = 0.0, count = 0.0;
    for (std::size_t i = 0; i < out.values.size(); ++i) {
        double& slope = out.values[i];
        slope /= along[i];
        if (!std::isfinite(slope)) {
            slope = std::numeric_limits<double>::quiet_NaN();
            continue;
        }
        sum += slope;
        squares += slope * slope;
        ++count;
    }
    if (count > 0.0) out.spread = curves::deviation(squares / count, sum / count);
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

void get_parametric_curve_stats(const double* x, const double* y, int n, double slantThreshold, double zeroThreshold,
                                force_curve_stats& stats)
{
    stats.clear();
    if (n < 3) return;
    const curve_slopes slopes = slopes_of(x, y, n);
    const curves::curve_stretches found =
        curves::find_stretches(slopes.values.data(), n, slopes.spread, zeroThreshold, slantThreshold);
    curves::keep_stretches(found, [&](curves::stretch each) { return fit_over(x, y, each); }, stats);
    stats.min_index = static_cast<std::int32_t>(std::min_element(y, y + n) - y);
}
