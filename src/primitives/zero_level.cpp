#include "primitives/map/histogram.h"
#include "primitives/numeric.h"
#include "primitives/resample/resample.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

using namespace vldv;

namespace {

using bins = std::span<const unsigned>;
using sums = std::vector<std::uint64_t>; ///< of the bins before each index

sums sums_before(bins counts)
{
    sums before(counts.size() + 1);
    for (std::size_t i = 0; i < counts.size(); ++i) before[i + 1] = before[i] + counts[i];
    return before;
}

/// The bin in which the lower half of all ends. The base covers at least half of the area and lies lowest, so the
/// centre of its peak is not above.
std::size_t median_bin(const sums& before)
{
    const std::uint64_t half = (before.back() + 1) / 2;
    return static_cast<std::size_t>(std::lower_bound(before.begin() + 1, before.end(), half) - before.begin()) - 1;
}

/// The steps from end to end of the narrowest stretch up to bin `last` that holds a quarter of all: between a third and
/// two thirds of what the peak of the base is wide at half its height.
std::size_t narrowest_quarter(const sums& before, std::size_t last)
{
    const std::uint64_t quarter = (before.back() + 3) / 4;
    std::size_t narrowest = last, end = 0;
    for (std::size_t first = 0; first <= last; ++first) {
        while (end <= last && before[end + 1] - before[first] < quarter) ++end;
        if (end > last) break;
        narrowest = std::min(narrowest, end - first);
    }
    return narrowest;
}

/// The histogram under a triangle that ends `radius` + 1 bins to either side.
sums smoothed(const sums& before, std::size_t radius)
{
    const auto count = static_cast<std::ptrdiff_t>(before.size()) - 1, reach = static_cast<std::ptrdiff_t>(radius);
    const auto until = [&](std::ptrdiff_t end) { // the sum of the bins before `end`, which may lie outside
        return before[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(end, 0, count))];
    };
    sums out(static_cast<std::size_t>(count));
    // At bin -radius - 1 the triangle touches nothing; from bin to bin it gains what is ahead and loses what is behind.
    std::uint64_t value = 0;
    for (std::ptrdiff_t x = -reach - 1; x + 1 < count; ++x) {
        value += until(x + reach + 2) - until(x + 1);
        value -= until(x + 1) - until(x - reach);
        if (x + 1 >= 0) out[static_cast<std::size_t>(x + 1)] = value;
    }
    return out;
}

/// The top of the lowest hill at or below bin `last` that is at least half as high as the highest there: where features
/// are as many as the base, the lower one is the base.
std::size_t lowest_peak(const sums& hills, std::size_t last)
{
    const auto end = hills.begin() + static_cast<std::ptrdiff_t>(last) + 1;
    const std::uint64_t highest = *std::max_element(hills.begin(), end);
    const auto stands = [highest](std::uint64_t value) { return value * 2 >= highest; };
    const auto foot = std::find_if(hills.begin(), end, stands);
    const auto behind = std::find_if_not(foot, end, stands);
    auto top = static_cast<std::size_t>(std::max_element(foot, behind) - hills.begin());
    while (top + 1 < hills.size() && hills[top + 1] > hills[top]) ++top;
    return top;
}

/// The mean position of what lies in a peak above half its height.
double centre_of(bins counts, const sums& hills, std::size_t peak)
{
    std::size_t first = peak, end = peak + 1;
    while (first > 0 && hills[first - 1] * 2 >= hills[peak]) --first;
    while (end < hills.size() && hills[end] * 2 >= hills[peak]) ++end;
    double moment = 0.0, total = 0.0;
    for (std::size_t i = first; i < end; ++i) {
        moment += static_cast<double>(counts[i]) * static_cast<double>(i);
        total += static_cast<double>(counts[i]);
    }
    return total > 0.0 ? moment / total : static_cast<double>(peak);
}

} // namespace

double find_zero_level(const unsigned* counts, int count)
{
    if (!counts || count <= 0) return 0.0;
    const bins histogram(counts, static_cast<std::size_t>(count));
    const sums before = sums_before(histogram);
    if (before.back() == 0) return 0.0;
    // The level of the base on which features stand. Its peak is looked for below the median of all heights, in a
    // histogram that is smoothed about as wide as that peak is, so that noise of single bins makes no peaks of its own.
    const std::size_t median = median_bin(before);
    const sums hills = smoothed(before, narrowest_quarter(before, median));
    return centre_of(histogram, hills, lowest_peak(hills, median));
}

short find_zero_level(const short* data, int width, int height, int step, int)
{
    if (!data || width <= 0 || height <= 0) return 0;
    std::vector<unsigned> counts(primitives::heightCount);
    const primitives::const_height_block heights{data, width, height, step};
    for (int y = 0; y < height; ++y)
        primitives::count_heights({heights.row(y), static_cast<std::size_t>(width)},
                                  std::span<unsigned, primitives::heightCount>(counts));
    const double level = find_zero_level(counts.data(), static_cast<int>(counts.size()));
    return static_cast<short>(std::floor(level + 0.5) - 32768.0);
}
