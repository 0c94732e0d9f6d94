#pragma once
#include "primitives/resample/resample.h"

namespace vldv::spectra {

/// The height that parts the others best in two: the variance between those at or below it and those above is the
/// largest (N. Otsu, IEEE Trans. Syst. Man Cybern. 9, 62, 1979). Of several such heights the middle of the first and
/// the last, rounded down; that of all samples where they are equal. 0 for an empty block.
[[nodiscard]] short otsu_threshold(primitives::const_height_block heights);

} // namespace vldv::spectra
