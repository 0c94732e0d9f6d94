#pragma once
#include "base/VLAxis.h"
#include "document/plugin_decoration.h"
#include "primitives/map/bit_image.h"
#include "spectra/figures/features/feature.h"

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace vldv::spectra {

/// How features are shown on the surface.
enum class feature_mask_type { none, mask, contour, skeleton };

/// Keys of the two drawings: the features that pass the filter, and the others.
inline constexpr const char* featuresKey = "features";
inline constexpr const char* featuresOutKey = "features_out";

/// A bitmap over a rectangle of an image, one byte a sample, the lowest row first.
class feature_overlay {
public:
    /// \param working_  of the image; what lies outside is left out
    feature_overlay(const CRect& working_, unsigned char background)
        : working(working_),
          bits(static_cast<std::size_t>(working_.Width()) * static_cast<std::size_t>(working_.Height()), background)
    {
    }
    void put(CPoint point, unsigned char value) noexcept;
    std::span<const unsigned char> bytes() const noexcept { return bits; }
    std::span<unsigned char> bytes() noexcept { return bits; }
    /// The drawing over the rectangle in units of the axes; valid while this lives and is not changed.
    VLPluginDecoration record(const VLAxis& x, const VLAxis& y, const char* key, std::uint32_t color);

private:
    CRect working;
    std::vector<unsigned char> bits;
    decoration_bitmap bitmap{};
};

/// Both drawings for a mask type other than none. Of type mask the first shows where no passing feature is, as 1.
struct feature_overlays {
    feature_overlay passing, others;
};
feature_overlays draw_features(std::span<const Feature> features, const std::function<bool(const Feature&)>& passes,
                               feature_mask_type type, const CRect& working);

/// Where a mask that is being painted is clear, as 1.
feature_overlay draw_mask(const primitives::bit_image& mask, const CRect& working);
/// The same in a part of the bytes of such a drawing. \param part  of the mask, inside it
void redraw_mask(const primitives::bit_image& mask, const CRect& part, std::span<unsigned char> bytes);

} // namespace vldv::spectra
