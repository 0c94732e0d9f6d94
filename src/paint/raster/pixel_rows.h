#pragma once
#include "platform/draw/bitmap.h"

#include <cstddef>
#include <cstdint>

struct CBitmap;

namespace vldv::paint {

/// Pixels in memory, addressed from the upper left corner whichever way their rows run: here alone they are flipped.
struct pixel_rows {
    std::byte* top = nullptr;
    std::ptrdiff_t stride = 0; ///< bytes from a row to the one below it on the screen
    int width = 0, height = 0;
    int bytes = 0; ///< of a pixel: 3 or 4; blue, green, red and one that is not touched

    std::byte* row(int y) const noexcept { return top + y * stride; }
};

/// Of a bitmap with 24 or 32 bits; no pixels for any other.
pixel_rows rows_of(const CBitmap& bitmap) noexcept;

} // namespace vldv::paint
