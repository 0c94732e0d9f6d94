#include "host/window/tiling.h"

#include <QMdiArea>
#include <QMdiSubWindow>
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

QPoint cascaded(qsizetype number)
{
    constexpr int step = 28, length = 10; // pixels; frames
    const int shift = static_cast<int>(number % length) * step;
    return {shift, shift};
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
