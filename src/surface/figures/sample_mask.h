#pragma once
#include "base/VLAxis.h"
#include "document/plugin_decoration.h"
#include "platform/draw/geometry.h"
#include "surface/figures/drawing_axes.h"

#include <span>
#include <vector>

namespace vldv::surface {

/// Samples from `first` to before `end`.
struct sample_span {
    int first = 0, end = 0;
};

/// A bitmap over a whole image, 1 where something runs: what a drawing of samples is kept as.
class sample_mask {
public:
    explicit sample_mask(CSize image_);
    /// Samples outside are passed over.
    void set(CPoint at) noexcept;
    std::span<const unsigned char> bytes() const noexcept { return bits; }
    /// A bitmap over a part of the plane, corner to corner in the units of the axes.
    struct placed_bitmap {
        CSize size;
        double x0, y0, x1, y1;
        std::span<const unsigned char> bytes; ///< row 0 first
    };
    /// Adds the samples under what another one holds, at least one for each of its own; what lies outside is left out.
    void add(const placed_bitmap& other, const drawing_axes& axes);

protected:
    /// From sample 0, 0 to the end of the image in its units; valid while this lives and is not changed.
    /// \param colorIndex  as in the record, with `customColor` for 6
    VLPluginDecoration record(const VLAxis& x, const VLAxis& y, const char* name, std::uint32_t colorIndex,
                              std::uint32_t customColor);

private:
    void fill(const sample_span& columns, const sample_span& rows) noexcept;

    CSize image;
    std::vector<unsigned char> bits; ///< row 0 first, the lowest
    decoration_bitmap bitmap{};
};

} // namespace vldv::surface
