#include "curves/figures/force/force_curve.h"
#include "curves/figures/force/force_stretches.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

using namespace vldv;

namespace {

/// Smoothed steps from sample to sample, freed of spikes; exactly 0 where values stand still.
struct smooth_steps {
    std::vector<double> values;
    double travel = 0.0; ///< from the first smoothed value to the last
    double reach = 0.0;  ///< from the lowest smoothed value to the highest
    double back = 0.0;   ///< the longest way against the travel
    double noise = 0.0;  ///< of the values, as a standard deviation

    smooth_steps(const double* of, int n) : values(static_cast<std::size_t>(n)), noise(noise_of(of, n))
    {
        curves::curve_smoother(n).smooth(of, values.data());
        travel = values.back() - values.front();
        const auto [low, high] = std::ranges::minmax(values);
        reach = high - low;
        double farthest = 0.0; // on the way so far
        for (const double each : values) {
            const double gone = travel < 0.0 ? values.front() - each : each - values.front();
            farthest = std::max(farthest, gone);
            back = std::max(back, farthest - gone);
        }
        curves::take_steps(values.data(), n);
        curves::filter_spikes(values.data(), n);
    }

    curves::position_way way() const noexcept
    {
        constexpr double mostReach = 1.25, mostBack = 0.25; // of a way that does not turn back, in travels
        constexpr double leastReach = 4.0;                  // of a way, in the noise of its positions
        if (reach <= leastReach * noise) return curves::position_way::rests;
        const double way = std::fabs(travel);
        return reach > mostReach * way || back > mostBack * way ? curves::position_way::turnsBack
                                                                : curves::position_way::travels;
    }

private:
    /// Of what changes from sample to sample: half of the second differences of normal noise are larger than 0.6745
    /// times sqrt(6) deviations. A way that bends here and there counts for nothing.
    static double noise_of(const double* of, int n)
    {
        constexpr double median = 1.652;
        std::vector<double> bends;
        for (int i = 1; i + 1 < n; ++i) bends.push_back(std::fabs(of[i - 1] - 2.0 * of[i] + of[i + 1]));
        const auto middle = bends.begin() + static_cast<std::ptrdiff_t>(bends.size() / 2);
        std::ranges::nth_element(bends, middle);
        return *middle / median;
    }
};

/// dY over the way of x, which counts positive whether x rises or falls.
struct curve_slopes {
    std::vector<double> values;
    double spread = 0.0;
};

curve_slopes slopes_of(const double* x, const double* y, int n)
{
    constexpr double leastStep = 0.5; // of the mean step
    smooth_steps up(y, n);
    const smooth_steps along(x, n);
    const double mean = std::fabs(along.travel) / (n - 1), direction = along.travel < 0.0 ? -1.0 : 1.0;
    curve_slopes out{{},
                     along.way() == curves::position_way::travels ? curves::spread_of(up.values.data(), n) / mean
                                                                  : std::numeric_limits<double>::infinity()};
    for (std::size_t i = 0; i < up.values.size(); ++i)
        up.values[i] /= std::max(direction * along.values[i], leastStep * mean);
    out.values = std::move(up.values);
    return out;
}

} // namespace

curves::position_way curves::way_of_positions(const double* x, int n)
{
    return n < 3 ? position_way::travels : smooth_steps(x, n).way();
}

void get_parametric_curve_stats(const double* x, const double* y, int n, double slantThreshold, double zeroThreshold,
                                force_curve_stats& stats, const std::vector<bool>& gaps)
{
    stats.clear();
    if (n < 3) return;
    stats.zero_first = stats.zero_last = n;
    stats.min_index = static_cast<std::int32_t>(std::min_element(y, y + n) - y);
    const curve_slopes slopes = slopes_of(x, y, n);
    if (!std::isfinite(slopes.spread)) return; // x does not travel, or turns back
    const curves::curve_stretches found =
        curves::find_stretches(slopes.values.data(), n, slopes.spread, zeroThreshold, slantThreshold, gaps);
    curves::keep_stretches(found, [&](curves::stretch each) { return curves::fit_over(x, y, each, gaps); }, stats);
}
