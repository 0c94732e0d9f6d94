#include "host/window/tiling.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <algorithm>
#include <cmath>

namespace vldv::host {

std::vector<QRect> tiles(int count, const QSize& area, bool vertically)
{
    constexpr int firstGrid = 4; // frames
    // Lanes run along the direction in which frames follow each other; the last ones take one frame more.
    const int lanes = count < firstGrid ? 1 : static_cast<int>(std::sqrt(count));
    const int across = vertically ? area.height() : area.width(), along = vertically ? area.width() : area.height();
    std::vector<QRect> out;
    for (int lane = 0; lane < lanes; ++lane) {
        const int inLane = (count + lane) / lanes;
        const int laneStart = across * lane / lanes, laneEnd = across * (lane + 1) / lanes;
        for (int i = 0; i < inLane; ++i) {
            const int start = along * i / inLane, end = along * (i + 1) / inLane;
            out.push_back(vertically ? QRect(start, laneStart, end - start, laneEnd - laneStart)
                                     : QRect(laneStart, start, laneEnd - laneStart, end - start));
        }
    }
    return out;
}

std::vector<QRect> cascaded(const std::vector<QSize>& sizes, const QSize& area)
{
    std::vector<QRect> out;
    for (const QSize& size : sizes) {
        const int shift = static_cast<int>(out.size() % cascadeLength) * cascadeStep;
        out.emplace_back(std::clamp(area.width() - size.width(), 0, shift),
                         std::clamp(area.height() - size.height(), 0, shift), size.width(), size.height());
    }
    return out;
}

void activate_neighbour(QMdiArea& area, int step)
{
    const QList<QMdiSubWindow*> frames = area.subWindowList(QMdiArea::CreationOrder);
    if (frames.isEmpty()) return;
    const auto at = frames.indexOf(area.activeSubWindow());
    const auto count = frames.size();
    area.setActiveSubWindow(frames[at < 0 ? 0 : (at + step + count) % count]);
}

} // namespace vldv::host
