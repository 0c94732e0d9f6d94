#pragma once
#include "primitives/map/sample_runs.h"
#include "spectra/figures/feature_levels.h"
#include "spectra/figures/feature_list.h"
#include "vldv_api.h"

#include <optional>
#include <span>
#include <vector>

namespace vldv::spectra {

/// An image as a search looks at it: rising heights without gaps between the rows, which last as long as a call.
struct searched_image {
    primitives::const_height_block heights;
    feature_axes axes;
    std::span<const primitives::sample_run> unmeasured; ///< in rising order
};

/// The features in a rectangle of an image, with the mask that they come from, which can be painted.
class VLDV_INTERNAL_API feature_search {
public:
    /// Thresholds the rectangle. \param level  a share of the range; nothing: automatic
    void find(const searched_image& image, const CRect& working_, std::optional<double> level);
    /// The features of the mask as it is now.
    void measureMask(const searched_image& image);
    /// Sets or clears the mask where a brush goes from one point of the image to another.
    void paint(int radius, CPoint from, CPoint to, bool value);
    void clear() { *this = {}; }

    const CRect& working() const noexcept { return rect; }
    const feature_levels& levels() const noexcept { return found; }
    const primitives::bit_image& mask() const noexcept { return bits; }
    std::vector<Feature>& features() noexcept { return list.features; }
    const std::vector<Feature>& features() const noexcept { return list.features; }
    std::size_t dropped() const noexcept { return list.dropped; } ///< single samples
    std::size_t notMeasured() const noexcept { return missing; }  ///< samples of the rectangle
    bool isOnBorder(const Feature& feature) const noexcept;       ///< of the rectangle
    /// The one that holds a point of the image; nothing for none.
    std::optional<std::size_t> featureAt(CPoint point) const noexcept;

private:
    CRect rect;
    feature_levels found;
    primitives::bit_image bits;
    feature_list list;
    std::size_t missing = 0;
};

} // namespace vldv::spectra
