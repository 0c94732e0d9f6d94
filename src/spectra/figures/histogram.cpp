#include "spectra/figures/histogram.h"

#include "base/streams/rounding.h"
#include "base/text.h"
#include "base/units.h"
#include "primitives/map/histogram.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vldv::spectra {

unsigned automatic_bar_count(std::size_t samples) noexcept
{
    return static_cast<unsigned>(base::round_half_up(std::sqrt(static_cast<double>(samples)) * 0.5));
}

height_counts count_frame(std::span<const std::int16_t> samples)
{
    if (samples.empty()) return {};
    height_counts made;
    made.counts.resize(primitives::heightCount);
    primitives::count_heights(samples, std::span<std::uint32_t, primitives::heightCount>(made.counts));
    made.total = static_cast<std::uint32_t>(samples.size());
    const auto occurs = [](std::uint32_t count) { return count != 0; };
    const auto height = [](auto place) { return static_cast<int>(place) - 32768; };
    const auto& all = made.counts;
    made.lowest = height(std::find_if(all.begin(), all.end(), occurs) - all.begin());
    made.highest = height(all.rend() - std::find_if(all.rbegin(), all.rend(), occurs) - 1);
    return made;
}

namespace {

/// Sums what falls into each bin. Counted in whole numbers: a height half way between two bins has the same one
/// wherever the axis starts.
void fill_bins(height_histogram& made, const height_counts& heights)
{
    const auto last = static_cast<std::int64_t>(made.bins.size()) - 1;
    const std::int64_t range = std::max(heights.highest - heights.lowest, 1);
    // From height to height by last / range bins, the rest in halves of 1 / range.
    std::int64_t part = range;
    std::size_t bin = 0;
    for (int height = heights.lowest; height <= heights.highest; ++height) {
        made.bins[bin] += heights.counts[static_cast<std::size_t>(height + 32768)];
        bin += static_cast<std::size_t>(last / range);
        part += 2 * (last % range);
        if (part < 2 * range) continue;
        part -= 2 * range;
        ++bin;
    }
}

} // namespace

height_histogram make_histogram(const height_counts& heights, const VLAxis& axis, std::optional<unsigned> bars)
{
    height_histogram made;
    if (heights.total == 0) return made;
    made.totalCount = heights.total;
    made.bins.resize(bars ? *bars : automatic_bar_count(heights.total));
    made.valueMin = axis.at(heights.lowest);
    made.valueMax = axis.at(heights.highest);
    made.valueRange = std::max(heights.highest - heights.lowest, 1) * axis.scale;
    if (made.bins.empty()) return made;
    if (std::fabs(axis.scale) > 0.0)
        fill_bins(made, heights);
    else
        made.bins[0] = made.totalCount; // all samples have one value
    made.peakCount = *std::max_element(made.bins.begin(), made.bins.end());
    return made;
}

height_histogram make_histogram(std::span<const std::int16_t> samples, const VLAxis& axis, std::optional<unsigned> bars)
{
    return make_histogram(count_frame(samples), axis, bars);
}

height_histogram in_units(height_histogram histogram, const char* from, const char* to)
{
    for (double* const value : {&histogram.valueMin, &histogram.valueMax, &histogram.valueRange})
        *value = convert_size(from, to, *value);
    return histogram;
}

unsigned bin_at(const height_histogram& histogram, double share) noexcept
{
    const auto count = static_cast<double>(histogram.bins.size());
    return static_cast<unsigned>(std::clamp(count * share, 0.0, count - 1.0));
}

namespace {

double value_at(const height_histogram& histogram, double share)
{
    return share * (histogram.valueMax - histogram.valueMin) + histogram.valueMin;
}

} // namespace

delimited_share share_between(const height_histogram& histogram, delimiters at) noexcept
{
    if (histogram.bins.empty()) return {};
    const auto [first, last] = std::minmax({bin_at(histogram, at.f1), bin_at(histogram, at.f2)});
    const auto begin = histogram.bins.begin();
    const std::uint32_t selected = std::accumulate(begin + first, begin + last + 1, std::uint32_t{0});
    return {value_at(histogram, at.f1), value_at(histogram, at.f2), selected,
            static_cast<double>(selected) / histogram.totalCount * 100.0};
}

std::string share_text(const delimited_share& share, const char* units)
{
    return base::formatted(string_resource(texts::delimiters), share.x0, units, share.x1, units, share.x1 - share.x0,
                           units, share.percent);
}

raw_window cutoff_window(const height_histogram& histogram, delimiters at, const VLAxis& axis) noexcept
{
    const auto raw = [&](double share) {
        return base::nearest_int((value_at(histogram, share) - axis.start) / axis.scale);
    };
    return {raw(at.f1), raw(at.f2)};
}

void cut_off(std::span<std::int16_t> samples, raw_window window) noexcept
{
    const auto limit = [](int raw) { return static_cast<std::int16_t>(std::clamp(raw, -32768, 32767)); };
    const std::int16_t low = limit(window.low), high = limit(window.high);
    for (std::int16_t& sample : samples) sample = std::min(std::max(sample, low), high);
}

} // namespace vldv::spectra
