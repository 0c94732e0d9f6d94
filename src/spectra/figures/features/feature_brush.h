#pragma once
#include "platform/draw/geometry.h"
#include "primitives/map/bit_image.h"

#include <vector>

namespace vldv::spectra {

/// A disc that paints a mask.
class feature_brush {
public:
    /// The samples within `radius` of the middle one; 0 or less is that one alone.
    explicit feature_brush(int radius);
    /// Sets or clears what the disc covers on its way from one sample of the mask to another, in steps of a sample's
    /// length. Parts outside are left out.
    void stamp(primitives::bit_image& mask, CPoint from, CPoint to, bool value) const;

private:
    std::vector<int> halfWidths; ///< of the rows, from the lowest: samples to either side of the middle
};

} // namespace vldv::spectra
