#pragma once
#include "primitives/map/bit_image.h"
#include "primitives/resample/resample.h"
#include "spectra/figures/features/feature.h"
#include "spectra/figures/features/feature_metrics.h"
#include "vldv_api.h"

#include <memory>
#include <vector>

namespace vldv::spectra {

/// A block of an image's heights, where it lies, and how it is measured.
struct feature_source {
    primitives::const_height_block heights;
    CPoint origin; ///< of the block in the image
    feature_axes axes;
    short zeroLevel = 0;
};

/// The features of a mask, measured. Movable; features may be sorted and taken out of the list, but live no longer.
class VLDV_INTERNAL_API feature_list {
public:
    /// The connected areas of a mask over the block. \throws std::bad_alloc
    /// \param threads  how many work on contours and skeletons; the result does not depend on it
    static feature_list ofMask(const primitives::bit_image& mask, const feature_source& source, unsigned threads = 1);
    /// Makes the mask of the heights strictly above a threshold as well.
    static feature_list above(short threshold, const feature_source& source, primitives::bit_image& mask,
                              unsigned threads = 1);

    std::vector<Feature> features; ///< in the order in which a scan along the rows meets them
    std::size_t dropped = 0;       ///< areas of a single sample, which are no features

private:
    void measure(const feature_source& source, unsigned threads);
    std::unique_ptr<primitives::connected_runs> found = std::make_unique<primitives::connected_runs>();
};

} // namespace vldv::spectra
