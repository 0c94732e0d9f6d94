#include "host/qt_cursors.h"

#include <QPainter>
#include <QPixmap>
#include <array>
#include <map>

namespace host {

namespace {

constexpr int side = 24, middle = 11; // pixels

/// Draws black lines with a white rim, so that they are seen on any picture.
template <class Draw>
QPixmap rimmed(const Draw& draw)
{
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    for (const auto& [color, width] : {std::pair{Qt::white, 3}, {Qt::black, 1}}) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::FlatCap));
        draw(painter);
    }
    return picture;
}

/// A cross with a sign at its lower right.
QCursor signed_cross(bool isPlus)
{
    const QPixmap picture = rimmed([isPlus](QPainter& painter) {
        painter.drawLine(middle, 1, middle, 2 * middle - 1);
        painter.drawLine(1, middle, 2 * middle - 1, middle);
        painter.drawLine(15, 19, 22, 19);
        if (isPlus) painter.drawLine(18, 15, 18, 22);
    });
    return QCursor(picture, middle, middle);
}

/// A pencil whose tip is the place.
QCursor pen()
{
    const QPixmap picture = rimmed([](QPainter& painter) {
        painter.drawPolygon(QPolygon({{2, 21}, {4, 15}, {16, 3}, {20, 7}, {8, 19}}));
        painter.drawLine(4, 15, 8, 19);
    });
    return QCursor(picture, 2, 21);
}

/// A cross in a ring: what is under it goes.
QCursor eraser()
{
    const QPixmap picture = rimmed([](QPainter& painter) {
        painter.drawEllipse(QPoint(middle, middle), 8, 8);
        painter.drawLine(middle - 4, middle - 4, middle + 5, middle + 5);
        painter.drawLine(middle - 4, middle + 4, middle + 5, middle - 5);
    });
    return QCursor(picture, middle, middle);
}

} // namespace

QCursor qt_cursor(cursor_shape shape)
{
    // Made once and never freed: the toolkit's application ends before static objects do.
    static const auto& drawn = *new std::map<cursor_shape, QCursor>{{cursor_shape::pen, pen()},
                                                                    {cursor_shape::eraser, eraser()},
                                                                    {cursor_shape::crossPlus, signed_cross(true)},
                                                                    {cursor_shape::crossMinus, signed_cross(false)}};
    if (const auto found = drawn.find(shape); found != drawn.end()) return found->second;
    constexpr std::array<Qt::CursorShape, 16> shapes = {
        Qt::ArrowCursor,     Qt::CrossCursor,   Qt::PointingHandCursor, Qt::ClosedHandCursor,
        Qt::SizeAllCursor,   Qt::SizeHorCursor, Qt::SizeVerCursor,      Qt::SizeFDiagCursor,
        Qt::SizeBDiagCursor, Qt::IBeamCursor,   Qt::WaitCursor,         Qt::ForbiddenCursor,
        Qt::CrossCursor,     Qt::CrossCursor,   Qt::OpenHandCursor,     Qt::CrossCursor,
    };
    const auto index = static_cast<std::size_t>(shape);
    return index < shapes.size() ? shapes[index] : Qt::ArrowCursor;
}

} // namespace host
