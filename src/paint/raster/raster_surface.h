#pragma once
#include "paint/drawing_surface.h"
#include "paint/raster/clip_bands.h"
#include "paint/raster/pixel_sink.h"
#include "platform/draw/polygon_spans.h"

#include <QPolygonF>
#include <memory>

namespace vldv::paint {

struct line_spans;

/// Decides which pixels every line, shape, picture and text covers and paints just those: no smoothing but in text, and
/// the same pixels in memory and in windows.
class raster_surface : public drawing_surface {
public:
    /// \param ratio_  pixels a unit   \param origin_  unit that is the first pixel
    raster_surface(std::unique_ptr<pixel_sink> sink_, double ratio_, CPoint origin_ = {});

    CSize size() const override;
    double ratio() const override { return pixelsAUnit; }
    bool isPage() const override { return false; }
    void lines(const platform::dc_state& state, std::span<const CPoint> points, bool closed) override;
    void polygons(const platform::dc_state& state, std::span<const std::vector<CPoint>> figures) override;
    void rectangle(const platform::dc_state& state, const CRect& rect) override;
    void ellipse(const platform::dc_state& state, const CRect& rect) override;
    void fill(const platform::dc_state& state, const CRgn& region, const fill_tool& tool) override;
    void pixels(const platform::dc_state& state, const blit& picture) override;
    void text(const platform::dc_state& state, const text_run& run) override;

private:
    using spans = std::vector<platform::pixel_span>;

    clip_bands clipOf(const platform::dc_state& state) const;
    void strokeThrough(const platform::dc_state& state, const clip_bands& clip, const QPolygonF& middles, bool closed);
    void paintLine(const platform::dc_state& state, const clip_bands& clip, line_spans& covered, bool showsGaps);
    /// \param uprights  further pixels, all a pixel wide
    void paint(const spans& area, std::span<const CRect> uprights, colorEntry color, raster_op op,
               const clip_bands& clip);
    void brushOver(const platform::dc_state& state, const spans& area, const fill_tool& tool, const clip_bands& clip);
    void stretchedPixels(const blit& picture, bool averages, const clip_bands& clip);
    void turnedPixels(const blit& picture, const clip_bands& clip);

    std::unique_ptr<pixel_sink> sink;
    double pixelsAUnit;
    CPoint origin;
    std::vector<std::uint32_t> buffer; ///< some rows of a picture
};

} // namespace vldv::paint
