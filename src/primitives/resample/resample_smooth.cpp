#include "primitives/numeric.h"
#include "primitives/resample/resample.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace vldv::primitives {

namespace {

/// Kernels at the distance x >= 0 from their middle, in steps of the coarser of source and target.
double linear_kernel(double x) noexcept { return std::max(0.0, 1.0 - x); }
// Keys' cubic convolution with a = -1/2: 1 at 0, 0 at all other whole distances.
double cubic_kernel(double x) noexcept
{
    if (x < 1.0) return (1.5 * x - 2.5) * x * x + 1.0;
    return x < 2.0 ? ((-0.5 * x + 2.5) * x - 4.0) * x + 2.0 : 0.0;
}

/// For each target the weights, which add up to 1, of the samples from `first` on.
struct weighting {
    struct span {
        int first = 0;
        std::vector<double> weights;
    };
    std::vector<span> targets;

    weighting(int from, int to, interpolation kind)
    {
        const double ratio = static_cast<double>(from) / to, stretch = std::max(ratio, 1.0);
        const double reach = (kind == interpolation::cubic ? 2.0 : 1.0) * stretch;
        for (int i = 0; i < to; ++i) {
            const double centre = (i + 0.5) * ratio - 0.5;
            const auto low = static_cast<int>(std::ceil(centre - reach)), high = static_cast<int>(centre + reach);
            span part{std::clamp(low, 0, from - 1), {}};
            part.weights.resize(static_cast<std::size_t>(std::clamp(high, 0, from - 1) - part.first) + 1);
            double sum = 0.0;
            for (int k = low; k <= high; ++k) {
                const double distance = std::fabs(k - centre) / stretch;
                const double weight = kind == interpolation::cubic ? cubic_kernel(distance) : linear_kernel(distance);
                // beyond an edge its last sample stands
                part.weights[static_cast<std::size_t>(std::clamp(k, 0, from - 1) - part.first)] += weight;
                sum += weight;
            }
            for (double& weight : part.weights) weight /= sum;
            targets.push_back(std::move(part));
        }
    }
};

std::int16_t rounded(double value) noexcept
{
    return static_cast<std::int16_t>(std::clamp(std::floor(value + 0.5), -32768.0, 32767.0));
}

} // namespace

void resample_smooth(const_height_block source, height_block target, interpolation kind)
{
    if (kind == interpolation::nearest)
        return resample(source.data, source.width, source.height, source.step, target.data, target.width, target.height,
                        target.step);
    if (source.width <= 0 || source.height <= 0 || target.width <= 0 || target.height <= 0) return;
    // Both kernels are products of one along the rows and one along the columns. A target row is mixed from its source
    // rows first; it then is a single row from which all its samples are taken.
    const weighting columns(source.width, target.width, kind), rows(source.height, target.height, kind);
    std::vector<double> mixed(static_cast<std::size_t>(source.width)); // the rows of a target, weighed together
    for (int y = 0; y < target.height; ++y) {
        std::ranges::fill(mixed, 0.0);
        int row = rows.targets[static_cast<std::size_t>(y)].first;
        for (const double weight : rows.targets[static_cast<std::size_t>(y)].weights) {
            const std::int16_t* const from = source.row(row++);
            for (std::size_t x = 0; x < mixed.size(); ++x) mixed[x] += weight * from[x];
        }
        std::int16_t* out = target.row(y);
        for (const weighting::span& part : columns.targets) {
            const double* at = mixed.data() + part.first;
            double value = 0.0;
            for (const double weight : part.weights) value += weight * *at++;
            *out++ = rounded(value);
        }
    }
}

} // namespace vldv::primitives
