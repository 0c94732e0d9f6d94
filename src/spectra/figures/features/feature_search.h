#pragma once
#include "primitives/map/sample_runs.h"
#include "spectra/figures/features/feature_levels.h"
#include "spectra/figures/features/feature_list.h"
#include "spectra/figures/features/mask_history.h"
#include "spectra/figures/features/measured_block.h"
#include "vldv_api.h"

#include <functional>
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

/// What a threshold finds in a block.
struct found_features {
    feature_levels levels;
    primitives::bit_image mask; ///< over the block
    feature_list list;
};
/// \param origin  of the block in the image
[[nodiscard]] VLDV_INTERNAL_API found_features find_features(const measured_block& block, CPoint origin,
                                                             const feature_axes& axes, const threshold_choice& choice);

/// The features in a rectangle of an image, with the mask that they come from, which can be painted.
class VLDV_INTERNAL_API feature_search {
public:
    /// Thresholds the rectangle.
    void find(const searched_image& image, const CRect& working_, const threshold_choice& choice);
    /// The features of the mask as it is now.
    void measureMask(const searched_image& image);
    /// Keeps the mask as it is, to come back to.
    void beginEdit() { history.keep(bits); }
    /// Sets or clears the mask where a brush goes from one point of the image to another.
    /// \return what may have changed, samples of the image
    CRect paint(int radius, CPoint from, CPoint to, bool value);
    /// Takes features out of the list and out of the mask.
    void remove(const std::function<bool(const Feature&)>& goes);
    bool canUndo() const noexcept { return history.canUndo(); }
    bool canRedo() const noexcept { return history.canRedo(); }
    /// The mask as it was before the last edit, or after it; its features are to be measured then.
    void undo() { history.undo(bits); }
    void redo() { history.redo(bits); }
    void forgetEdits() noexcept { history.clear(); }
    void clear() { *this = {}; }

    const CRect& working() const noexcept { return rect; }
    const feature_levels& levels() const noexcept { return found; }
    const primitives::bit_image& mask() const noexcept { return bits; }
    /// To be sorted.
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
    mask_history history;
    std::size_t missing = 0;
};

} // namespace vldv::spectra
