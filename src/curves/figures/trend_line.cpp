#include "curves/figures/trend_line.h"

#include "curves/figures/physical.h"

#include <cmath>

namespace vldv::curves {

trend_line fit_trend(std::span<const double> y)
{
    trend_line out;
    const auto n = static_cast<double>(y.size());
    if (y.empty()) return out;
    fit_plane(y.data(), 1, static_cast<int>(y.size()), &out.line);
    double excess = 0.0; // over the first value, so that equal values have exactly their mean
    for (const double value : y) excess += value - y[0];
    const double mean = y[0] + excess / n;
    double total = 0.0, rest = 0.0;
    for (std::size_t i = 0; i < y.size(); ++i) {
        const double missed = y[i] - out.line.A - static_cast<double>(i) * out.line.B;
        total += (y[i] - mean) * (y[i] - mean);
        rest += missed * missed;
    }
    if (total != 0.0) out.r2 = 1.0 - rest / total;
    if (y.size() > 1 && rest > 0.0) out.sd = std::sqrt(rest / (n - 1.0));
    return out;
}

trend_line fit_trend(std::span<const std::int16_t> curve, const VLAxis& values)
{
    return fit_trend(physical_values(curve, values));
}

} // namespace vldv::curves
