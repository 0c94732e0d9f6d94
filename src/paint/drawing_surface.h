#pragma once
#include "paint/raster/raster_op.h"
#include "platform/draw/dc_state.h"

#include <QTransform>
#include <span>
#include <string>
#include <vector>

class QFont;
class QString;
struct CBitmap;

namespace vldv::paint {

/// A brush that fills with an operation.
struct fill_tool {
    CBrush brush;
    raster_op op;
};

/// A bitmap's part, counted from its upper left corner, and where its corners come to lie.
struct blit {
    const CBitmap& bitmap;
    CRect from;
    CPoint topLeft, topRight, bottomLeft;
    raster_op op;

    /// Its sides lie along rows and columns, though it may be flipped.
    bool isUpright() const noexcept { return topLeft.y == topRight.y && topLeft.x == bottomLeft.x; }
    /// Where the edges lie then, crossed when it is flipped.
    CRect edges() const noexcept { return {topLeft.x, topLeft.y, topRight.x, bottomLeft.y}; }
};

/// The map from the part's pixels to units.
QTransform turn_of(const blit& picture);

/// A run of text: `angle` in degrees, clockwise, about the point where it begins on its baseline.
struct text_run {
    const QString& text;
    const QFont& font; ///< in pixels of the surface
    CPoint at;
    double angle;
};

/// What draws for `CQtDC`: pixels of memory and windows, or the shapes of a page. Coordinates are units: logical pixels
/// of a window, pixels of memory, dots of a page. Tools come with the state, whose mapping is asked only for the scale
/// of pens.
class drawing_surface {
public:
    virtual ~drawing_surface() = default;
    virtual CSize size() const = 0;
    /// Pixels a unit.
    virtual double ratio() const = 0;
    virtual bool isPage() const = 0;

    virtual void lines(const platform::dc_state& state, std::span<const CPoint> points, bool closed) = 0;
    virtual void polygons(const platform::dc_state& state, std::span<const std::vector<CPoint>> figures) = 0;
    virtual void rectangle(const platform::dc_state& state, const CRect& rect) = 0;
    virtual void ellipse(const platform::dc_state& state, const CRect& rect) = 0;
    virtual void fill(const platform::dc_state& state, const CRgn& region, const fill_tool& tool) = 0;
    virtual void pixels(const platform::dc_state& state, const blit& picture) = 0;
    virtual void text(const platform::dc_state& state, const text_run& run) = 0;
};

/// Pixels a logical unit.
double scale_of(const platform::dc_state& state) noexcept;

} // namespace vldv::paint
