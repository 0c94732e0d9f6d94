#include "paint/raster/raster_surface.h"

#include "paint/raster/hatch.h"
#include "paint/raster/scan_convert.h"
#include "paint/raster/wide_line.h"

#include <QPainterPath>
#include <QtMath>
#include <cmath>

namespace vldv::paint {

namespace {

/// Corners of a polygon that no pixel tells from the ellipse, going round once.
QPolygonF ellipse_points(const QRectF& rect)
{
    QPainterPath path;
    path.addEllipse(rect);
    QPolygonF out = path.toSubpathPolygons().value(0);
    if (!out.isEmpty()) out.removeLast();
    return out;
}

/// The pixels of a shape without dents, one span a row, that lie within `width` rows or columns of its edge.
std::vector<platform::pixel_span> inner_edge(const std::vector<platform::pixel_span>& shape, int width)
{
    std::vector<platform::pixel_span> out;
    const auto reach = static_cast<std::size_t>(width);
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const platform::pixel_span row = shape[i];
        if (i < reach || i + reach >= shape.size()) {
            out.push_back(row);
            continue;
        }
        // A pixel lies inside when the rows `width` above and below cover it, and when it is that far from both ends of
        // its own row. A shape without dents covers all rows between then, so that two of them tell enough.
        const platform::pixel_span &above = shape[i - reach], &below = shape[i + reach];
        const int left = std::max({row.left + width, above.left, below.left});
        const int right = std::min({row.right - width, above.right, below.right});
        if (left >= right) {
            out.push_back(row);
        } else {
            out.push_back({row.y, row.left, left});
            out.push_back({row.y, right, row.right});
        }
    }
    return out;
}

} // namespace

raster_surface::raster_surface(std::unique_ptr<pixel_sink> sink_, double ratio_, CPoint origin_)
    : sink(std::move(sink_)), pixelsAUnit(ratio_), origin(origin_)
{
}

CSize raster_surface::size() const
{
    const CSize all = sink->size();
    return {static_cast<int>(std::lround(all.cx / pixelsAUnit)), static_cast<int>(std::lround(all.cy / pixelsAUnit))};
}

clip_bands raster_surface::clipOf(const platform::dc_state& state) const
{
    return {state.clip, sink->size(), origin, pixelsAUnit};
}

void raster_surface::paint(const spans& area, std::span<const CRect> uprights, colorEntry color, raster_op op,
                           const clip_bands& clip)
{
    std::vector<CRect> rects;
    const auto add = [&](const CRect& rect) { clip.each(rect, [&](const CRect& part) { rects.push_back(part); }); };
    for (const CRect& each : uprights) add(each);
    // Steep lines and upright sides are one rectangle, not one a row.
    CRect open;
    for (const platform::pixel_span& span : area) {
        const bool sameColumns = span.left == open.left && span.right == open.right;
        if (sameColumns && span.y == open.bottom) {
            ++open.bottom;
        } else if (sameColumns && span.y == open.top - 1) {
            --open.top;
        } else {
            add(open);
            open = {span.left, span.y, span.right, span.y + 1};
        }
    }
    add(open);
    sink->fill(rects, color, op);
}

void raster_surface::brushOver(const platform::dc_state& state, const spans& area, const fill_tool& tool,
                               const clip_bands& clip)
{
    const bool asksBrush = tool.op.readsSource();
    if (asksBrush && tool.brush.kind == CBrush::fill::none) return;
    if (!asksBrush || tool.brush.kind == CBrush::fill::solid) return paint(area, {}, tool.brush.color, tool.op, clip);
    spans visible;
    for (const platform::pixel_span& span : area)
        clip.each({span.left, span.y, span.right, span.y + 1},
                  [&](const CRect& part) { visible.push_back({part.top, part.left, part.right}); });
    const CRect start = scaled_rect(CRect(state.brushOrigin, CSize{}), origin, pixelsAUnit);
    const hatched_spans split = split_by_hatch(visible, tool.brush.hatch, start.TopLeft(), std::max(1.0, pixelsAUnit));
    if (state.backMode == OPAQUE) paint(split.between, {}, state.backColor, tool.op, clip);
    paint(split.lines, {}, tool.brush.color, tool.op, clip);
}

void raster_surface::paintLine(const platform::dc_state& state, const clip_bands& clip, line_spans& covered,
                               bool showsGaps)
{
    const raster_op op = raster_op_of(state.rop2);
    if (!op.isIdempotent()) {
        for (const CRect& each : covered.uprights)
            for (int y = each.top; y < each.bottom; ++y) covered.line.push_back({y, each.left, each.right});
        covered.uprights.clear();
        join_spans(covered.line);
        join_spans(covered.gaps);
    }
    if (showsGaps && state.backMode == OPAQUE) paint(covered.gaps, {}, state.backColor, op, clip);
    paint(covered.line, covered.uprights, state.pen.color, op, clip);
}

