#include "spectra/figures/features/feature_filter.h"

#include "base/streams/rounding.h"

#include <utility>

namespace vldv::spectra {

std::vector<double> metric_values(std::span<const Feature> features, std::size_t metric)
{
    std::vector<double> values;
    values.reserve(features.size());
    for (const Feature& each : features) values.push_back(each.metrics[metric]);
    return values;
}

feature_distribution distribute(std::span<const Feature> features, std::size_t metric, std::optional<unsigned> bars)
{
    return {distribute(metric_values(features, metric), bars), metric};
}

bool passes(const Feature& feature, const feature_distribution& distribution, const feature_filter& filter) noexcept
{
    const double lastBin = static_cast<double>(distribution.bins.size()) - 1.0;
    const double first = base::round_half_up(lastBin * filter.f1), last = base::round_half_up(lastBin * filter.f2);
    const double bin = bin_of(distribution, feature.metrics[distribution.metric]);
    return (first <= bin && bin <= last) == filter.keepsInner;
}

void sort_features(std::vector<Feature>& features, std::size_t metric, bool isDescending)
{
    std::vector<Feature> sorted;
    sorted.reserve(features.size());
    for (const std::size_t each : sorted_order(metric_values(features, metric), isDescending))
        sorted.push_back(std::move(features[each]));
    features = std::move(sorted);
}

} // namespace vldv::spectra
