#pragma once
#include "base/SPMDataStream.h"
#include "vldv_api.h"

#include <cstddef>
#include <vector>

namespace vldv::formats {

/// Key of the image text that tells how many samples the curves of an image hold, in stored order, separated by blanks
/// (tabs, line ends and commas will do). What stands behind them in the stream is padding.
constexpr const char* curveLengthsKey = "\\Curve lengths";

/// Samples of each curve along dimension 0, one curve behind the other through all sub-images: whole curves unless
/// `told`, the text under `curveLengthsKey` or null, has a number for each of them or for each sub-image. 0 or less:
/// not measured. Empty for a stream without samples.
VLDV_INTERNAL_API std::vector<std::size_t> curve_lengths(const SPMDataStream& stream, const char* told);

} // namespace vldv::formats
