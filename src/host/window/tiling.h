#pragma once
#include <QRect>
#include <vector>

class QMdiArea;

namespace vldv::host {

/// Places for `count` frames that cover an area: under each other, or beside each other with `vertically`; from four
/// frames on in a grid.
std::vector<QRect> tiles(int count, const QSize& area, bool vertically);

/// Corner of a frame in a cascade, which shows the captions of those behind it and begins anew after some.
QPoint cascaded(qsizetype number);

/// Activates the frame that was made after the active one (`step` 1) or before it (-1), in a circle.
void activate_neighbour(QMdiArea& area, int step);

} // namespace vldv::host
