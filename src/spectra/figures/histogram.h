#pragma once
#include "base/VLAxis.h"
#include "vldv_api.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// The distribution of a frame's heights.
namespace vldv::spectra {

struct height_histogram {
    std::vector<std::uint32_t> bins;
    /// Values of the lowest and the highest sample, and the step of the value axis times their distance, which counts
    /// as 1 where they are equal. A negative step makes the minimum the larger.
    double valueMin = 0.0, valueMax = 0.0, valueRange = 0.0;
    std::uint32_t totalCount = 0; ///< samples
    std::uint32_t peakCount = 0;  ///< samples of the fullest bin
};

/// How often each height of a frame occurs: all that its histograms need, so that whoever keeps it has them at once.
struct height_counts {
    std::vector<std::uint32_t> counts; ///< `primitives::heightCount` of them, or none without samples
    std::uint32_t total = 0;
    int lowest = 0, highest = 0; ///< heights that occur
};
[[nodiscard]] height_counts count_frame(std::span<const std::int16_t> samples);

/// round(sqrt(samples) / 2), halves up.
unsigned automatic_bar_count(std::size_t samples) noexcept;

/// Sample z goes to bin round((value - valueMin) (bars - 1) / valueRange), halves up: the first and the last bin are
/// half as wide as the others. Without samples everything stays 0.
/// \param axis  turns raw samples into values
/// \param bars  how many bins; by default `automatic_bar_count`
[[nodiscard]] VLDV_INTERNAL_API height_histogram make_histogram(const height_counts& heights, const VLAxis& axis,
                                                                std::optional<unsigned> bars = {});
[[nodiscard]] VLDV_INTERNAL_API height_histogram make_histogram(std::span<const std::int16_t> samples,
                                                                const VLAxis& axis, std::optional<unsigned> bars = {});

/// The histogram with its values in another unit.
[[nodiscard]] VLDV_INTERNAL_API height_histogram in_units(height_histogram histogram, const char* from, const char* to);

/// Two places along the chart, as shares of its width from 0 to 1. They may be crossed.
struct delimiters {
    double f1 = 0.25, f2 = 0.75;
};

/// What lies between them.
struct delimited_share {
    double x0, x1;               ///< values; x1 < x0 when crossed
    std::uint32_t selectedCount; ///< samples in the bins of both and between, in whichever order
    double percent;              ///< of all samples
};
/// All 0 without samples.
[[nodiscard]] VLDV_INTERNAL_API delimited_share share_between(const height_histogram& histogram,
                                                              delimiters at) noexcept;
/// The bin at a share of the chart's width: cut off, not rounded. There must be a bin.
[[nodiscard]] unsigned bin_at(const height_histogram& histogram, double share) noexcept;
/// "X0: … %: …", a line of tab-separated columns.
[[nodiscard]] VLDV_INTERNAL_API std::string share_text(const delimited_share& share, const char* units);

/// Raw samples at the delimiters, halves up.
struct raw_window {
    int low, high;
};
[[nodiscard]] raw_window cutoff_window(const height_histogram& histogram, delimiters at, const VLAxis& axis) noexcept;
/// Raises samples below `low`, and then lowers those above `high`: all become `high` where it is below `low`.
void cut_off(std::span<std::int16_t> samples, raw_window window) noexcept;

} // namespace vldv::spectra
