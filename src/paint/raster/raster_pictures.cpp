// Pictures and text on a raster surface.
#include "paint/raster/raster_surface.h"
#include "paint/raster/scan_convert.h"
#include "paint/raster/stretch.h"
#include "platform/draw/DC.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QTransform>
#include <QtMath>
#include <cmath>

namespace vldv::paint {

namespace {

constexpr int bandPixels = 1 << 15; ///< what stays in the nearest cache

} // namespace

void raster_surface::pixels(const platform::dc_state& state, const blit& picture)
{
    const clip_bands clip = clipOf(state);
    if (picture.from.Width() > largestSource || picture.from.Height() > largestSource) return;
    if (picture.isUpright())
        stretchedPixels(picture, state.stretchMode == HALFTONE, clip);
    else
        turnedPixels(picture, clip);
}

void raster_surface::stretchedPixels(const blit& picture, bool averages, const clip_bands& clip)
{
    CRect place = scaled_rect(picture.edges(), origin, pixelsAUnit);
    const bool flipX = place.left > place.right, flipY = place.top > place.bottom;
    place.NormalizeRect();
    const pixel_rows source = rows_of(picture.bitmap);
    CRect visible;
    if (!source.top || !visible.IntersectRect(place, clip.box())) return;
    if (place.Width() > largestPicture || place.Height() > largestPicture) return;
    stretched_picture stretched(source, picture.from, place.Size(), flipX, flipY, averages);
    visible.OffsetRect(-place.left, -place.top);
    CRect part = stretched.choose(visible);
    if (part.IsRectEmpty()) return;
    // A picture on its way within one memory is read whole before it is written.
    const int width = part.Width();
    const int rowsAtOnce =
        sink->isIn(picture.bitmap.bits) ? part.Height() : std::clamp(bandPixels / width, 1, part.Height());
    buffer.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(rowsAtOnce));
    for (int top = part.top; top < part.bottom; top += rowsAtOnce) {
        const int bottom = std::min(top + rowsAtOnce, part.bottom);
        for (int y = top; y < bottom; ++y) stretched.row(y, buffer.data() + std::ptrdiff_t{width} * (y - top));
        CRect band(part.left, top, part.right, bottom);
        band.OffsetRect(place.left, place.top);
        const pixel_block block{buffer.data(), width, band};
        clip.each(band, [&](const CRect& shown) { sink->put(block, shown, picture.op); });
    }
}

/// Each pixel takes the nearest of the source.
void raster_surface::turnedPixels(const blit& picture, const clip_bands& clip)
{
    const pixel_rows source = rows_of(picture.bitmap);
    const QTransform turn = turn_of(picture) * QTransform::fromTranslate(-origin.x, -origin.y) *
                            QTransform::fromScale(pixelsAUnit, pixelsAUnit);
    bool leadsBack = false;
    const QTransform back = turn.inverted(&leadsBack);
    if (!source.top || !leadsBack) return;
    fixed_figure outline;
    for (const QPointF corner :
         {QPointF(0, 0), QPointF(picture.from.Width(), 0), QPointF(picture.from.Width(), picture.from.Height()),
          QPointF(0, picture.from.Height())}) {
        const QPointF at = turn.map(corner) * double{fixedOne};
        outline.push_back({std::llround(at.x()), std::llround(at.y())});
    }
    for (const platform::pixel_span& span : scan_convert({&outline, 1}, false, clip.box()))
        clip.each({span.left, span.y, span.right, span.y + 1}, [&](const CRect& part) {
            buffer.clear();
            int left = part.left;
            for (int x = part.left; x < part.right; ++x) {
                // Each pixel of the target looks up where its centre comes from: no pixel is left empty and none is
                // written twice.
                const QPointF at = back.map(QPointF(x + 0.5, part.top + 0.5));
                const int column = picture.from.left + std::clamp(qFloor(at.x()), 0, picture.from.Width() - 1);
                const int row = picture.from.top + std::clamp(qFloor(at.y()), 0, picture.from.Height() - 1);
                if (column < 0 || row < 0 || column >= source.width || row >= source.height) {
                    if (!buffer.empty()) break;
                    left = x + 1;
                    continue;
                }
                const std::byte* const pixel = source.row(row) + std::ptrdiff_t{column} * source.bytes;
                buffer.push_back(std::to_integer<std::uint32_t>(pixel[2]) << 16 |
                                 std::to_integer<std::uint32_t>(pixel[1]) << 8 |
                                 std::to_integer<std::uint32_t>(pixel[0]) | 0xFF000000u);
            }
            const int width = static_cast<int>(buffer.size());
            const CRect place(left, part.top, left + width, part.top + 1);
            if (width > 0) sink->put({buffer.data(), width, place}, place, picture.op);
        });
}

void raster_surface::text(const platform::dc_state& state, const text_run& run)
{
    const clip_bands clip = clipOf(state);
    QTransform turn;
    turn.translate(std::round((double{1} * run.at.x - origin.x) * pixelsAUnit),
                   std::round((double{1} * run.at.y - origin.y) * pixelsAUnit));
    turn.rotate(run.angle);
    const int smoothing = 2; // pixels that glyphs may reach beyond their outline
    const QRect ink = turn.mapRect(QFontMetrics(run.font).boundingRect(run.text))
                          .adjusted(-smoothing, -smoothing, smoothing, smoothing);
    CRect place;
    if (!place.IntersectRect(RECT{ink.left(), ink.top(), ink.right() + 1, ink.bottom() + 1}, clip.box())) return;
    QImage picture(place.Width(), place.Height(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setTransform(turn * QTransform::fromTranslate(-place.left, -place.top));
    painter.setFont(run.font);
    painter.setPen(QColor::fromRgb(QRgb(pixel_of(state.textColor))));
    painter.drawText(QPointF(0.0, 0.0), run.text);
    painter.end();
    const pixel_block block{reinterpret_cast<const std::uint32_t*>(picture.constBits()), picture.bytesPerLine() / 4,
                            place};
    clip.each(place, [&](const CRect& part) { sink->blend(block, part); });
}

} // namespace vldv::paint
