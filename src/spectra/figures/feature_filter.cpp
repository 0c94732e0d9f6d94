#include "spectra/figures/feature_filter.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace vldv::spectra {

namespace {

double last_bin(const feature_distribution& distribution) noexcept
{
    return static_cast<double>(distribution.bins.size()) - 1.0;
}

/// Unbounded: a value outside the distribution has a bin outside.
double bin_of(const feature_distribution& distribution, double value) noexcept
{
    return base::round_half_up((value - distribution.valueMin) * last_bin(distribution) / distribution.valueRange);
}

/// Values that are no numbers come first, so that there is an order.
bool is_less(double a, double b) noexcept { return std::isnan(b) ? false : std::isnan(a) || a < b; }

} // namespace

feature_distribution distribute(std::span<const Feature> features, std::size_t metric, std::optional<unsigned> bars)
{
    feature_distribution made;
    made.metric = metric;
    const std::size_t count = bars ? std::size_t{*bars} : features.size();
    made.bins.assign(std::max<std::size_t>(count, 1), 0);
    if (features.empty()) return made;
    const auto [low, high] =
        std::minmax_element(features.begin(), features.end(), [metric](const auto& a, const auto& b) {
            return is_less(a.metrics[metric], b.metrics[metric]);
        });
    made.valueMin = low->metrics[metric];
    made.valueMax = high->metrics[metric];
    const double range = made.valueMax - made.valueMin;
    made.valueRange = range != 0.0 ? range : 1.0;
    for (const Feature& each : features) {
        const double bin = bin_of(made, each.metrics[metric]);
        // A comparison with what is no number is false, which leads to the first bin.
        const double inside = bin > 0.0 ? std::min(bin, last_bin(made)) : 0.0;
        ++made.bins[static_cast<std::size_t>(inside)];
    }
    made.peakCount = *std::max_element(made.bins.begin(), made.bins.end());
    return made;
}

double share_of(const feature_distribution& distribution, double value) noexcept
{
    return std::clamp((value - distribution.valueMin) / distribution.valueRange, 0.0, 1.0);
}

bool passes(const Feature& feature, const feature_distribution& distribution, const feature_filter& filter) noexcept
{
    const double first = base::round_half_up(last_bin(distribution) * filter.f1);
    const double last = base::round_half_up(last_bin(distribution) * filter.f2);
    const double bin = bin_of(distribution, feature.metrics[distribution.metric]);
    return (first <= bin && bin <= last) == filter.keepsInner;
}

void sort_features(std::vector<Feature>& features, std::size_t metric, bool isDescending)
{
    std::vector<std::size_t> order(features.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        const double valueA = features[a].metrics[metric], valueB = features[b].metrics[metric];
        if (is_less(valueA, valueB)) return !isDescending;
        if (is_less(valueB, valueA)) return isDescending;
        return a < b;
    });
    std::vector<Feature> sorted;
    sorted.reserve(features.size());
    for (const std::size_t each : order) sorted.push_back(std::move(features[each]));
    features = std::move(sorted);
}

} // namespace vldv::spectra
