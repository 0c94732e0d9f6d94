#include "platform/draw/DC.h"

#include <cmath>
#include <numbers>
#include <utility>

using namespace vldv;

namespace {

/// An ellipse as a polygon that no pixel tells from it.
std::vector<CPoint> ellipse_outline(const CRect& rect)
{
    const double radiusX = rect.Width() / 2.0, radiusY = rect.Height() / 2.0;
    const int corners = std::clamp(static_cast<int>(4.0 * std::sqrt(std::max(radiusX, radiusY))) + 8, 8, 1024);
    std::vector<CPoint> out;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / corners;
        out.push_back({static_cast<int>(std::floor(rect.left + radiusX * (1.0 + std::cos(angle)) + 0.5)),
                       static_cast<int>(std::floor(rect.top + radiusY * (1.0 + std::sin(angle)) + 0.5))});
    }
    return out;
}

std::vector<CPoint> corners_of(const CRect& rect)
{
    return {rect.TopLeft(), {rect.right, rect.top}, rect.BottomRight(), {rect.left, rect.bottom}};
}

CRect ordered(CRect rect) noexcept
{
    rect.NormalizeRect();
    return rect;
}

} // namespace

CDC::CDC() = default;
CDC::~CDC() = default;

CSize CDC::deviceSize() const { return target ? CSize{target->header.biWidth, target->header.biHeight} : CSize{}; }

CBitmap* CDC::SelectObject(CBitmap* bitmap)
{
    CBitmap* const before = std::exchange(target, bitmap);
    bitmapSelected();
    return before;
}

CPen CDC::SelectObject(const CPen& pen) { return std::exchange(now.pen, pen); }
CBrush CDC::SelectObject(const CBrush& brush) { return std::exchange(now.brush, brush); }
CFont CDC::SelectObject(const CFont& font) { return std::exchange(now.font, font); }
colorEntry CDC::SetTextColor(colorEntry color) { return std::exchange(now.textColor, color); }
colorEntry CDC::SetBkColor(colorEntry color) { return std::exchange(now.backColor, color); }
bool CDC::SetTextRim(bool on) { return std::exchange(now.hasTextRim, on); }
int CDC::SetBkMode(int mode) { return std::exchange(now.backMode, mode); }
std::uint32_t CDC::SetTextAlign(std::uint32_t flags) { return std::exchange(now.textAlign, flags); }
int CDC::SetROP2(int mode) { return std::exchange(now.rop2, mode); }
poly_fill_mode CDC::SetPolyFillMode(poly_fill_mode mode) { return std::exchange(now.polyFill, mode); }
int CDC::SetStretchBltMode(int mode) { return std::exchange(now.stretchMode, mode); }
CPoint CDC::SetBrushOrg(CPoint devicePoint) { return std::exchange(now.brushOrigin, devicePoint); }

int CDC::SaveDC()
{
    saved.push_back(now);
    return static_cast<int>(saved.size());
}

bool CDC::RestoreDC(int number)
{
    const int kept = static_cast<int>(saved.size());
    const int wanted = number == -1 ? kept : number;
    if (wanted < 1 || wanted > kept) return false;
    now = std::move(saved[static_cast<std::size_t>(wanted - 1)]);
    saved.resize(static_cast<std::size_t>(wanted - 1));
    return true;
}

CPoint CDC::MoveTo(CPoint point)
{
    outline.continues = false;
    return std::exchange(now.position, point);
}

void CDC::LineTo(CPoint point)
{
    const CPoint ends[] = {std::exchange(now.position, point), point};
    if (!outline.open)
        strokeLines(ends, false);
    else if (std::exchange(outline.continues, true))
        outline.figures.back().push_back(point);
    else
        outline.figures.emplace_back(ends, ends + 2);
}

void CDC::Polyline(std::span<const CPoint> points)
{
    if (points.size() < 2) return;
    if (outline.open)
        addFigure(points, false);
    else
        strokeLines(points, false);
}

void CDC::Polygon(std::span<const CPoint> points)
{
    if (points.size() < 2) return;
    const std::vector<CPoint> figure(points.begin(), points.end());
    PolyPolygon({&figure, 1});
}

void CDC::PolyPolygon(std::span<const std::vector<CPoint>> figures)
{
    if (!outline.open) return paintPolygons(figures);
    for (const std::vector<CPoint>& figure : figures) addFigure(figure, true);
}

