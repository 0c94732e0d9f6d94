#pragma once
#include "primitives/resample/resample.h"
#include "vldv_api.h"

#include <optional>

namespace vldv::spectra {

/// How the threshold is found, and whether features that touch are parted.
enum class threshold_mode {
    automatic, ///< by mean, highest and deviation
    manual,    ///< a share of the range
    otsu,      ///< what parts the heights best in two
    watershed, ///< the automatic one, and every summit is a feature of its own
};
struct threshold_choice {
    threshold_mode mode = threshold_mode::automatic;
    double level = 0.2; ///< of manual: share of the range above the lowest height
    double depth = 0.1; ///< of watershed: how far summits rise above what joins them, share of the highest above the
                        ///< threshold
};

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
[[nodiscard]] VLDV_INTERNAL_API feature_levels find_levels(primitives::const_height_block heights,
                                                           const threshold_choice& choice);

} // namespace vldv::spectra
