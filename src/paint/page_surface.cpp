#include "paint/page_surface.h"

#include "paint/memory_sink.h"
#include "paint/raster/pen_pattern.h"
#include "paint/raster/raster_surface.h"
#include "paint/raster/stretch.h"
#include "paint/raster/wide_line.h"
#include "paint/shape_clip.h"
#include "platform/draw/DC.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPaintEngine>
#include <QPainterPath>
#include <cmath>

namespace vldv::paint {

namespace {

constexpr double largestPagePicture = 1 << 24; ///< pixels

/// The colour that an operation makes which does not ask what is there.
QColor color_by(raster_op op, colorEntry color) { return QColor::fromRgb(QRgb(op.with(pixel_of(color)).flip)); }

QRegion region_of(const CRgn& region)
{
    std::vector<QRect> rects;
    for (const CRect& rect : region.rectangles()) rects.emplace_back(rect.left, rect.top, rect.Width(), rect.Height());
    QRegion out;
    out.setRects(rects.data(), static_cast<int>(rects.size()));
    return out;
}

QRectF rect_of(const CRect& rect) { return QRectF(rect.left, rect.top, rect.Width(), rect.Height()); }

template <class Point>
QPainterPath path_through(std::span<const Point> points, bool closed, double inset)
{
    QPainterPath out;
    QPolygonF polygon;
    for (const Point& point : points) polygon.append({point.x + inset, point.y + inset});
    out.addPolygon(polygon);
    if (closed) out.closeSubpath();
    return out;
}

QPen pen_of(const CPen& pen, const device_pen& device, const QColor& color)
{
    QPen out(color, device.width);
    out.setCapStyle(device.isThin ? Qt::FlatCap : cap_of(pen.style));
    out.setJoinStyle(device.isThin ? Qt::MiterJoin : join_of(pen.style));
    if (device.pattern.empty()) return out;
    QList<qreal> lengths; // in widths of the pen
    for (const double length : device.pattern) lengths.append(length / device.width);
    if (lengths.size() % 2 != 0) lengths += QList<qreal>(lengths);
    out.setDashPattern(lengths);
    return out;
}

Qt::BrushStyle style_of(hatch_style hatch) noexcept
{
    switch (hatch) {
    case HS_HORIZONTAL:
        return Qt::HorPattern;
    case HS_VERTICAL:
        return Qt::VerPattern;
    case HS_FDIAGONAL:
        return Qt::FDiagPattern;
    case HS_BDIAGONAL:
        return Qt::BDiagPattern;
    case HS_CROSS:
        return Qt::CrossPattern;
    case HS_DIAGCROSS:
        return Qt::DiagCrossPattern;
    }
    return Qt::SolidPattern;
}

CRect around(const QRectF& rect, double margin)
{
    constexpr double limit = 1 << 30;
    const auto edge = [&](double at) { return static_cast<int>(std::clamp(at, -limit, limit)); };
    return {edge(std::floor(rect.left() - margin)), edge(std::floor(rect.top() - margin)),
            edge(std::ceil(rect.right() + margin)), edge(std::ceil(rect.bottom() + margin))};
}

/// Room that a line takes on either side of its middle, corners included.
double margin_of(const platform::dc_state& state)
{
    constexpr double longestMiter = 5.0;
    return 1.0 + longestMiter * device_pen_of(state.pen, scale_of(state), 1.0).width;
}

/// The part of a bitmap upright, after the operation; and how far it begins inside the part.
QImage upright_part(const blit& picture, QPoint& begin)
{
    const pixel_rows source = rows_of(picture.bitmap);
    if (!source.top) return {};
    const CSize size = picture.from.Size();
    stretched_picture plain(source, picture.from, size, false, false, false);
    const CRect part = plain.choose(CRect({}, size));
    if (part.IsRectEmpty()) return {};
    begin = {part.left, part.top};
    QImage out(part.Width(), part.Height(), QImage::Format_RGB32);
    for (int y = 0; y < part.Height(); ++y) {
        auto* const row = reinterpret_cast<std::uint32_t*>(out.scanLine(y));
        plain.row(part.top + y, row);
        for (int x = 0; x < part.Width(); ++x) row[x] = 0xFF000000u | picture.op.with(row[x]).flip;
    }
    return out;
}

/// The pixels of `after` that differ from those before; the others are clear.
QImage changed_pixels(const QImage& before, const QImage& after)
{
    QImage out(after.size(), QImage::Format_ARGB32);
    for (int y = 0; y < out.height(); ++y) {
        const auto* const old = reinterpret_cast<const QRgb*>(before.constScanLine(y));
        const auto* const made = reinterpret_cast<const QRgb*>(after.constScanLine(y));
        auto* const row = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < out.width(); ++x)
            row[x] = ((old[x] ^ made[x]) & 0x00FFFFFFu) != 0 ? made[x] | 0xFF000000u : 0u;
    }
    return out;
}

} // namespace

