#pragma once
#include <QRect>
#include <vector>

namespace vldv::host {

/// Places for `count` frames that cover an area: under each other, or beside each other with `vertically`; from four
/// frames on in a grid.
std::vector<QRect> tiles(int count, const QSize& area, bool vertically);

} // namespace vldv::host
