#pragma once
#include "surface/figures/selection_state.h"

namespace vldv::surface {

/// The samples between the corners of a drag, its last column and row inside.
CRect covered_rect(const selection_rect& drag) noexcept;
/// Joins the shape that a drag has drawn to the region as `combine` says and leaves the state ready for the next drag:
/// outside the image, and in its last column and row, nothing stays selected; without a pixel the selection is gone.
void finish_region(selection_state& state, const CRgn& drawn, CSize image);
/// Selects what is not selected, far beyond the image, so that a region that is moved later does not show an edge.
void invert_region(selection_state& state, CSize image);
/// The box of the selected region within the window on show; the whole image without one.
CRect selection_bounds(const selection_state& state, const CRect& sourceWindow, CSize image);

} // namespace vldv::surface
