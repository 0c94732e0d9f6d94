#include "platform/draw/DC.h"

#include <cmath>
#include <utility>

using namespace vldv;

namespace {

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
bool CDC::setTextRim(bool on) { return std::exchange(now.hasTextRim, on); }
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
    // States are numbered from 1 as SaveDC gave them. Restoring one also drops all that were saved after it.
    if (wanted < 1 || wanted > kept) return false;
    now = std::move(saved[static_cast<std::size_t>(wanted - 1)]);
    saved.resize(static_cast<std::size_t>(wanted - 1));
    return true;
}

CPoint CDC::MoveTo(CPoint point) { return std::exchange(now.position, point); }

void CDC::LineTo(CPoint point)
{
    const CPoint ends[] = {std::exchange(now.position, point), point};
    strokeLines(ends, false);
}

void CDC::Polyline(std::span<const CPoint> points)
{
    if (points.size() >= 2) strokeLines(points, false);
}

void CDC::Polyline(std::span<const vldv::fine_point> points)
{
    if (points.size() >= 2) strokeFine(points);
}

void CDC::strokeFine(std::span<const vldv::fine_point> points)
{
    std::vector<CPoint> nearest;
    nearest.reserve(points.size());
    for (const auto& [x, y] : points)
        nearest.push_back({static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))});
    strokeLines(nearest, false);
}

void CDC::Polygon(std::span<const CPoint> points)
{
    if (points.size() < 2) return;
    const std::vector<CPoint> figure(points.begin(), points.end());
    PolyPolygon({&figure, 1});
}

void CDC::PolyPolygon(std::span<const std::vector<CPoint>> figures) { paintPolygons(figures); }
void CDC::Rectangle(const CRect& rect) { paintRectangle(ordered(rect)); }
void CDC::Ellipse(const CRect& rect) { paintEllipse(ordered(rect)); }

void CDC::FillRect(const CRect& rect, const CBrush& brush) { fillRegion(CRgn(rect), brush, PATCOPY); }
void CDC::FrameRect(const CRect& rect, const CBrush& brush) { FrameRgn(CRgn(rect), brush, 1, 1); }
void CDC::InvertRect(const CRect& rect) { fillRegion(CRgn(rect), now.brush, DSTINVERT); }
void CDC::FillRgn(const CRgn& region, const CBrush& brush) { fillRegion(region, brush, PATCOPY); }
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
    // The rows of a bitmap stand bottom up, each filled up to a multiple of four bytes; a pixel is blue, green, red. A
    // colorEntry is 0x00BBGGRR.
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
