#pragma once
#include "paint/drawing_surface.h"

#include <QPainter>
#include <functional>

class QPainterPath;

namespace vldv::paint {

class raster_surface;

/// Draws on a page as lines, shapes, pictures and text of the printer or document. A page cannot tell what is on it, so
/// it keeps what was drawn; an operation that asks for it is carried out on a picture of that place.
class page_surface : public drawing_surface {
public:
    /// \param painter_  active, outlives this
    explicit page_surface(QPainter& painter_);

    /// The page is empty again.
    void forget() { drawn.clear(); }

    CSize size() const override;
    double ratio() const override { return 1.0; }
    bool isPage() const override { return true; }
    void lines(const platform::dc_state& state, std::span<const CPoint> points, bool closed) override;
    /// Through places between the dots. Operations that ask what is there get the nearest dots.
    void fineLines(const platform::dc_state& state, std::span<const fine_point> points);
    void polygons(const platform::dc_state& state, std::span<const std::vector<CPoint>> figures) override;
    void rectangle(const platform::dc_state& state, const CRect& rect) override;
    void ellipse(const platform::dc_state& state, const CRect& rect) override;
    void fill(const platform::dc_state& state, const CRgn& region, const fill_tool& tool) override;
    void pixels(const platform::dc_state& state, const blit& picture) override;
    void text(const platform::dc_state& state, const text_run& run) override;

private:
    using drawing = std::function<void(QPainter&)>;

    void draw(const std::optional<CRgn>& clip, drawing what);
    void fillPath(const platform::dc_state& state, const QPainterPath& whole, const fill_tool& tool);
    void strokePath(const platform::dc_state& state, const QPainterPath& whole);
    void onPicture(const platform::dc_state& state, const CRect& bounds,
                   const std::function<void(raster_surface&)>& operation);

    QPainter& painter;
    bool isSvg; ///< as the toolkit writes it: without a clip, and with patterns that few viewers show
    std::vector<drawing> drawn;
};

} // namespace vldv::paint
