#include "spectra/figures/features/value_distribution.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vldv::spectra {

namespace {

double last_bin(const value_distribution& distribution) noexcept
{
    return static_cast<double>(distribution.bins.size()) - 1.0;
}

} // namespace

bool is_less(double a, double b) noexcept { return std::isnan(b) ? false : std::isnan(a) || a < b; }

double bin_of(const value_distribution& distribution, double value) noexcept
{
    return base::round_half_up((value - distribution.valueMin) * last_bin(distribution) / distribution.valueRange);
}

value_distribution distribute(std::span<const double> values, std::optional<unsigned> bars)
{
    value_distribution made;
    const std::size_t count = bars ? std::size_t{*bars} : values.size();
    made.bins.assign(std::max<std::size_t>(count, 1), 0);
    if (values.empty()) return made;
    const auto [low, high] = std::minmax_element(values.begin(), values.end(), is_less);
    made.valueMin = *low;
    made.valueMax = *high;
    const double range = made.valueMax - made.valueMin;
    made.valueRange = range != 0.0 ? range : 1.0;
    for (const double each : values) {
        const double bin = bin_of(made, each);
        // A comparison with what is no number is false, which leads to the first bin.
        const double inside = bin > 0.0 ? std::min(bin, last_bin(made)) : 0.0;
        ++made.bins[static_cast<std::size_t>(inside)];
    }
    made.peakCount = *std::max_element(made.bins.begin(), made.bins.end());
    return made;
}

double share_of(const value_distribution& distribution, double value) noexcept
{
    return std::clamp((value - distribution.valueMin) / distribution.valueRange, 0.0, 1.0);
}

std::vector<std::size_t> sorted_order(std::span<const double> values, bool isDescending)
{
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        if (is_less(values[a], values[b])) return !isDescending;
        if (is_less(values[b], values[a])) return isDescending;
        return a < b;
    });
    return order;
}

value_summary summarize(std::span<const double> values)
{
    value_summary made;
    double squares = 0.0;
    // Around the mean so far (Welford), so that small deviations of large values are kept.
    for (const double value : values) {
        if (std::isnan(value)) continue;
        made.lowest = made.count == 0 ? value : std::min(made.lowest, value);
        made.highest = made.count == 0 ? value : std::max(made.highest, value);
        ++made.count;
        const double off = value - made.mean;
        made.mean += off / static_cast<double>(made.count);
        squares += off * (value - made.mean);
        made.sum += value;
    }
    if (made.count > 0) made.deviation = std::sqrt(squares / static_cast<double>(made.count));
    return made;
}

} // namespace vldv::spectra
