#pragma once
#include "platform/draw/DC.h"
#include "vldv_api.h"

class QPaintDevice;
class QPainter;

namespace vldv::paint {

class drawing_surface;
struct resolved_font;

/// The drawing surface of the desktop: a window while it handles its paint event, a picture, a printer or document
/// page, or bitmap memory. Device units are logical pixels of the interface; on a screen of high density lines, shapes
/// and text use all its pixels and stretched data stays crisp. Memory and windows show the same pixels, without
/// smoothing but in text; a page gets lines, shapes and text as such.
class VLDV_INTERNAL_API CQtDC : public CDC {
public:
    /// Paints on `device` until this is destroyed.
    explicit CQtDC(QPaintDevice& device);
    /// In memory; draws nothing before a bitmap of 24 or 32 bits is selected.
    explicit CQtDC(CSize dpi_);
    ~CQtDC() override;

    /// The device could be painted on.
    bool isOk() const noexcept { return surface != nullptr; }
    /// Begins the next page of a printer or document. \return false when there is none
    bool newPage();

    std::unique_ptr<CDC> CreateCompatibleDC() override;
    CSize dotsPerInch() const override { return dpi; }
    CSize deviceSize() const override;
    bool IsPrinting() const override;

protected:
    void bitmapSelected() override;
    void strokeLines(std::span<const CPoint> points, bool closed) override;
    void strokeFine(std::span<const vldv::fine_point> points) override;
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
    std::vector<CPoint> toUnits(std::span<const CPoint> points) const;
    CRgn toUnits(const CRgn& region) const;
    const resolved_font& font() const;

    std::unique_ptr<QPainter> painter; ///< none in memory
    std::unique_ptr<drawing_surface> surface;
    CSize dpi;
    mutable std::unique_ptr<resolved_font> lastFont;
};

} // namespace vldv::paint