page_surface::page_surface(QPainter& painter_)
    : painter(painter_), isSvg(painter_.paintEngine()->type() == QPaintEngine::SVG)
{
}

CSize page_surface::size() const { return {painter.device()->width(), painter.device()->height()}; }

void page_surface::draw(const std::optional<CRgn>& clip, drawing what)
{
    std::optional<QRegion> region;
    if (clip) region = region_of(*clip);
    if (region && region->isEmpty()) return;
    drawn.push_back([region, what = std::move(what)](QPainter& on) {
        on.save();
        on.setRenderHint(QPainter::LosslessImageRendering);
        if (region) on.setClipRegion(*region, Qt::IntersectClip);
        what(on);
        on.restore();
    });
    drawn.back()(painter);
}

void page_surface::onPicture(const platform::dc_state& state, const CRect& bounds,
                             const std::function<void(raster_surface&)>& operation)
{
    CRect area;
    if (!area.IntersectRect(bounds, CRect({}, size()))) return;
    if (state.clip && !area.IntersectRect(area, state.clip->GetRgnBox())) return;
    // All that was drawn before is drawn once more on a picture of the area, where the operation finds what it asks
    // for. Only the pixels that it changes go back to the page, so that everything else there stays lines and text in
    // full resolution. The picture is made coarser where the area has more dots than a picture may have.
    const double dots = double{1} * area.Width() * area.Height();
    const double ratio = std::min(1.0, std::sqrt(largestPagePicture / dots));
    QImage before(static_cast<int>(std::ceil(area.Width() * ratio)), static_cast<int>(std::ceil(area.Height() * ratio)),
                  QImage::Format_RGB32);
    before.fill(Qt::white);
    QPainter now(&before);
    now.scale(ratio, ratio);
    now.translate(-area.left, -area.top);
    for (const drawing& one : drawn) one(now);
    now.end();
    QImage after = before.copy();
    const pixel_rows rows{reinterpret_cast<std::byte*>(after.bits()), after.bytesPerLine(), after.width(),
                          after.height(), 4};
    raster_surface picture(std::make_unique<memory_sink>(rows), ratio, area.TopLeft());
    operation(picture);
    const QRectF place(area.left, area.top, after.width() / ratio, after.height() / ratio);
    draw(std::nullopt, [place, image = changed_pixels(before, after)](QPainter& on) { on.drawImage(place, image); });
}

void page_surface::strokePath(const platform::dc_state& state, const QPainterPath& whole)
{
    if (state.pen.isNull()) return;
    const QPainterPath path = isSvg && state.clip ? lines_inside(whole, region_of(*state.clip)) : whole;
    if (path.isEmpty()) return;
    const raster_op op = raster_op_of(state.rop2);
    const device_pen device = device_pen_of(state.pen, scale_of(state), 1.0);
    if (device.showsGaps && state.backMode == OPAQUE) {
        CPen solid = state.pen;
        solid.style &= ~std::uint32_t{PS_STYLE_MASK};
        device_pen plain = device;
        plain.pattern.clear();
        draw(state.clip, [path, pen = pen_of(solid, plain, color_by(op, state.backColor))](QPainter& on) {
            on.strokePath(path, pen);
        });
    }
    draw(state.clip, [path, pen = pen_of(state.pen, device, color_by(op, state.pen.color))](QPainter& on) {
        on.strokePath(path, pen);
    });
}

void page_surface::fillPath(const platform::dc_state& state, const QPainterPath& whole, const fill_tool& tool)
{
    const bool asksBrush = tool.op.readsSource();
    if (asksBrush && tool.brush.kind == CBrush::fill::none) return;
    const QPainterPath path = isSvg && state.clip ? area_inside(whole, region_of(*state.clip)) : whole;
    if (path.isEmpty()) return;
    const bool isHatch = asksBrush && tool.brush.kind == CBrush::fill::hatch;
    if (isHatch && state.backMode == OPAQUE)
        draw(state.clip,
             [path, color = color_by(tool.op, state.backColor)](QPainter& on) { on.fillPath(path, color); });
    const QColor color = color_by(tool.op, tool.brush.color);
    if (isHatch && isSvg) {
        const QPointF origin(state.brushOrigin.x, state.brushOrigin.y);
        draw({}, [stripes = hatch_inside(path, tool.brush.hatch, origin), color](QPainter& on) {
            on.fillPath(stripes, color);
        });
        return;
    }
    const QBrush brush(color, isHatch ? style_of(tool.brush.hatch) : Qt::SolidPattern);
    draw(state.clip, [path, brush, origin = QPoint(state.brushOrigin.x, state.brushOrigin.y)](QPainter& on) {
        on.setBrushOrigin(origin);
        on.fillPath(path, brush);
    });
}

