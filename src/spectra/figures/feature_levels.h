#pragma once
#include "primitives/resample/resample.h"
#include "vldv_api.h"

#include <optional>

namespace vldv::spectra {

/// Where features begin.
struct feature_levels {
    short zeroLevel = 0; ///< raw level of the base
    short threshold = 0; ///< a feature is strictly above
};

/// The zero level of the heights and a threshold: with a `level` from 0 to 1 that share of the range above the lowest
/// height, by itself the lower one of the middle between mean and highest, and two standard deviations above the zero
/// level. Halves go up. All 0 for an empty block.
[[nodiscard]] VLDV_INTERNAL_API feature_levels find_levels(primitives::const_height_block heights,
                                                           std::optional<double> level = {});

} // namespace vldv::spectra
