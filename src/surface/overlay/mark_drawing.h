#pragma once
#include "platform/draw/DC.h"
#include "surface/figures/selection_state.h"
#include "view/axes/view_geometry.h"

namespace vldv::surface {

/// How marks look.
struct mark_style {
    enum shape { arrows = 0, ticks = 1 };
    int drawn = arrows;
    bool isNumbered = true;
    colorEntry text = 0xFFFFFF, background = 0; ///< of the numbers
};

/// The rectangle of a text that stands at `at` by `alignment`, moved into `inside`: right and bottom first, then left
/// and top. \return where the text has to stand for that
CPoint clamped_text(CPoint at, CSize extent, std::uint32_t alignment, int ascent, const CRect& inside) noexcept;

/// One mark without its number.
void draw_mark(CDC& dc, CPoint at, int shape);
/// The pixels that such a mark touches.
CRect mark_box(CPoint at, int shape);
/// All marks in order, numbered from 1.
void draw_marks(CDC& dc, const std::vector<CPoint>& marks, const view::view_geometry& geometry,
                const mark_style& style);
/// All curves, the first as the active one.
void draw_curves(CDC& dc, const std::vector<std::vector<CPoint>>& curves, const view::view_geometry& geometry);

} // namespace vldv::surface
