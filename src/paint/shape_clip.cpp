#include "paint/shape_clip.h"

#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

namespace vldv::paint {

namespace {

/// The stretch of a line between its ends, 0 to 1, that lies inside (after Liang and Barsky).
std::optional<std::pair<double, double>> stretch_inside(QPointF from, QPointF to, const QRectF& box)
{
    double first = 0.0, last = 1.0;
    const QPointF way = to - from;
    const auto cut = [&](double step, double room) { // the line leaves where step * t > room
        if (step == 0.0) return room >= 0.0;
        const double at = room / step;
        if (step > 0.0)
            last = std::min(last, at);
        else
            first = std::max(first, at);
        return first <= last;
    };
    if (!cut(-way.x(), from.x() - box.left()) || !cut(way.x(), box.right() - from.x()) ||
        !cut(-way.y(), from.y() - box.top()) || !cut(way.y(), box.bottom() - from.y()))
        return {};
    return std::pair(first, last);
}

/// Adds the pieces of a line through points that lie inside.
void add_pieces(const QPolygonF& line, const QRectF& box, QPainterPath& out)
{
    bool goesOn = false; // the last piece ended where the next one begins
    for (qsizetype i = 0; i + 1 < line.size(); ++i) {
        const QPointF from = line[i], way = line[i + 1] - from;
        const auto inside = stretch_inside(from, line[i + 1], box);
        if (!inside) {
            goesOn = false;
            continue;
        }
        if (!goesOn || inside->first > 0.0) out.moveTo(from + way * inside->first);
        out.lineTo(inside->second < 1.0 ? from + way * inside->second : line[i + 1]);
        goesOn = inside->second == 1.0;
    }
}

constexpr double hatchDistance = 8.0;

/// Adds stripes over a box, each of the points whose `slope` * x + `rise` * y differs from a multiple of the distance
/// by less than a unit.
void add_stripes(const QRectF& box, double slope, double rise, QPointF origin, QPainterPath& out)
{
    const double shift = slope * origin.x() + rise * origin.y();
    const auto valueAt = [&](double x, double y) { return slope * x + rise * y - shift; };
    const double corners[] = {valueAt(box.left(), box.top()), valueAt(box.right(), box.top()),
                              valueAt(box.left(), box.bottom()), valueAt(box.right(), box.bottom())};
    const auto [least, most] = std::minmax_element(std::begin(corners), std::end(corners));
    for (double at = std::floor(*least / hatchDistance) * hatchDistance; at <= *most; at += hatchDistance) {
        // Where the value is `at`: at one x for each y, or at one y for each x.
        const auto place = [&](double value, double along) {
            return slope == 0.0 ? QPointF(along, (value + shift) / rise)
                                : QPointF((value + shift - rise * along) / slope, along);
        };
        const double from = slope == 0.0 ? box.left() : box.top(), to = slope == 0.0 ? box.right() : box.bottom();
        out.addPolygon(QPolygonF({place(at, from), place(at, to), place(at + 1.0, to), place(at + 1.0, from)}));
        out.closeSubpath();
    }
}

bool is_whole(const QPainterPath& shape, const QRegion& region)
{
    return region.rectCount() == 1 && QRectF(region.boundingRect()).contains(shape.boundingRect());
}

} // namespace

QPainterPath lines_inside(const QPainterPath& lines, const QRegion& region)
{
    if (is_whole(lines, region)) return lines;
    QPainterPath out;
    const QList<QPolygonF> polygons = lines.toSubpathPolygons();
    for (const QRect& rect : region)
        for (const QPolygonF& line : polygons) add_pieces(line, rect, out);
    return out;
}

QPainterPath area_inside(const QPainterPath& shape, const QRegion& region)
{
    if (is_whole(shape, region)) return shape;
    QPainterPath inside;
    inside.addRegion(region);
    QPainterPath out = shape.intersected(inside);
    out.setFillRule(shape.fillRule());
    return out;
}

QPainterPath hatch_inside(const QPainterPath& shape, hatch_style hatch, QPointF origin)
{
    QPainterPath stripes;
    stripes.setFillRule(Qt::WindingFill); // crossings are filled
    const QRectF box = shape.boundingRect();
    if (hatch == HS_HORIZONTAL || hatch == HS_CROSS) add_stripes(box, 0.0, 1.0, origin, stripes);
    if (hatch == HS_VERTICAL || hatch == HS_CROSS) add_stripes(box, 1.0, 0.0, origin, stripes);
    if (hatch == HS_FDIAGONAL || hatch == HS_DIAGCROSS) add_stripes(box, 1.0, -1.0, origin, stripes);
    if (hatch == HS_BDIAGONAL || hatch == HS_DIAGCROSS) add_stripes(box, 1.0, 1.0, origin, stripes);
    return shape.intersected(stripes);
}

} // namespace vldv::paint
