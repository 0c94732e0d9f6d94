#pragma once
#include "vldv_api.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vldv::spectra {

/// How many of some values lie where. Values that are no numbers count in the first bin.
struct value_distribution {
    double valueMin = 0.0, valueMax = 0.0, valueRange = 1.0; ///< the range is 1 where all values are equal
    std::vector<std::uint32_t> bins;                         ///< at least one
    std::uint32_t peakCount = 0;
};
/// \param bars  how many bins; by default as many as values
[[nodiscard]] value_distribution distribute(std::span<const double> values, std::optional<unsigned> bars = {});

/// The bin of a value, halves up; one outside of the distribution has a bin outside.
[[nodiscard]] double bin_of(const value_distribution& distribution, double value) noexcept;
/// A value's place along the chart, from 0 to 1.
[[nodiscard]] double share_of(const value_distribution& distribution, double value) noexcept;

/// An order of all values: those that are no numbers come first.
[[nodiscard]] bool is_less(double a, double b) noexcept;
/// The places of values in rising or falling order; equal values keep theirs.
[[nodiscard]] std::vector<std::size_t> sorted_order(std::span<const double> values, bool isDescending);

/// What is told of some values together; those that are no numbers do not count. All 0 without values.
struct value_summary {
    std::size_t count = 0;
    double mean = 0.0, deviation = 0.0, sum = 0.0, lowest = 0.0, highest = 0.0; ///< deviation divides by the count
};
[[nodiscard]] VLDV_INTERNAL_API value_summary summarize(std::span<const double> values);

} // namespace vldv::spectra
