#include "paint/raster/wide_line.h"

#include <QPainterPath>
#include <QPainterPathStroker>
#include <cmath>

namespace vldv::paint {

namespace {

fixed_point fixed_of(const QPointF& point)
{
    constexpr double limit = 1 << 30;
    const auto fixed = [&](double at) {
        return static_cast<std::int64_t>(std::llround(std::clamp(at, -limit, limit) * double{fixedOne}));
    };
    return {fixed(point.x()), fixed(point.y())};
}

std::vector<platform::pixel_span> outline_pixels(const QPainterPath& line, bool closed, const device_pen& pen,
                                                 std::uint32_t style, const CRect& bounds)
{
    QPainterPathStroker stroker;
    stroker.setWidth(pen.width);
    stroker.setCapStyle(closed ? Qt::FlatCap : cap_of(style));
    stroker.setJoinStyle(join_of(style));
    std::vector<fixed_figure> figures;
    for (const QPolygonF& polygon : stroker.createStroke(line).toSubpathPolygons())
        figures.push_back(fixed_figure_of(polygon));
    return scan_convert(figures, true, bounds);
}

double distance(const QPointF& a, const QPointF& b) { return std::hypot(b.x() - a.x(), b.y() - a.y()); }
QPointF along(const QPointF& a, const QPointF& b, double share) { return share >= 1.0 ? b : a + (b - a) * share; }

/// Calls `piece(on, from, to, joins)` for the visible pieces of the pattern; `joins` when one goes on from the last.
template <typename F>
void each_piece(const QPolygonF& points, bool closed, const device_pen& pen, const CRect& bounds, F&& piece)
{
    dash_walk dashes(pen.pattern);
    bool wasOn = false;
    QPointF end;
    for (qsizetype i = 0; i + (closed ? 0 : 1) < points.size(); ++i) {
        const QPointF from = points[i], to = points[(i + 1) % points.size()];
        const double length = distance(from, to);
        if (!(length > 0.0)) continue;
        const visible_part part =
            find_visible_part(from.x(), from.y(), to.x(), to.y(), length, bounds, 2.0 * pen.width + 2.0);
        dashes.advance(length, part.first, part.last, [&](bool on, double begin, double until) {
            const QPointF start = along(from, to, begin / length);
            piece(on, start, along(from, to, until / length), on == wasOn && start == end);
            wasOn = on;
            end = along(from, to, until / length);
        });
    }
}

} // namespace

fixed_figure fixed_figure_of(const QPolygonF& polygon)
{
    fixed_figure out;
    out.reserve(static_cast<std::size_t>(polygon.size()));
    for (const QPointF& point : polygon) out.push_back(fixed_of(point));
    return out;
}

Qt::PenCapStyle cap_of(std::uint32_t style) noexcept
{
    const std::uint32_t cap = style & PS_ENDCAP_MASK;
    return cap == PS_ENDCAP_FLAT ? Qt::FlatCap : cap == PS_ENDCAP_SQUARE ? Qt::SquareCap : Qt::RoundCap;
}

Qt::PenJoinStyle join_of(std::uint32_t style) noexcept
{
    const std::uint32_t join = style & PS_JOIN_MASK;
    return join == PS_JOIN_BEVEL ? Qt::BevelJoin : join == PS_JOIN_MITER ? Qt::MiterJoin : Qt::RoundJoin;
}

line_spans wide_line(const QPolygonF& points, bool closed, const device_pen& pen, std::uint32_t style,
                     const CRect& bounds)
{
    line_spans out;
    if (points.isEmpty()) return out;
    QPainterPath line, gaps;
    if (pen.pattern.empty()) {
        line.addPolygon(points);
        if (closed) line.closeSubpath();
        out.line = outline_pixels(line, closed, pen, style, bounds);
        return out;
    }
    each_piece(points, closed, pen, bounds, [&](bool on, const QPointF& from, const QPointF& to, bool joins) {
        QPainterPath& path = on ? line : gaps;
        if (!joins) path.moveTo(from);
        path.lineTo(to);
    });
    out.line = outline_pixels(line, false, pen, style, bounds);
    out.gaps = outline_pixels(gaps, false, pen, PS_ENDCAP_FLAT | (style & PS_JOIN_MASK), bounds);
    return out;
}

line_spans nib_line(const QPolygonF& points, bool closed, const device_pen& pen, const CRect& bounds)
{
    if (points.isEmpty()) return {};
    std::vector<fixed_figure> line, gaps;
    const auto add = [&](const QPointF& a, const QPointF& b, const QPointF& way, bool on) {
        // Half a nib back along the line: it begins with its first pixel and leaves the last one out.
        const QPointF back = way * (pen.width / 2.0), side(-back.y(), back.x());
        (on ? line : gaps)
            .push_back({fixed_of(a - back + side), fixed_of(b - back + side), fixed_of(b - back - side),
                        fixed_of(a - back - side)});
    };
    bool hasLength = false;
    for (const QPointF& point : points) hasLength |= point != points[0];
    each_piece(points, closed, pen, bounds, [&](bool on, const QPointF& from, const QPointF& to, bool) {
        const double length = distance(from, to);
        if (length > 0.0) add(from, to, (to - from) / length, on);
    });
    if (closed && !hasLength) add(points[0], points[0] + QPointF(pen.width, 0.0), {1.0, 0.0}, true);
    // All quadrilaterals turn the same way, so that going round once or more is lying in any of them.
    return {scan_convert(line, true, bounds), scan_convert(gaps, true, bounds), {}};
}

} // namespace vldv::paint
