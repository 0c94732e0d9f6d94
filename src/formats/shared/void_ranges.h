#pragma once
#include "base/SPMDataStream.h"
#include "vldv_api.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

// Which samples were not measured. They hold numbers, see void_points.h, that no analysis may take for data.

namespace vldv::formats {

/// Samples that were not measured, numbered through a whole stream.
struct void_range {
    std::uint64_t first = 0, count = 0;
    bool operator==(const void_range&) const = default;
};

/// Key of the image text that tells them: "of 400: 192-399", the count of samples in the stream, and behind it first
/// and last numbers of ranges, separated by blanks.
constexpr const char* voidRangesKey = "\\Void samples";

/// As `told` says, the text under that key or null: in rising order. None when it speaks of another count of samples
/// or is damaged.
VLDV_INTERNAL_API std::vector<void_range> void_ranges(const SPMDataStream& stream, const char* told);
/// The text of a stream of so many samples; of very many ranges the longest. Empty for none.
VLDV_INTERNAL_API std::string void_ranges_text(std::uint64_t samples, std::vector<void_range> ranges);

/// What of a curve was measured.
struct measured_part {
    std::size_t first = 0, end = 0; ///< without what is void at the ends; equal when nothing was measured
    std::vector<bool> gaps;         ///< which of the samples between are void; empty for none
    std::size_t voids = 0;          ///< of all samples of the curve
};
/// Where the samples of a curve stand among those of a stream, and which of these are void.
struct curve_voids {
    std::span<const void_range> ranges; ///< in rising order
    std::uint64_t begin = 0;
};
/// Of a curve of so many samples. What is void in one of `streams` is void.
measured_part measured_part_of(std::size_t length, std::initializer_list<curve_voids> streams);

/// The ranges when the curves marked in `turned` run the other way.
/// \param lengths  samples of each curve; the rest up to `points` is padding, which is not told of turned curves
std::vector<void_range> turned_ranges(std::span<const void_range> ranges, const std::vector<bool>& turned,
                                      std::span<const std::size_t> lengths, std::size_t points);

} // namespace vldv::formats
