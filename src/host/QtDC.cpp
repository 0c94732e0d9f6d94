#include "host/QtDC.h"

#include "host/qt_raster.h"

#include <QFontMetrics>
#include <QPen>
#include <cmath>

namespace host {

QColor qt_color(colorEntry color) { return QColor(int(color & 255u), int(color >> 8 & 255u), int(color >> 16 & 255u)); }

QFont qt_font(const CFont& font, double scale)
{
    QFont out(font.face.empty() ? QStringLiteral("Liberation Sans") : QString::fromStdString(font.face));
    if (font.face.empty()) out.setStyleHint(QFont::SansSerif);
    if (font.fixedPitch) out.setStyleHint(QFont::Monospace);
    constexpr int usualHeight = -13;
    const int height = font.height != 0 ? font.height : usualHeight;
    // A negative height is that of the characters, which is what the toolkit's pixel size says; a positive one is that
    // of the line, a sixth larger for common faces.
    const double pixels = height < 0 ? -height : height * (5.0 / 6.0);
    out.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels * scale))));
    out.setWeight(static_cast<QFont::Weight>(std::clamp(font.weight, 1, 1000)));
    out.setItalic(font.italic);
    return out;
}

} // namespace host

namespace {

/// Pattern of a line style in lengths on and off; empty for solid lines.
std::vector<std::uint32_t> pattern_of(const CPen& pen)
{
    switch (pen.style & PS_STYLE_MASK) {
    case PS_DASH:
        return {18, 6};
    case PS_DOT:
        return {3, 3};
    case PS_DASHDOT:
        return {9, 6, 3, 6};
    case PS_DASHDOTDOT:
        return {9, 3, 3, 3, 3, 3};
    case PS_USERSTYLE:
        return pen.pattern;
    default:
        return {};
    }
}

Qt::PenCapStyle cap_of(std::uint32_t style) noexcept
{
    switch (style & PS_ENDCAP_MASK) {
    case PS_ENDCAP_SQUARE:
        return Qt::SquareCap;
    case PS_ENDCAP_FLAT:
        return Qt::FlatCap;
    default:
        return Qt::RoundCap;
    }
}

Qt::PenJoinStyle join_of(std::uint32_t style) noexcept
{
    switch (style & PS_JOIN_MASK) {
    case PS_JOIN_BEVEL:
        return Qt::BevelJoin;
    case PS_JOIN_MITER:
        return Qt::MiterJoin;
    default:
        return Qt::RoundJoin;
    }
}

QPen qt_pen(const CPen& pen, double scale)
{
    const double width = pen.isGeometric() ? std::max(1.0, pen.width * scale) : std::max(1, pen.width);
    QPen out(host::qt_color(pen.color), width);
    out.setCapStyle(pen.isGeometric() ? cap_of(pen.style) : Qt::SquareCap);
    out.setJoinStyle(pen.isGeometric() ? join_of(pen.style) : Qt::MiterJoin);
    const std::vector<std::uint32_t> pattern = pattern_of(pen);
    if (pattern.empty()) return out;
    // The toolkit counts in pen widths and lengthens dashes by square ends. A length of 0 would paint a dot.
    QList<qreal> dashes;
    const double unit = pen.isGeometric() ? scale / width : 1.0 / width;
    for (const std::uint32_t length : pattern) dashes.append(length * unit);
    if (dashes.size() % 2) dashes += dashes;
    out.setCapStyle(Qt::FlatCap);
    out.setDashPattern(dashes);
    return out;
}

/// The point one pixel before the end: lines leave out their last point.
QPoint before_end(QPoint from, QPoint to)
{
    const QPoint way = to - from;
    const int steps = std::max(std::abs(way.x()), std::abs(way.y()));
    if (steps == 0) return to;
    const auto back = [&](int distance) { return static_cast<int>(std::lround(distance * (steps - 1.0) / steps)); };
    return {from.x() + back(way.x()), from.y() + back(way.y())};
}

} // namespace

CQtDC::CQtDC(QPaintDevice* device, CSize size_, CSize dpi_, bool printing_)
    : painter(std::make_unique<QPainter>(device)), size(size_), dpi(dpi_), printing(printing_)
{
}

CQtDC::CQtDC(CSize dpi_) : dpi(dpi_) {}

CQtDC::~CQtDC() = default;

void CQtDC::bitmapSelected()
{
    painter.reset();
    memory = {};
    const CBitmap* const bitmap = selectedBitmap();
    if (!bitmap || !bitmap->bits) return;
    const BITMAPINFOHEADER& header = bitmap->header;
    const int bytes = header.biBitCount / 8;
    memory = QImage(reinterpret_cast<uchar*>(bitmap->bits), header.biWidth, header.biHeight,
                    (header.biWidth * bytes + 3) / 4 * 4, bytes == 4 ? QImage::Format_RGB32 : QImage::Format_BGR888);
    flipped = true;
    painter = std::make_unique<QPainter>(&memory);
}

