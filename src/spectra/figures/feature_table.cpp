#include "spectra/figures/feature_table.h"

#include "base/text.h"

#include <algorithm>
#include <cmath>

namespace vldv::spectra {

namespace {

metric_summary summary_of(std::span<const Feature> features, std::size_t metric)
{
    metric_summary made;
    double count = 0.0, squares = 0.0;
    // Around the mean so far (Welford), so that small deviations of large values are kept.
    for (const Feature& each : features) {
        const double value = each.metrics[metric];
        if (std::isnan(value)) continue;
        made.lowest = count == 0.0 ? value : std::min(made.lowest, value);
        made.highest = count == 0.0 ? value : std::max(made.highest, value);
        count += 1.0;
        const double off = value - made.mean;
        made.mean += off / count;
        squares += off * (value - made.mean);
        made.sum += value;
    }
    if (count > 0.0) made.deviation = std::sqrt(squares / count);
    return made;
}

} // namespace

std::array<metric_summary, featureMetrics> summarize(std::span<const Feature> features)
{
    std::array<metric_summary, featureMetrics> all;
    for (std::size_t i = 0; i < featureMetrics; ++i) all[i] = summary_of(features, i);
    return all;
}

std::string metric_heading(std::size_t metric, const feature_axes& axes)
{
    const feature_metric& row = feature_metrics()[metric];
    const std::string units = row.units(axes);
    return units.empty() ? std::string(row.name) : std::string(row.name) + ", " + units;
}

std::string metric_cell(double value) { return base::general(value, 6); }

} // namespace vldv::spectra
