#pragma once
#include "base/SPMDataStream.h"

#include <optional>
#include <vector>

namespace vldv::formats {

/// Between which raw numbers the middle 99.8 % of a set lie: a thousandth of the samples, at least one, is below, as
/// many above.
struct middle_range {
    double lowest = 0.0, highest = 0.0;
    double span() const noexcept { return highest - lowest; }
};

/// The middle of a stream's samples, `isVoid` apart (empty where all count), when a few of them reach much further than
/// it: when the whole range from `lowest` to `highest` is more than 5,000 times its span. Nothing in the usual case,
/// which a look at part of the samples proves, and for fewer than 8 samples, which have no middle to speak of.
/// Floating-point samples must be finite.
std::optional<middle_range> narrow_middle(const SPMDataStream& stream, const std::vector<bool>& isVoid, double lowest,
                                          double highest);

/// Between which raw numbers half of the samples lie, a quarter below and a quarter above, judged by some 1,000 of them
/// that are spread over all. Nothing for fewer than 4 measured ones.
std::optional<middle_range> half_of_samples(const SPMDataStream& stream, const std::vector<bool>& isVoid);

} // namespace vldv::formats