void page_surface::lines(const platform::dc_state& state, std::span<const CPoint> points, bool closed)
{
    if (state.pen.isNull() || points.empty()) return;
    // Coordinates name pixels, whose middles a line runs through: half a unit from the corner that they name.
    const QPainterPath path = path_through(points, closed, 0.5);
    if (raster_op_of(state.rop2).readsDestination())
        return onPicture(state, around(path.boundingRect(), margin_of(state)),
                         [&](raster_surface& picture) { picture.lines(state, points, closed); });
    strokePath(state, path);
}

void page_surface::fineLines(const platform::dc_state& state, std::span<const fine_point> points)
{
    if (raster_op_of(state.rop2).readsDestination()) {
        std::vector<CPoint> nearest;
        for (const auto& [x, y] : points) nearest.push_back({qRound(x), qRound(y)});
        return lines(state, nearest, false);
    }
    strokePath(state, path_through(points, false, 0.5));
}

void page_surface::polygons(const platform::dc_state& state, std::span<const std::vector<CPoint>> figures)
{
    QPainterPath fill, edges;
    for (const std::vector<CPoint>& figure : figures) {
        fill.addPath(path_through(std::span(figure), true, 0.0));
        edges.addPath(path_through(std::span(figure), true, 0.5));
    }
    if (raster_op_of(state.rop2).readsDestination())
        return onPicture(state, around(edges.boundingRect(), margin_of(state)),
                         [&](raster_surface& picture) { picture.polygons(state, figures); });
    fill.setFillRule(state.polyFill == WINDING ? Qt::WindingFill : Qt::OddEvenFill);
    if (state.brush.kind != CBrush::fill::none) fillPath(state, fill, {state.brush, raster_op_of(state.rop2)});
    strokePath(state, edges);
}

void page_surface::rectangle(const platform::dc_state& state, const CRect& rect)
{
    if (rect.IsRectEmpty()) return;
    const raster_op op = raster_op_of(state.rop2);
    if (op.readsDestination())
        return onPicture(state, around(rect_of(rect), margin_of(state)),
                         [&](raster_surface& picture) { picture.rectangle(state, rect); });
    if (state.brush.kind != CBrush::fill::none) fill(state, CRgn(rect), {state.brush, op});
    const CPoint corners[] = {
        rect.TopLeft(), {rect.right - 1, rect.top}, {rect.right - 1, rect.bottom - 1}, {rect.left, rect.bottom - 1}};
    lines(state, corners, true);
}

void page_surface::ellipse(const platform::dc_state& state, const CRect& rect)
{
    if (rect.IsRectEmpty()) return;
    const raster_op op = raster_op_of(state.rop2);
    if (op.readsDestination())
        return onPicture(state, around(rect_of(rect), margin_of(state)),
                         [&](raster_surface& picture) { picture.ellipse(state, rect); });
    QPainterPath whole, edge;
    whole.addEllipse(rect_of(rect));
    edge.addEllipse(rect_of(rect).adjusted(0.5, 0.5, -0.5, -0.5));
    if (state.brush.kind != CBrush::fill::none) fillPath(state, whole, {state.brush, op});
    strokePath(state, edge);
}

void page_surface::fill(const platform::dc_state& state, const CRgn& region, const fill_tool& tool)
{
    if (tool.op.readsDestination())
        return onPicture(state, region.GetRgnBox(),
                         [&](raster_surface& picture) { picture.fill(state, region, tool); });
    QPainterPath path;
    for (const CRect& rect : region.rectangles()) path.addRect(rect_of(rect));
    fillPath(state, path, tool);
}

void page_surface::pixels(const platform::dc_state& state, const blit& picture)
{
    const QTransform turn = turn_of(picture);
    if (picture.op.readsDestination())
        return onPicture(state, around(turn.mapRect(QRectF(0, 0, picture.from.Width(), picture.from.Height())), 1.0),
                         [&](raster_surface& raster) { raster.pixels(state, picture); });
    QPoint begin;
    const QImage image = upright_part(picture, begin);
    if (image.isNull()) return;
    draw(state.clip, [image, begin, turn, isSmooth = state.stretchMode == HALFTONE](QPainter& on) {
        on.setRenderHint(QPainter::SmoothPixmapTransform, isSmooth);
        on.setTransform(turn, true);
        on.drawImage(begin, image);
    });
}

void page_surface::text(const platform::dc_state& state, const text_run& run)
{
    const QColor color = QColor::fromRgb(QRgb(pixel_of(state.textColor)));
    if (isSvg && state.clip) {
        // Text that an edge runs through stays whole.
        const QTransform turn = QTransform::fromTranslate(run.at.x, run.at.y).rotate(run.angle);
        const QRectF place = turn.mapRect(QFontMetricsF(run.font).boundingRect(run.text));
        if (!region_of(*state.clip).intersects(place.toAlignedRect())) return;
    }
    draw(state.clip,
         [text = run.text, font = run.font, color, angle = run.angle, at = QPointF(run.at.x, run.at.y)](QPainter& on) {
             on.translate(at);
             on.rotate(angle);
             on.setFont(font);
             on.setPen(color);
             on.drawText(QPointF(0.0, 0.0), text);
         });
}

} // namespace vldv::paint
