#pragma once
#include "platform/draw/Region.h"
#include "surface/figures/selection_state.h"
#include "surface/tools/cursor_world.h"

#include <string_view>

/// Boxes of what is drawn over the picture, client pixels; of nothing, empty.
namespace vldv::surface {

CRect inflated(CRect rect, int by);
void add(CRgn& area, const CRect& box);
CRect box_of(const std::vector<CPoint>& samples, const view::view_geometry& geometry);
/// With the handles at both ends.
CRect drag_area(const selection_rect& drag, const view::view_geometry& geometry);
/// The end of a drag, and so many pixels around it.
CRect end_area(const selection_rect& drag, const view::view_geometry& geometry, int reach);
/// A text in the legend's font that stands at a client point, moved into the display. \param alignment  of `text_align`
CRect text_area(CPoint client, std::wstring_view text, std::uint32_t alignment, const ICursorWorld& world);
/// The measurement, while one is shown.
void add_measure(CRgn& area, const selection_state& state, const ICursorWorld& world);

} // namespace vldv::surface
