#pragma once
#include "platform/draw/geometry.h"
#include "platform/draw/polygon_spans.h"
#include "vldv_api.h"

#include <memory>
#include <span>
#include <vector>

namespace vldv {

/// How two regions become one.
enum region_mode : int {
    RGN_AND = 1,
    RGN_OR = 2,
    RGN_XOR = 3,
    RGN_DIFF = 4, ///< the first without the second
    RGN_COPY = 5, ///< the first alone
};

/// What lies inside a polygon that crosses itself.
enum poly_fill_mode : int {
    ALTERNATE = 1, ///< points that an odd number of edges surrounds
    WINDING = 2,   ///< points that edges go round at least once
};

} // namespace vldv

using enum vldv::poly_fill_mode;
using enum vldv::region_mode;

/// A set of pixels, kept as bands of rectangles: set arithmetic is exact and needs no window. A pixel belongs to a
/// shape when its centre does. A value: copies are deep.
class VLDV_API CRgn {
public:
    CRgn();                          ///< no pixel
    explicit CRgn(const RECT& rect); ///< corners in any order
    CRgn(const CRgn& other);
    CRgn(CRgn&& other) noexcept;
    CRgn& operator=(const CRgn& other);
    CRgn& operator=(CRgn&& other) noexcept;
    ~CRgn();

    static CRgn rectangle(const RECT& rect) { return CRgn(rect); }
    /// All of them; they may overlap.
    static CRgn united(std::span<const CRect> rects);
    /// The ellipse that touches the sides of `rect`.
    static CRgn ellipse(const RECT& rect);
    /// The closed polygon through the points; coordinates are clamped to +-2^26.
    static CRgn polygon(std::span<const CPoint> points, vldv::poly_fill_mode mode);
    /// Several closed polygons taken together: the odd-even rule makes holes.
    static CRgn polygons(std::span<const std::vector<CPoint>> figures, vldv::poly_fill_mode mode);
    static CRgn combined(const CRgn& a, const CRgn& b, vldv::region_mode mode);

    /// Makes this the combination of `a` and `b`, either of which may be this region. \return there is a pixel in it
    bool CombineRgn(const CRgn& a, const CRgn& b, vldv::region_mode mode);
    void OffsetRgn(int dx, int dy);

    bool isEmpty() const noexcept;
    /// The smallest rectangle around all pixels; zeros when there is none.
    CRect GetRgnBox() const noexcept;
    bool PtInRegion(CPoint point) const noexcept;
    bool RectInRegion(const RECT& rect) const noexcept; ///< any pixel of it
    bool operator==(const CRgn& other) const noexcept;
    /// From top to bottom and left to right, none touching its neighbour in the same band.
    std::vector<CRect> rectangles() const;
    /// Pixels inside.
    std::int64_t area() const noexcept;

    /// The region as the map carries it: corners go to the nearest integers (halves up), a flip puts them in order.
    /// A map that turns or shears carries each rectangle as a polygon.
    CRgn transformed(const XFORM& map) const;
    /// The pixels that have one outside within `width` columns or `height` rows: the line drawn along the inner edge.
    CRgn frame(int width, int height) const;

private:
    static CRgn ofSpans(std::span<const vldv::platform::pixel_span> spans);

    struct bands;
    std::unique_ptr<bands> held;
};
