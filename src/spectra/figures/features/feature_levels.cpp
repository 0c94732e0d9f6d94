#include "spectra/figures/features/feature_levels.h"

#include "base/streams/rounding.h"
#include "primitives/map/range.h"
#include "primitives/map/threshold.h"
#include "primitives/numeric.h"
#include "spectra/figures/features/otsu.h"

#include <algorithm>
#include <cmath>

namespace vldv::spectra {

namespace {

short raw_level(double value) noexcept
{
    return static_cast<short>(std::clamp(base::round_half_up(value), -32768.0, 32767.0));
}

struct height_figures {
    double lowest, highest, mean, deviation;
};

height_figures figures_of(primitives::const_height_block heights)
{
    int lowest = 32767;
    primitives::run_sums total;
    for (int y = 0; y < heights.height; ++y) {
        const std::span row(heights.row(y), static_cast<std::size_t>(heights.width));
        total.add(primitives::sum_run(row));
        lowest = std::min<int>(lowest, primitives::find_range(row).minimum);
    }
    const double count = static_cast<double>(heights.width) * heights.height;
    const double mean = static_cast<double>(total.sum) / count;
    const double variance = static_cast<double>(total.squares) / count - mean * mean;
    return {static_cast<double>(lowest), static_cast<double>(total.highest), mean, std::sqrt(std::max(variance, 0.0))};
}

} // namespace

feature_levels find_levels(primitives::const_height_block heights, std::optional<double> level)
{
    if (heights.width <= 0 || heights.height <= 0) return {};
    const height_figures of = figures_of(heights);
    const short zero = find_zero_level(heights.data, heights.width, heights.height, heights.step, 0);
    if (level) return {zero, raw_level((of.highest - of.lowest) * *level + of.lowest)};
    // Without a given level: half way from the mean to the highest, but no more than two standard deviations above the
    // base.
    return {zero, raw_level(std::min((of.highest + of.mean) * 0.5, zero + 2.0 * of.deviation))};
}

feature_levels find_levels(primitives::const_height_block heights, const threshold_choice& choice)
{
    feature_levels levels =
        find_levels(heights, choice.mode == threshold_mode::manual ? std::optional(choice.level) : std::nullopt);
    if (choice.mode == threshold_mode::otsu) levels.threshold = otsu_threshold(heights);
    return levels;
}

} // namespace vldv::spectra
