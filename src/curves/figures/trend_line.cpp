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
    // r2 is the share of the spread about the mean that the line explains; sd is the standard deviation of what it
    // leaves.
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

namespace {

/// Places and values of what was measured.
struct measured_values {
    std::vector<double> x, y;
};

double mean_of(const std::vector<double>& numbers)
{
    double excess = 0.0;
    for (const double each : numbers) excess += each - numbers[0];
    return numbers[0] + excess / static_cast<double>(numbers.size());
}

trend_line fit_places(const measured_values& of)
{
    trend_line out;
    const double meanX = mean_of(of.x), meanY = mean_of(of.y);
    double xx = 0.0, xy = 0.0, total = 0.0, rest = 0.0;
    for (std::size_t i = 0; i < of.x.size(); ++i) {
        xx += (of.x[i] - meanX) * (of.x[i] - meanX);
        xy += (of.x[i] - meanX) * (of.y[i] - meanY);
        total += (of.y[i] - meanY) * (of.y[i] - meanY);
    }
    out.line.B = xx > 0.0 ? xy / xx : 0.0;
    out.line.A = meanY - out.line.B * meanX;
    for (std::size_t i = 0; i < of.x.size(); ++i) {
        const double missed = of.y[i] - out.line.A - of.x[i] * out.line.B;
        rest += missed * missed;
    }
    if (total != 0.0) out.r2 = 1.0 - rest / total;
    if (of.x.size() > 1 && rest > 0.0) out.sd = std::sqrt(rest / (static_cast<double>(of.x.size()) - 1.0));
    return out;
}

} // namespace

trend_line fit_trend(std::span<const std::int16_t> curve, const VLAxis& values, const std::vector<bool>& gaps)
{
    const std::vector<double> all = physical_values(curve, values);
    if (gaps.empty()) return fit_trend(all);
    measured_values kept;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (gaps[i]) continue;
        kept.x.push_back(static_cast<double>(i));
        kept.y.push_back(all[i]);
    }
    return kept.x.empty() ? trend_line() : fit_places(kept);
}

} // namespace vldv::curves
