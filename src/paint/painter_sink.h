#pragma once
#include "paint/raster/pixel_sink.h"

#include <QPainter>

namespace vldv::paint {

/// Paints pixels on a window or picture while a painter is active on it. A logical pixel may be several here.
class painter_sink : public pixel_sink {
public:
    /// \param painter_  active, outlives this
    explicit painter_sink(QPainter& painter_);

    CSize size() const override { return pixels; }
    void fill(std::span<const CRect> rects, colorEntry color, raster_op op) override;
    void put(const pixel_block& block, const CRect& part, raster_op op) override;
    void blend(const pixel_block& block, const CRect& part) override;

private:
    void drawBlock(const pixel_block& block, const CRect& part, QImage::Format format);

    QPainter& painter;
    CSize pixels;
};

} // namespace vldv::paint
