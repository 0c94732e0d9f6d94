#pragma once
#include "base/VLAxis.h"
#include "document/plugin_decoration.h"
#include "platform/draw/geometry.h"

#include <span>
#include <vector>

namespace vldv::surface {

/// A bitmap over a whole image, 1 where something runs: what a drawing of samples is kept as.
class sample_mask {
public:
    explicit sample_mask(CSize image_);
    /// Samples outside are passed over.
    void set(CPoint at) noexcept;
    std::span<const unsigned char> bytes() const noexcept { return bits; }
    /// Takes over what another holds. \return false, with this as it was, for one of another size
    bool assign(CSize size, std::span<const unsigned char> other);

protected:
    /// From sample 0, 0 to the end of the image in its units; valid while this lives and is not changed.
    /// \param colorIndex  as in the record, with `customColor` for 6
    VLPluginDecoration record(const VLAxis& x, const VLAxis& y, const char* name, std::uint32_t colorIndex,
                              std::uint32_t customColor);

private:
    CSize image;
    std::vector<unsigned char> bits; ///< row 0 first, the lowest
    decoration_bitmap bitmap{};
};

} // namespace vldv::surface
