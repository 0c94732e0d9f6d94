#pragma once
#include "platform/draw/drawing.h"

namespace vldv::surface {

/// The two pens of a section's line: `under` paints, in white, exactly what `line` leaves out, so that the line is seen
/// on any picture.
struct section_pens {
    CPen line, under;
    bool operator==(const section_pens&) const = default;
};

/// \param style  0 solid, 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot
section_pens make_section_pens(int style, int width, colorEntry color);

} // namespace vldv::surface