bool CQtDC::begin(QPainter::CompositionMode mode)
{
    if (!painter || !painter->isActive()) return false;
    // Printers know no raster operations.
    const bool isKnown = !printing || mode == QPainter::CompositionMode_SourceOver;
    painter->setCompositionMode(isKnown ? mode : QPainter::CompositionMode_SourceOver);
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform, false);
    painter->setClipping(false);
    if (state().clip) {
        QRegion clip;
        for (const CRect& rect : state().clip->rectangles()) clip += toDeviceRect(rect);
        painter->setClipRegion(clip);
        if (clip.isEmpty()) painter->setClipRect(QRect(0, 0, 0, 0));
    }
    return true;
}

double CQtDC::scaleX() const { return std::hypot(toDevice().m11, toDevice().m12); }
double CQtDC::scaleY() const { return std::hypot(toDevice().m21, toDevice().m22); }

QPoint CQtDC::toDevicePoint(CPoint logical) const
{
    const CPoint device = LPtoDP(logical);
    return {device.x, flipped ? memory.height() - 1 - device.y : device.y};
}

QRect CQtDC::toDeviceRect(const CRect& device) const
{
    const int top = flipped ? memory.height() - device.bottom : device.top;
    return {device.left, top, device.Width(), device.Height()};
}

void CQtDC::strokeDevice(const QPolygon& points, const QPen& pen)
{
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawPolyline(points);
}

void CQtDC::strokeLines(std::span<const CPoint> points, bool closed)
{
    const CPen& pen = state().pen;
    if (pen.isNull() || points.size() < 2 || !begin(host::composition_of(state().rop2))) return;
    QPolygon line;
    for (const CPoint point : points) line << toDevicePoint(point);
    if (closed)
        line << line.front();
    else
        line.back() = before_end(line[line.size() - 2], line.back());
    const bool coversGaps = state().backMode == OPAQUE && (pen.style & PS_STYLE_MASK) >= PS_DASH &&
                            (pen.style & PS_STYLE_MASK) <= PS_DASHDOTDOT && !pen.isGeometric();
    if (coversGaps) {
        CPen below = pen;
        below.style = PS_SOLID;
        below.color = state().backColor;
        strokeDevice(line, qt_pen(below, 1.0));
    }
    strokeDevice(line, qt_pen(pen, scaleX()));
}

void CQtDC::paintPolygons(std::span<const std::vector<CPoint>> figures)
{
    if (state().brush.kind != CBrush::fill::none) {
        std::vector<std::vector<CPoint>> device(figures.begin(), figures.end());
        for (std::vector<CPoint>& figure : device)
            for (CPoint& point : figure) point = LPtoDP(point);
        fillDeviceRegion(CRgn::polygons(device, state().polyFill), state().brush, host::composition_of(state().rop2));
    }
    for (const std::vector<CPoint>& figure : figures) strokeLines(figure, true);
}

void CQtDC::paintRectangle(const CRect& rect)
{
    if (rect.IsRectEmpty()) return;
    const CRect device = LPtoDP(rect);
    if (state().brush.kind != CBrush::fill::none)
        fillDeviceRegion(CRgn(device), state().brush, host::composition_of(state().rop2));
    const CPoint corners[] = {
        rect.TopLeft(), {rect.right - 1, rect.top}, {rect.right - 1, rect.bottom - 1}, {rect.left, rect.bottom - 1}};
    strokeLines(corners, true);
}

void CQtDC::paintEllipse(const CRect& rect)
{
    if (rect.IsRectEmpty()) return;
    const CRgn device = CRgn::ellipse(LPtoDP(rect));
    const QPainter::CompositionMode mode = host::composition_of(state().rop2);
    if (state().brush.kind != CBrush::fill::none) fillDeviceRegion(device, state().brush, mode);
    const CPen& pen = state().pen;
    if (pen.isNull()) return;
    const int width = std::max(1, static_cast<int>(std::lround(pen.isGeometric() ? pen.width * scaleX() : pen.width)));
    fillDeviceRegion(device.frame(width, width), CBrush::solid(pen.color), mode);
}

void CQtDC::fillRegion(const CRgn& region, const CBrush& brush, raster_op3 operation)
{
    fillDeviceRegion(region.transformed(toDevice()), brush, host::composition_of(operation).mode);
}

