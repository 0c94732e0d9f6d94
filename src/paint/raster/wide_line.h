#pragma once
#include "paint/raster/line_pixels.h"
#include "paint/raster/scan_convert.h"

#include <QPolygonF>

namespace vldv::paint {

/// A line wider than a pixel through points in pixels, whose middles lie at halves.
/// \param style  ends and joins of the pen
line_spans wide_line(const QPolygonF& points, bool closed, const device_pen& pen, std::uint32_t style,
                     const CRect& bounds);

/// The line of one logical pixel where that is several pixels wide: like `thin_line`, drawn with that square nib.
line_spans nib_line(const QPolygonF& points, bool closed, const device_pen& pen, const CRect& bounds);

fixed_figure fixed_figure_of(const QPolygonF& polygon);

/// The toolkit's names for ends and joins of a pen.
Qt::PenCapStyle cap_of(std::uint32_t style) noexcept;
Qt::PenJoinStyle join_of(std::uint32_t style) noexcept;

} // namespace vldv::paint