/// A line whose middle runs through the points, in pixels.
void raster_surface::strokeThrough(const platform::dc_state& state, const clip_bands& clip, const QPolygonF& middles,
                                   bool closed)
{
    const device_pen pen = device_pen_of(state.pen, scale_of(state), pixelsAUnit);
    line_spans covered;
    if (!pen.isThin) {
        covered = wide_line(middles, closed, pen, state.pen.style, clip.box());
    } else if (pixelsAUnit >= 1.5) {
        covered = nib_line(middles, closed, pen, clip.box());
    } else {
        std::vector<CPoint> pixels;
        pixels.reserve(static_cast<std::size_t>(middles.size()));
        for (const QPointF& point : middles) pixels.push_back({qFloor(point.x()), qFloor(point.y())});
        covered = thin_line(pixels, closed, pen, clip.box());
    }
    paintLine(state, clip, covered, pen.showsGaps);
}

void raster_surface::lines(const platform::dc_state& state, std::span<const CPoint> points, bool closed)
{
    if (state.pen.isNull()) return;
    const clip_bands clip = clipOf(state);
    if (clip.box().IsRectEmpty()) return;
    QPolygonF middles;
    middles.reserve(static_cast<qsizetype>(points.size()));
    for (const CPoint point : points)
        middles.append({(double{1} * point.x - origin.x + 0.5) * pixelsAUnit,
                        (double{1} * point.y - origin.y + 0.5) * pixelsAUnit});
    strokeThrough(state, clip, middles, closed);
}

void raster_surface::polygons(const platform::dc_state& state, std::span<const std::vector<CPoint>> figures)
{
    const clip_bands clip = clipOf(state);
    if (clip.box().IsRectEmpty()) return;
    if (state.brush.kind != CBrush::fill::none) {
        const double scale = pixelsAUnit * double{fixedOne};
        std::vector<fixed_figure> corners;
        for (const std::vector<CPoint>& figure : figures) {
            fixed_figure& out = corners.emplace_back();
            for (const CPoint point : figure)
                out.push_back({std::llround((double{1} * point.x - origin.x) * scale),
                               std::llround((double{1} * point.y - origin.y) * scale)});
        }
        brushOver(state, scan_convert(corners, state.polyFill == WINDING, clip.box()),
                  {state.brush, raster_op_of(state.rop2)}, clip);
    }
    for (const std::vector<CPoint>& figure : figures) lines(state, figure, true);
}

void raster_surface::rectangle(const platform::dc_state& state, const CRect& rect)
{
    if (rect.IsRectEmpty()) return;
    if (state.brush.kind != CBrush::fill::none) fill(state, CRgn(rect), {state.brush, raster_op_of(state.rop2)});
    const CPoint corners[] = {
        rect.TopLeft(), {rect.right - 1, rect.top}, {rect.right - 1, rect.bottom - 1}, {rect.left, rect.bottom - 1}};
    lines(state, corners, true);
}

void raster_surface::ellipse(const platform::dc_state& state, const CRect& rect)
{
    const clip_bands clip = clipOf(state);
    if (rect.IsRectEmpty() || clip.box().IsRectEmpty()) return;
    const CRect place = scaled_rect(rect, origin, pixelsAUnit);
    const int nib = std::max(1, static_cast<int>(std::lround(pixelsAUnit)));
    const spans inside = platform::ellipse_spans(place, clip.box().top - nib, clip.box().bottom + nib);
    if (state.brush.kind != CBrush::fill::none) brushOver(state, inside, {state.brush, raster_op_of(state.rop2)}, clip);
    if (state.pen.isNull()) return;
    const device_pen pen = device_pen_of(state.pen, scale_of(state), pixelsAUnit);
    // A thin outline is the edge of the very pixels that are filled, so that nothing shows between the two.
    if (pen.isThin && pen.pattern.empty()) {
        line_spans edge{inner_edge(inside, nib), {}, {}};
        return paintLine(state, clip, edge, false);
    }
    // The middle of the pen runs half a unit inside the sides.
    const double inset = pixelsAUnit / 2.0;
    strokeThrough(state, clip,
                  ellipse_points({place.left + inset, place.top + inset, place.Width() - 2.0 * inset,
                                  place.Height() - 2.0 * inset}),
                  true);
}

void raster_surface::fill(const platform::dc_state& state, const CRgn& region, const fill_tool& tool)
{
    const clip_bands clip = clipOf(state);
    const bool asksBrush = tool.op.readsSource();
    if (asksBrush && tool.brush.kind == CBrush::fill::none) return;
    std::vector<CRect> rects;
    for (const CRect& rect : region.rectangles())
        clip.each(scaled_rect(rect, origin, pixelsAUnit), [&](const CRect& part) { rects.push_back(part); });
    if (!asksBrush || tool.brush.kind == CBrush::fill::solid) return sink->fill(rects, tool.brush.color, tool.op);
    spans area;
    for (const CRect& rect : rects)
        for (int y = rect.top; y < rect.bottom; ++y) area.push_back({y, rect.left, rect.right});
    brushOver(state, area, tool, clip);
}

} // namespace vldv::paint
