#pragma once
#include "platform/draw/geometry.h"

#include <cstdint>
#include <string>

class CDC;
class CDCView;

namespace vldv::view {

/// Where and how the bar of known length is drawn.
struct scale_mark_style {
    bool isHorizontal = false; ///< and measures X; else Y
    int position = 2;          ///< bit 0: bottom, bit 1: right
    double margin = 0.05;      ///< of the display, on each side
    double size = 1000.0;      ///< wanted length, nm; 0: none is wanted
    int thickness = 2;         ///< pixels
    double share = 0.75;       ///< of the span, where the wanted length will not do
};

/// The length of a bar in the units of `span`: as wanted where that can be expressed, fits between the margins and is
/// at least 1 % of the span; otherwise a share of the span. Rounded down to one significant digit; 0 for none.
double scale_bar_length(double span, const char* units, double wantedNm, double margin, double share = 0.75);

/// Draws bar and label over the picture.
/// \param span, units  length of the displayed side that is measured
void draw_scale_mark(CDCView& view, CDC& dc, const CRect& display, double span, const std::string& units,
                     const scale_mark_style& style);

} // namespace vldv::view
