#include "paint/QtDC.h"

#include "paint/memory_sink.h"
#include "paint/page_surface.h"
#include "paint/painter_sink.h"
#include "paint/raster/raster_surface.h"
#include "paint/resolved_font.h"

#include <QPagedPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <cmath>
#include <numbers>

namespace vldv::paint {

namespace {

bool has_pixels(const QPainter& painter)
{
    const QPaintEngine::Type type = painter.paintEngine()->type();
    return type == QPaintEngine::Raster || type == QPaintEngine::OpenGL2;
}

/// Corners of a rectangle that a turning map takes elsewhere.
std::vector<CPoint> corners_of(const CRect& rect)
{
    return {rect.TopLeft(), {rect.right, rect.top}, rect.BottomRight(), {rect.left, rect.bottom}};
}

} // namespace

CQtDC::CQtDC(QPaintDevice& device)
    : painter(std::make_unique<QPainter>(&device)), dpi{device.logicalDpiX(), device.logicalDpiY()}
{
    if (!painter->isActive()) return;
    if (has_pixels(*painter))
        surface =
            std::make_unique<raster_surface>(std::make_unique<painter_sink>(*painter), device.devicePixelRatioF());
    else
        surface = std::make_unique<page_surface>(*painter);
}

CQtDC::CQtDC(CSize dpi_) : dpi(dpi_) {}

CQtDC::~CQtDC() = default;

bool CQtDC::newPage()
{
    auto* const pages = painter ? dynamic_cast<QPagedPaintDevice*>(painter->device()) : nullptr;
    auto* const page = dynamic_cast<page_surface*>(surface.get());
    if (!pages || !page || !pages->newPage()) return false;
    page->forget();
    return true;
}

std::unique_ptr<CDC> CQtDC::CreateCompatibleDC() { return std::make_unique<CQtDC>(dpi); }
CSize CQtDC::deviceSize() const { return surface ? surface->size() : CDC::deviceSize(); }
bool CQtDC::IsPrinting() const { return surface && surface->isPage(); }

void CQtDC::bitmapSelected()
{
    if (painter) return;
    surface.reset();
    const pixel_rows rows = selectedBitmap() ? rows_of(*selectedBitmap()) : pixel_rows();
    if (rows.top) surface = std::make_unique<raster_surface>(std::make_unique<memory_sink>(rows), 1.0);
}

std::vector<CPoint> CQtDC::toUnits(std::span<const CPoint> points) const
{
    std::vector<CPoint> out;
    out.reserve(points.size());
    for (const CPoint point : points) out.push_back(LPtoDP(point));
    return out;
}

CRgn CQtDC::toUnits(const CRgn& region) const
{
    const XFORM map = toDevice();
    // Most maps only move: the bands of the region then move as they are, and no rectangle has to be united anew.
    const bool isMove = map.isAxisAligned() && map.m11 == 1.0 && map.m22 == 1.0;
    if (!isMove) return region.transformed(map);
    CRgn moved(region);
    const CPoint by = LPtoDP(CPoint{});
    moved.OffsetRgn(by.x, by.y);
    return moved;
}

void CQtDC::strokeLines(std::span<const CPoint> points, bool closed)
{
    if (surface) surface->lines(state(), toUnits(points), closed);
}

void CQtDC::strokeFine(std::span<const fine_point> points)
{
    auto* const page = dynamic_cast<page_surface*>(surface.get());
    if (!page) return CDC::strokeFine(points);
    const XFORM map = toDevice();
    std::vector<fine_point> units;
    units.reserve(points.size());
    for (const auto& [x, y] : points)
        units.push_back({x * map.m11 + y * map.m21 + map.dx, x * map.m12 + y * map.m22 + map.dy});
    page->fineLines(state(), units);
}

void CQtDC::paintPolygons(std::span<const std::vector<CPoint>> figures)
{
    if (!surface) return;
    std::vector<std::vector<CPoint>> units;
    for (const std::vector<CPoint>& figure : figures) units.push_back(toUnits(figure));
    surface->polygons(state(), units);
}

void CQtDC::paintRectangle(const CRect& rect)
{
    if (!surface) return;
    if (toDevice().isAxisAligned()) return surface->rectangle(state(), LPtoDP(rect));
    const std::vector<CPoint> corners = toUnits(corners_of(rect));
    surface->polygons(state(), {&corners, 1});
}

void CQtDC::paintEllipse(const CRect& rect)
{
    if (!surface) return;
    if (toDevice().isAxisAligned()) return surface->ellipse(state(), LPtoDP(rect));
    // A turned ellipse is drawn as a polygon. Between 256 corners a circle bulges by less than 1e-4 of its radius,
    // which is less than a pixel on any display.
    std::vector<CPoint> around;
    constexpr int corners = 256;
    const XFORM map = toDevice();
    for (int i = 0; i < corners; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / corners;
        const double x = rect.left + rect.Width() / 2.0 * (1.0 + std::cos(angle));
        const double y = rect.top + rect.Height() / 2.0 * (1.0 + std::sin(angle));
        around.push_back({static_cast<int>(std::floor(x * map.m11 + y * map.m21 + map.dx + 0.5)),
                          static_cast<int>(std::floor(x * map.m12 + y * map.m22 + map.dy + 0.5))});
    }
    surface->polygons(state(), {&around, 1});
}

void CQtDC::fillRegion(const CRgn& region, const CBrush& brush, raster_op3 operation)
{
    if (surface) surface->fill(state(), toUnits(region), {brush, brush_op_of(operation)});
}

void CQtDC::drawPixels(const CRect& to, const CBitmap& bitmap, const CRect& from, raster_op3 operation)
{
    if (!surface) return;
    const raster_op op = blit_op_of(operation);
    if (!op.readsSource()) return fillRegion(CRgn(to), state().brush, operation);
    surface->pixels(state(), {bitmap, from, LPtoDP(to.TopLeft()), LPtoDP(CPoint{to.right, to.top}),
                              LPtoDP(CPoint{to.left, to.bottom}), op});
}

void CQtDC::drawPixel(CPoint point, colorEntry color)
{
    if (surface) surface->fill(state(), CRgn(CRect(LPtoDP(point), CSize{1, 1})), {CBrush::solid(color), {}});
}

} // namespace vldv::paint
