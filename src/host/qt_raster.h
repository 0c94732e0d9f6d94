#pragma once
#include "platform/drawing.h"

#include <QPainter>

namespace host {

/// The composition that does what a raster operation of pens asks for.
QPainter::CompositionMode composition_of(int rop2) noexcept;
/// The same for blits and fills; `inverts` tells that the source has to be inverted first.
struct blit_composition {
    QPainter::CompositionMode mode;
    bool usesSource; ///< else the operation is of the destination, or a constant
};
blit_composition composition_of(raster_op3 operation) noexcept;

} // namespace host