void CQtDC::fillDeviceRegion(const CRgn& device, const CBrush& brush, QPainter::CompositionMode mode)
{
    if (brush.kind == CBrush::fill::none || !begin(mode)) return;
    QBrush fill(host::qt_color(brush.color));
    if (brush.kind == CBrush::fill::hatch) {
        if (state().backMode == OPAQUE)
            for (const CRect& rect : device.rectangles())
                painter->fillRect(toDeviceRect(rect), host::qt_color(state().backColor));
        // In flipped memory the diagonals change places.
        const bool rises =
            (brush.hatch == HS_BDIAGONAL) != (flipped && (brush.hatch == HS_FDIAGONAL || brush.hatch == HS_BDIAGONAL));
        constexpr Qt::BrushStyle straight[] = {Qt::HorPattern,   Qt::VerPattern,   Qt::FDiagPattern,
                                               Qt::BDiagPattern, Qt::CrossPattern, Qt::DiagCrossPattern};
        Qt::BrushStyle style = straight[std::clamp(static_cast<int>(brush.hatch), 0, 5)];
        if (brush.hatch == HS_FDIAGONAL || brush.hatch == HS_BDIAGONAL)
            style = rises ? Qt::FDiagPattern : Qt::BDiagPattern;
        fill.setStyle(style);
        painter->setBrushOrigin(state().brushOrigin.x, state().brushOrigin.y);
    }
    for (const CRect& rect : device.rectangles()) painter->fillRect(toDeviceRect(rect), fill);
}

void CQtDC::drawPixels(const CRect& to, const CBitmap& bitmap, const CRect& from, raster_op3 operation)
{
    const host::blit_composition composition = host::composition_of(operation);
    if (!begin(composition.mode)) return;
    const BITMAPINFOHEADER& header = bitmap.header;
    const int bytes = header.biBitCount / 8;
    const QImage source(reinterpret_cast<const uchar*>(bitmap.bits), header.biWidth, header.biHeight,
                        (header.biWidth * bytes + 3) / 4 * 4,
                        bytes == 4 ? QImage::Format_RGB32 : QImage::Format_BGR888);
    // Rows of the source count from its top, which is last in memory.
    const QRect part(from.left, header.biHeight - from.bottom, from.Width(), from.Height());
    const QRect place = toDeviceRect(LPtoDP(to));
    const bool smooth = state().stretchMode == HALFTONE;
    QImage pixels = source.copy(part);
    if (!flipped) pixels = pixels.mirrored();
    const bool shrinks = place.width() < pixels.width() || place.height() < pixels.height();
    if (smooth && shrinks) pixels = pixels.scaled(place.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter->setRenderHint(QPainter::SmoothPixmapTransform, smooth);
    painter->drawImage(place, pixels);
}

void CQtDC::drawPixel(CPoint point, colorEntry color)
{
    if (begin(QPainter::CompositionMode_SourceOver))
        painter->fillRect(QRect(toDevicePoint(point), QSize(1, 1)), host::qt_color(color));
}

void CQtDC::drawText(int left, int baseline, std::wstring_view text)
{
    if (!begin(QPainter::CompositionMode_SourceOver)) return;
    const QString shown = QString::fromWCharArray(text.data(), static_cast<qsizetype>(text.size()));
    const QFont font = host::qt_font(state().font, scaleY());
    const QColor color = host::qt_color(state().textColor);
    const CPoint at = LPtoDP(CPoint{left, baseline});
    if (!flipped) {
        painter->setFont(font);
        painter->setPen(color);
        painter->drawText(at.x, at.y, shown);
        return;
    }
    // Into flipped memory a text goes as a picture that is turned over.
    const QFontMetrics metrics(font);
    const QRect ink = metrics.boundingRect(shown).adjusted(-2, -2, 2, 2);
    if (ink.isEmpty()) return;
    QImage upright(ink.size(), QImage::Format_ARGB32_Premultiplied);
    upright.fill(Qt::transparent);
    QPainter pen(&upright);
    pen.setFont(font);
    pen.setPen(color);
    pen.drawText(-ink.topLeft(), shown);
    pen.end();
    const CRect place({at.x + ink.left(), at.y + ink.top()}, CSize{ink.width(), ink.height()});
    painter->drawImage(toDeviceRect(place).topLeft(), upright.mirrored());
}

int CQtDC::textWidth(std::wstring_view text) const
{
    const QFontMetrics metrics(host::qt_font(state().font, scaleY()));
    const int device =
        metrics.horizontalAdvance(QString::fromWCharArray(text.data(), static_cast<qsizetype>(text.size())));
    return scaleX() > 0.0 ? static_cast<int>(std::lround(device / scaleX())) : device;
}

TEXTMETRIC CQtDC::fontMetrics() const
{
    const double scale = scaleY() > 0.0 ? scaleY() : 1.0;
    const QFontMetrics metrics(host::qt_font(state().font, scaleY()));
    const auto logical = [&](int device) { return static_cast<int>(std::lround(device / scale)); };
    TEXTMETRIC out;
    out.tmAscent = logical(metrics.ascent());
    out.tmDescent = logical(metrics.descent());
    out.tmHeight = out.tmAscent + out.tmDescent;
    out.tmAveCharWidth = logical(metrics.averageCharWidth());
    out.tmExternalLeading = logical(metrics.leading());
    return out;
}
