#pragma once
#include "platform/DC.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <memory>

class QPaintDevice;
class QPen;

namespace host {

/// A font value as the toolkit's, `scale` device pixels a logical unit.
QFont qt_font(const CFont& font, double scale);
QColor qt_color(colorEntry color);

} // namespace host

/// The drawing surface on a QPainter: of a widget while it paints, a printer, or bitmap memory. The mapping to device
/// pixels is done here, not by the painter, so that pixels come out as on a classic device: no smoothing, right and
/// bottom sides left out. Bitmap memory runs bottom-up; the flip is in `toDevicePoint` and `toDeviceRect` alone.
class CQtDC : public CDC {
public:
    /// Paints on `device` as long as this lives. \param size  logical pixels
    CQtDC(QPaintDevice* device, CSize size_, CSize dpi_, bool printing_ = false);
    /// A surface in memory.
    explicit CQtDC(CSize dpi_);
    ~CQtDC() override;

    std::unique_ptr<CDC> CreateCompatibleDC() override { return std::make_unique<CQtDC>(dpi); }
    CSize dotsPerInch() const override { return dpi; }
    CSize deviceSize() const override { return selectedBitmap() ? CDC::deviceSize() : size; }
    bool IsPrinting() const override { return printing; }

protected:
    void bitmapSelected() override;
    void strokeLines(std::span<const CPoint> points, bool closed) override;
    void paintPolygons(std::span<const std::vector<CPoint>> figures) override;
    void paintRectangle(const CRect& rect) override;
    void paintEllipse(const CRect& rect) override;
    void fillRegion(const CRgn& region, const CBrush& brush, raster_op3 operation) override;
    void drawPixels(const CRect& to, const CBitmap& bitmap, const CRect& from, raster_op3 operation) override;
    void drawPixel(CPoint point, colorEntry color) override;
    void drawText(int left, int baseline, std::wstring_view text) override;
    int textWidth(std::wstring_view text) const override;
    TEXTMETRIC fontMetrics() const override;

private:
    bool begin(QPainter::CompositionMode mode);
    QPoint toDevicePoint(CPoint logical) const;
    QRect toDeviceRect(const CRect& device) const;
    void fillDeviceRegion(const CRgn& device, const CBrush& brush, QPainter::CompositionMode mode);
    void strokeDevice(const QPolygon& points, const QPen& pen);
    double scaleX() const;
    double scaleY() const;

    QImage memory; ///< names the selected bitmap, rows in the order of the memory
    std::unique_ptr<QPainter> painter;
    CSize size, dpi;
    bool flipped = false;
    bool printing = false;
};
