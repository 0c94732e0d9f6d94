#include "formats/shared/force/contact_cues.h"

#include "base/text.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vldv::formats {

namespace {

constexpr double leastShare = 0.2; ///< of the range, by which levels differ
constexpr double leastNoise = 10.0;
constexpr double restRatio = 3.0;    ///< of the spreads of both ends
constexpr double leastUnrest = 0.02; ///< of the range

struct mean_and_spread {
    double mean = 0.0, spread = 0.0;
};

mean_and_spread measure(std::span<const double> values)
{
    const auto count = static_cast<double>(values.size());
    mean_and_spread out;
    for (const double value : values) out.mean += value / count;
    for (const double value : values) out.spread += (value - out.mean) * (value - out.mean) / count;
    out.spread = std::sqrt(out.spread);
    return out;
}

/// Median of the steps from sample to sample.
double noise_of(std::span<const double> values)
{
    std::vector<double> steps;
    for (std::size_t i = 1; i < values.size(); ++i) steps.push_back(std::fabs(values[i] - values[i - 1]));
    const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
    std::ranges::nth_element(steps, middle);
    return *middle;
}

/// The end with the larger of two numbers, when they differ by more than `least`.
contact_end larger(double first, double last, double least) noexcept
{
    if (!(std::fabs(first - last) > least)) return contact_end::unknown;
    return first > last ? contact_end::first : contact_end::last;
}

} // namespace

force_way way_of_part(std::string_view name)
{
    const std::string text = base::lower_ascii(name);
    if (text.find("approach") != std::string::npos) return force_way::approach;
    return text.find("retract") != std::string::npos ? force_way::retract : force_way::unknown;
}

contact_end contact_in_time(force_way way) noexcept
{
    if (way == force_way::approach) return contact_end::last;
    return way == force_way::retract ? contact_end::first : contact_end::unknown;
}

contact_end contact_by_position(double first, double last, double contact) noexcept
{
    const double toFirst = std::fabs(first - contact), toLast = std::fabs(last - contact);
    if (toFirst < toLast) return contact_end::first;
    return toLast < toFirst ? contact_end::last : contact_end::unknown;
}

contact_end contact_by_force(std::span<const double> forces)
{
    constexpr std::size_t fewest = 20, outermost = 3;
    if (forces.size() < fewest) return contact_end::unknown;
    const std::size_t part = forces.size() / 10;
    const mean_and_spread first = measure(forces.first(part)), last = measure(forces.last(part));
    const auto [lowest, highest] = std::ranges::minmax(forces);
    const double noise = noise_of(forces), enough = std::max(leastShare * (highest - lowest), leastNoise * noise);
    const contact_end higher = larger(first.mean, last.mean, enough);
    const double rest = std::min(first.spread, last.spread), unrest = std::max(first.spread, last.spread);
    if (unrest > restRatio * rest && unrest > std::max(noise, leastUnrest * (highest - lowest))) {
        const contact_end moving = larger(first.spread, last.spread, 0.0);
        if (higher == contact_end::unknown || higher == moving) return moving;
        const bool isFirst = moving == contact_end::first;
        const double outer = measure(isFirst ? forces.first(outermost) : forces.last(outermost)).mean;
        return outer - (isFirst ? last : first).mean > leastNoise * noise ? moving : contact_end::unclear;
    }
    return std::min(first.mean, last.mean) - lowest > enough ? contact_end::unknown : higher;
}

contact_end contact_of_most(std::span<const contact_end> told) noexcept
{
    std::size_t counts[4] = {};
    for (const contact_end each : told) ++counts[static_cast<std::size_t>(each)];
    const std::size_t all = told.size() - counts[static_cast<std::size_t>(contact_end::unknown)];
    for (const contact_end end : {contact_end::first, contact_end::last})
        if (all != 0 && 4 * counts[static_cast<std::size_t>(end)] >= 3 * all) return end;
    return all ? contact_end::unclear : contact_end::unknown;
}

} // namespace vldv::formats
