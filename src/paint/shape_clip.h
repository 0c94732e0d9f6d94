#pragma once
#include "platform/draw/drawing.h"

#include <QPainterPath>
#include <QRegion>

namespace vldv::paint {

// For documents whose form has no clip: what lies outside is cut off before it is drawn.

/// The parts of lines that run inside a region. What is cut off at an edge ends there.
QPainterPath lines_inside(const QPainterPath& lines, const QRegion& region);
/// The part of a filled shape inside a region.
QPainterPath area_inside(const QPainterPath& shape, const QRegion& region);

/// The stripes of a hatch inside a shape, for viewers that show no patterns: a unit wide and as far apart as elsewhere.
QPainterPath hatch_inside(const QPainterPath& shape, hatch_style hatch, QPointF origin);

} // namespace vldv::paint