void CDC::Rectangle(const CRect& rect)
{
    if (outline.open)
        addFigure(corners_of(ordered(rect)), true);
    else
        paintRectangle(ordered(rect));
}

void CDC::Ellipse(const CRect& rect)
{
    if (outline.open)
        addFigure(ellipse_outline(ordered(rect)), true);
    else
        paintEllipse(ordered(rect));
}

void CDC::FillRect(const CRect& rect, const CBrush& brush) { fillRegion(CRgn(rect), brush, PATCOPY); }
void CDC::FrameRect(const CRect& rect, const CBrush& brush) { FrameRgn(CRgn(rect), brush, 1, 1); }
void CDC::InvertRect(const CRect& rect) { fillRegion(CRgn(rect), now.brush, DSTINVERT); }
void CDC::FillRgn(const CRgn& region, const CBrush& brush) { fillRegion(region, brush, PATCOPY); }
void CDC::InvertRgn(const CRgn& region) { fillRegion(region, now.brush, DSTINVERT); }
void CDC::PatBlt(const CRect& rect, raster_op3 operation) { fillRegion(CRgn(rect), now.brush, operation); }

void CDC::FrameRgn(const CRgn& region, const CBrush& brush, int width, int height)
{
    fillRegion(region.frame(width, height), brush, PATCOPY);
}

void CDC::SetPixel(CPoint point, colorEntry color) { drawPixel(point, color); }

colorEntry CDC::GetPixel(CPoint point) const
{
    if (!target || !target->bits) return 0;
    const CPoint at = LPtoDP(point);
    const BITMAPINFOHEADER& header = target->header;
    if (at.x < 0 || at.y < 0 || at.x >= header.biWidth || at.y >= header.biHeight) return 0;
    const std::size_t bytes = header.biBitCount / 8u;
    const std::size_t stride = (static_cast<std::size_t>(header.biWidth) * bytes + 3) / 4 * 4;
    const std::size_t row = static_cast<std::size_t>(header.biHeight - 1 - at.y);
    const std::byte* pixel = target->bits + row * stride + static_cast<std::size_t>(at.x) * bytes;
    return std::to_integer<colorEntry>(pixel[2]) | std::to_integer<colorEntry>(pixel[1]) << 8 |
           std::to_integer<colorEntry>(pixel[0]) << 16;
}

void CDC::BitBlt(const CRect& to, const CDC& source, CPoint from, raster_op3 operation)
{
    StretchBlt(to, source, CRect(from, to.Size()), operation);
}

void CDC::StretchBlt(const CRect& to, const CDC& source, const CRect& from, raster_op3 operation)
{
    if (const CBitmap* bitmap = source.selectedBitmap(); bitmap && bitmap->bits)
        StretchDIBits(to, *bitmap, source.LPtoDP(from), operation);
}

void CDC::StretchDIBits(const CRect& to, const CBitmap& bitmap, const CRect& from, raster_op3 operation)
{
    if (bitmap.bits && !from.IsRectEmpty()) drawPixels(to, bitmap, from, operation);
}

void CDC::addFigure(std::span<const CPoint> points, bool closed)
{
    if (points.empty()) return;
    outline.figures.emplace_back(points.begin(), points.end());
    if (closed) outline.figures.back().push_back(points.front());
    outline.continues = false;
}

void CDC::BeginPath()
{
    outline = {};
    outline.open = true;
}

void CDC::CloseFigure()
{
    if (!outline.open || outline.figures.empty()) return;
    std::vector<CPoint>& figure = outline.figures.back();
    if (figure.front() != figure.back()) figure.push_back(figure.front());
    outline.continues = false;
}

void CDC::EndPath() { outline.open = false; }
void CDC::AbortPath() { outline = {}; }

CRgn CDC::PathToRegion()
{
    const std::vector<std::vector<CPoint>> figures = std::exchange(outline, {}).figures;
    return CRgn::polygons(figures, now.polyFill);
}

CRect CDC::GetPathBox() const
{
    CRect box;
    bool isFirst = true;
    for (const std::vector<CPoint>& figure : outline.figures)
        for (const CPoint point : figure) {
            if (std::exchange(isFirst, false)) box = CRect(point, CSize{1, 1});
            box = {std::min(box.left, point.x), std::min(box.top, point.y), std::max(box.right, point.x + 1),
                   std::max(box.bottom, point.y + 1)};
        }
    return box;
}
