#pragma once
#include "platform/draw/DC.h"
#include "surface/figures/drawing_axes.h"
#include "view/axes/view_geometry.h"

namespace vldv::surface {

/// Draws what functions and modules have drawn over an image, group by group: points as squares, lines and curves,
/// bitmaps by the samples that are not 0, each in its colour; selected ones stand out. A text stands at the first
/// point.
void draw_decorations(CDC& dc, const document::decorations& drawings, const drawing_axes& axes,
                      const view::view_geometry& geometry);

/// The pixels of a display that a bitmap of samples covers, row 0 the lowest. Where a pixel shows several samples, one
/// that is not 0 is enough, so that thin lines stay whole.
/// \param place  of the bitmap, samples of the image
/// \param clip   pixels that are wanted, those of the display that it covers
CRgn mask_region(const document::decoration::element& mask, const CRect& place, const view::view_geometry& geometry,
                 const CRect& clip);

} // namespace vldv::surface
