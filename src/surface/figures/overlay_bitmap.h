#pragma once
#include "platform/draw/DC.h"

#include <cstddef>
#include <vector>

namespace vldv::surface {

/// An image's overlay as drawing surfaces take it, with 24 or 32 bits a pixel. Fewer are looked up in the overlay's
/// palette, or without one spread from black to white, and kept until `forget`.
class overlay_bitmap {
public:
    /// \param packed  header, palette and pixels in one block
    /// \return a bitmap over the block or over memory of this
    CBitmap of(const BITMAPINFOHEADER& packed);
    /// The overlay may be another now.
    void forget() noexcept { converted = nullptr; }

private:
    const BITMAPINFOHEADER* converted = nullptr; ///< what `pixels` were made of
    std::vector<std::byte> pixels;
};

} // namespace vldv::surface
