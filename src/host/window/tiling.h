#pragma once
#include <QRect>
#include <vector>

class QMdiArea;

namespace vldv::host {

/// Places for `count` frames that cover an area: under each other, or beside each other with `vertically`; from four
/// frames on in a grid.
std::vector<QRect> tiles(int count, const QSize& area, bool vertically);

constexpr int cascadeStep = 28, cascadeLength = 10; ///< pixels; frames until a cascade begins anew

/// Places for frames of these sizes, the later ones in front of the earlier: each inside the area, as far as it fits.
std::vector<QRect> cascaded(const std::vector<QSize>& sizes, const QSize& area);

/// Activates the frame that was made after the active one (`step` 1) or before it (-1), in a circle.
void activate_neighbour(QMdiArea& area, int step);

} // namespace vldv::host
