#include "paint/painter_sink.h"

#include "paint/device_size.h"

#include <QImage>
#include <array>
#include <cmath>

namespace vldv::paint {

namespace {

QPainter::CompositionMode composition_of(raster_op op) noexcept
{
    constexpr std::array<QPainter::CompositionMode, 16> modes = {
        QPainter::RasterOp_ClearDestination,           //
        QPainter::RasterOp_NotSourceAndNotDestination, //
        QPainter::RasterOp_NotSourceAndDestination,    //
        QPainter::RasterOp_NotSource,                  //
        QPainter::RasterOp_SourceAndNotDestination,    //
        QPainter::RasterOp_NotDestination,             //
        QPainter::RasterOp_SourceXorDestination,       //
        QPainter::RasterOp_NotSourceOrNotDestination,  //
        QPainter::RasterOp_SourceAndDestination,       //
        QPainter::RasterOp_NotSourceXorDestination,    //
        QPainter::CompositionMode_Destination,         //
        QPainter::RasterOp_NotSourceOrDestination,     //
        QPainter::CompositionMode_SourceOver,          // the fastest copy of what is opaque
        QPainter::RasterOp_SourceOrNotDestination,     //
        QPainter::RasterOp_SourceOrDestination,        //
        QPainter::RasterOp_SetDestination,             //
    };
    return modes[op.truth & 15];
}

} // namespace

painter_sink::painter_sink(QPainter& painter_) : painter(painter_), pixels(pixel_size(*painter_.device()))
{
    painter.resetTransform();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform, false);
    // From here on a unit is a pixel of the device and the grids lie on each other, whatever the scale of the screen.
    const QTransform units = painter.deviceTransform();
    if (units.type() > QTransform::TxTranslate)
        painter.setWorldTransform(QTransform::fromTranslate(std::round(units.dx()), std::round(units.dy())) *
                                  units.inverted());
}

void painter_sink::fill(std::span<const CRect> rects, colorEntry color, raster_op op)
{
    painter.setCompositionMode(composition_of(op));
    const QColor fillColor = QColor::fromRgb(QRgb(pixel_of(color)));
    for (const CRect& rect : rects) painter.fillRect(rect.left, rect.top, rect.Width(), rect.Height(), fillColor);
}

void painter_sink::drawBlock(const pixel_block& block, const CRect& part, QImage::Format format)
{
    const QImage image(reinterpret_cast<const uchar*>(block.at(part.left, part.top)), part.Width(), part.Height(),
                       block.perRow * qsizetype(sizeof(std::uint32_t)), format);
    painter.drawImage(QPoint(part.left, part.top), image);
}

void painter_sink::put(const pixel_block& block, const CRect& part, raster_op op)
{
    painter.setCompositionMode(composition_of(op));
    drawBlock(block, part, QImage::Format_RGB32);
}

void painter_sink::blend(const pixel_block& block, const CRect& part)
{
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    drawBlock(block, part, QImage::Format_ARGB32_Premultiplied);
}

} // namespace vldv::paint
