#include "spectra/figures/features/feature_table.h"

#include "base/text.h"
#include "spectra/figures/features/feature_filter.h"

#include <utility>

namespace vldv::spectra {

std::array<value_summary, featureMetrics> summarize(std::span<const Feature> features)
{
    std::array<value_summary, featureMetrics> all;
    for (std::size_t i = 0; i < featureMetrics; ++i) all[i] = summarize(metric_values(features, i));
    return all;
}

items_table items_of(std::span<const Feature> features, std::span<const std::size_t> numbers, const feature_axes& axes)
{
    items_table made;
    for (std::size_t i = 0; i < featureMetrics; ++i) {
        const feature_metric& row = feature_metrics()[i];
        std::vector<double> values = metric_values(features, i);
        if (!numbers.empty()) {
            std::vector<double> chosen;
            for (const std::size_t each : numbers) chosen.push_back(values[each]);
            values = std::move(chosen);
        }
        made.columns.push_back({row.name, row.units(axes), std::move(values)});
    }
    return made;
}

std::string metric_heading(std::size_t metric, const feature_axes& axes)
{
    const feature_metric& row = feature_metrics()[metric];
    const std::string units = row.units(axes);
    return units.empty() ? std::string(row.name) : std::string(row.name) + ", " + units;
}

std::string metric_cell(double value) { return base::general(value, 6); }

} // namespace vldv::spectra
