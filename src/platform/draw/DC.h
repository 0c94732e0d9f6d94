#pragma once
#include "platform/draw/bitmap.h"
#include "platform/draw/dc_state.h"
#include "vldv_api.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

/// Pixels that a drawing surface can draw into: blue, green, red (and alpha), rows from the lowest upwards, each padded
/// to four bytes. It only names the memory.
struct CBitmap {
    BITMAPINFOHEADER header;
    std::byte* bits = nullptr;
};

/// A drawing surface: a window, a page or memory. It keeps the tools and settings and lays out text; a host fills in
/// the primitives at the end. All coordinates are logical units (see `SetMapMode`; device pixels at first), y grows
/// downwards, right and bottom sides lie outside. A setter returns what was set before. Lines leave out their last
/// point.
class VLDV_API CDC {
public:
    CDC();
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;
    virtual ~CDC();

    /// A new surface in memory with the resolution and fonts of this one. It draws nothing before a bitmap is selected.
    virtual std::unique_ptr<CDC> CreateCompatibleDC() = 0;
    /// Draws into `bitmap`, which must outlive its selection, from now on; null: into nothing. Only for surfaces in
    /// memory. \return what was selected before
    CBitmap* SelectObject(CBitmap* bitmap);
    /// The pixels of a surface in memory, or null.
    const CBitmap* selectedBitmap() const noexcept { return target; }
    /// Logical dots per inch of the surface.
    virtual CSize dotsPerInch() const = 0;
    /// Size in device pixels: of the window's inside or of the page; of the bitmap for a surface in memory.
    virtual CSize deviceSize() const;
    virtual bool IsPrinting() const { return false; }

    // Tools and settings
    CPen SelectObject(const CPen& pen);
    CBrush SelectObject(const CBrush& brush);
    CFont SelectObject(const CFont& font);
    const CPen& getCurrentPen() const noexcept { return now.pen; }
    colorEntry SetTextColor(colorEntry color);
    colorEntry SetBkColor(colorEntry color);
    /// Whether transparent text has a rim in the background colour, so that it is read over any picture. \return before
    bool setTextRim(bool on);
    int SetBkMode(int mode); ///< TRANSPARENT or OPAQUE: whether text, gaps of lines and hatches cover what is below
    std::uint32_t SetTextAlign(std::uint32_t flags);
    std::uint32_t GetTextAlign() const noexcept { return now.textAlign; }
    int SetROP2(int mode);
    vldv::poly_fill_mode SetPolyFillMode(vldv::poly_fill_mode mode);
    int SetStretchBltMode(int mode);
    CPoint SetBrushOrg(CPoint devicePoint);
    const vldv::platform::dc_state& state() const noexcept { return now; }

    /// Remembers all settings. \return the number of this state, from 1 up
    int SaveDC();
    /// Returns to the state of that number, or with -1 to the last one, and forgets it and the later ones.
    /// \return false, with nothing changed, for a number that is not kept
    bool RestoreDC(int saved);

    // Units
    int SetMapMode(int mode);
    CSize SetWindowExt(CSize extent); ///< sides of 0 leave it as it is; negative ones flip
    CPoint SetViewportOrg(CPoint origin);
    CSize SetViewportExt(CSize extent);
    XFORM SetWorldTransform(const XFORM& map); ///< before the mapping of window and viewport
    /// From logical units to device pixels.
    XFORM toDevice() const noexcept { return now.mapping.toDevice(); }
    CPoint LPtoDP(CPoint point) const noexcept;
    CPoint DPtoLP(CPoint point) const noexcept;
    CRect LPtoDP(const CRect& rect) const noexcept; ///< in order even when the mapping flips
    CRect DPtoLP(const CRect& rect) const noexcept;

    // Clip: nothing is drawn outside. It stays where it is when the mapping changes later.
    void SelectClipRgn(const CRgn* region, vldv::region_mode mode = RGN_COPY); ///< null: no clip
    void IntersectClipRect(const CRect& rect);
    /// The smallest rectangle around all that can be drawn on.
    CRect GetClipBox() const;

    // Lines with the pen
    CPoint MoveTo(CPoint point); ///< \return the position before
    CPoint MoveTo(int x, int y) { return MoveTo(CPoint{x, y}); }
    void LineTo(CPoint point); ///< from the position, which moves along
    void LineTo(int x, int y) { LineTo(CPoint{x, y}); }
    void Polyline(std::span<const CPoint> points);
    /// The same between the points of the grid, where the surface is a page; elsewhere through the nearest ones.
    void Polyline(std::span<const vldv::fine_point> points);

