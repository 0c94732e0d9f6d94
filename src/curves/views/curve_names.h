#pragma once
#include "platform/draw/drawing.h"
#include "platform/draw/geometry.h"

#include <span>
#include <string>

class CDC;

namespace vldv::curves {

/// How a curve is told from the others of a window.
struct named_curve {
    std::wstring name;
    colorEntry color = 0;
    bool isDotted = false;
};

/// A line of samples of the curves with their names, at the upper right of the pane; nothing where it has no room, or
/// where a curve has no name.
void draw_curve_names(CDC& dc, const CRect& pane, std::span<const named_curve> named);

} // namespace vldv::curves