    // Shapes: filled with the brush, outlined with the pen
    void Polygon(std::span<const CPoint> points);
    void PolyPolygon(std::span<const std::vector<CPoint>> figures);
    void Rectangle(const CRect& rect);
    void Ellipse(const CRect& rect);

    // Areas, without outline
    void FillRect(const CRect& rect, const CBrush& brush);
    void FillSolidRect(const CRect& rect, colorEntry color) { FillRect(rect, CBrush::solid(color)); }
    void FrameRect(const CRect& rect, const CBrush& brush); ///< one pixel wide, inside
    void InvertRect(const CRect& rect);
    void FillRgn(const CRgn& region, const CBrush& brush);
    void FrameRgn(const CRgn& region, const CBrush& brush, int width, int height); ///< inside its edge
    /// Fills with the brush through a raster operation without source.
    void PatBlt(const CRect& rect, vldv::raster_op3 operation);

    // Pixels
    void SetPixel(CPoint point, colorEntry color);
    /// Of a surface in memory; black outside of it.
    colorEntry GetPixel(CPoint point) const;
    /// From another surface in memory, at its logical `from`, to `to` here, in the same size.
    void BitBlt(const CRect& to, const CDC& source, CPoint from, vldv::raster_op3 operation);
    /// From another surface in memory, stretched as `SetStretchBltMode` says.
    void StretchBlt(const CRect& to, const CDC& source, const CRect& from, vldv::raster_op3 operation);
    /// Part `from` of a bitmap, counted in pixels from its upper left corner.
    void StretchDIBits(const CRect& to, const CBitmap& bitmap, const CRect& from, vldv::raster_op3 operation);

    // Text, in wide characters. A line end is a character like others but for `DrawText`.
    void TextOut(int x, int y, std::wstring_view text);
    CSize GetTextExtent(std::wstring_view text) const;
    TEXTMETRIC GetTextMetrics() const { return fontMetrics(); }
    /// Tabs go to the next stop: behind the last given stop, and without any, every eight average characters. Stops
    /// count from `tabOrigin`. \return the size
    CSize TabbedTextOut(int x, int y, std::wstring_view text, std::span<const int> stops, int tabOrigin);
    CSize GetTabbedTextExtent(std::wstring_view text, std::span<const int> stops) const;
    /// Lines of text within `rect`, by DT_ flags; the text alignment is not asked. With DT_CALCRECT nothing is drawn
    /// and `rect` gets the size. \return the height of all lines
    int DrawText(std::wstring_view text, CRect& rect, std::uint32_t flags);

protected:
    // What a host draws, in logical units under `toDevice()`, within `state().clip`, with the tools of `state()`.
    /// Drawing goes to `selectedBitmap()` from now on.
    virtual void bitmapSelected() {}
    virtual void strokeLines(std::span<const CPoint> points, bool closed) = 0;
    virtual void strokeFine(std::span<const vldv::fine_point> points);
    virtual void paintPolygons(std::span<const std::vector<CPoint>> figures) = 0;
    virtual void paintRectangle(const CRect& rect) = 0;
    virtual void paintEllipse(const CRect& rect) = 0;
    /// The region with a brush through an operation without source.
    virtual void fillRegion(const CRgn& region, const CBrush& brush, vldv::raster_op3 operation) = 0;
    virtual void drawPixels(const CRect& to, const CBitmap& bitmap, const CRect& from, vldv::raster_op3 operation) = 0;
    virtual void drawPixel(CPoint point, colorEntry color) = 0;
    /// One run of text that begins at `left` and stands on `baseline`, without background.
    virtual void drawText(int left, int baseline, std::wstring_view text) = 0;
    /// What stands around a text that has a rim: the text itself, shifted to all sides.
    virtual void drawTextRim(int left, int baseline, std::wstring_view text);
    virtual int textWidth(std::wstring_view text) const = 0;
    virtual TEXTMETRIC fontMetrics() const = 0;

private:
    void drawRun(int left, int baseline, std::wstring_view text);
    void drawAligned(int x, int y, std::wstring_view text, std::span<const int> stops, int tabOrigin, bool tabs);
    int runsWidth(std::wstring_view text, std::span<const int> stops, int start) const;

    vldv::platform::dc_state now;
    std::vector<vldv::platform::dc_state> saved;
    CBitmap* target = nullptr;
};
