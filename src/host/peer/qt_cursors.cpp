#include "host/peer/qt_cursors.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <array>
#include <map>

namespace vldv::host {

namespace {

constexpr int side = 24, middle = 11; // pixels

/// A pointer on the screen as large as on one of the usual density. Of X11 the toolkit hands size and hot spot on in
/// pixels of the device.
QCursor pointer(const QPixmap& picture, QPoint hotSpot)
{
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        hotSpot = (QPointF(hotSpot) * picture.devicePixelRatio()).toPoint();
    return QCursor(picture, hotSpot.x(), hotSpot.y());
}

/// Draws black lines with a white rim, so that they are seen on any picture.
template <class Draw>
QPixmap rimmed(const Draw& draw)
{
    const double ratio = qGuiApp->devicePixelRatio(); // of the densest screen
    QPixmap picture(QSize(side, side) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    for (const auto& [color, width] : {std::pair{Qt::white, 3}, {Qt::black, 1}}) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::FlatCap));
        draw(painter);
    }
    return picture;
}

using sign = void (*)(QPainter&);

/// A cross with a sign at its lower right, in a square of nine pixels from 14, 14.
QCursor signed_cross(sign draw)
{
    const QPixmap picture = rimmed([draw](QPainter& painter) {
        painter.drawLine(middle, 1, middle, 2 * middle - 1);
        painter.drawLine(1, middle, 2 * middle - 1, middle);
        draw(painter);
    });
    return pointer(picture, {middle, middle});
}

struct signed_shape {
    cursor_shape shape;
    sign draw;
};
constexpr signed_shape signedShapes[] = {
    {cursor_shape::crossPlus,
     [](QPainter& painter) {
         painter.drawLine(15, 19, 22, 19);
         painter.drawLine(18, 15, 18, 22);
     }},
    {cursor_shape::crossMinus, [](QPainter& painter) { painter.drawLine(15, 19, 22, 19); }},
    {cursor_shape::crossRectangle, [](QPainter& painter) { painter.drawRect(14, 15, 8, 6); }},
    {cursor_shape::crossEllipse, [](QPainter& painter) { painter.drawEllipse(14, 15, 8, 6); }},
    {cursor_shape::crossSection,
     [](QPainter& painter) { painter.drawPolyline(QPolygon({{14, 22}, {16, 16}, {19, 20}, {22, 14}})); }},
    {cursor_shape::crossDistance,
     [](QPainter& painter) {
         painter.drawLine(15, 18, 22, 18);
         painter.drawLine(14, 15, 14, 21);
         painter.drawLine(22, 15, 22, 21);
     }},
    {cursor_shape::crossAngle,
     [](QPainter& painter) { painter.drawPolyline(QPolygon({{22, 21}, {14, 21}, {21, 14}})); }},
    {cursor_shape::crossMark,
     [](QPainter& painter) { painter.drawPolyline(QPolygon({{14, 15}, {18, 22}, {22, 15}})); }},
    {cursor_shape::crossCurve,
     [](QPainter& painter) {
         painter.drawArc(14, 14, 5, 8, 0, 180 * 16); // sixteenths of a degree
         painter.drawArc(19, 14, 4, 8, 180 * 16, 180 * 16);
     }},
    {cursor_shape::crossLine,
     [](QPainter& painter) {
         painter.drawLine(14, 18, 22, 18);
         painter.drawPoint(14, 15);
         painter.drawPoint(14, 21);
     }},
    {cursor_shape::crossColumn,
     [](QPainter& painter) {
         painter.drawLine(18, 14, 18, 22);
         painter.drawPoint(15, 14);
         painter.drawPoint(21, 14);
     }},
    {cursor_shape::crossLengthyObject,
     [](QPainter& painter) {
         painter.drawLine(14, 19, 19, 14);
         painter.drawLine(17, 22, 22, 17);
     }},
    {cursor_shape::crossIsoline,
     [](QPainter& painter) {
         painter.drawEllipse(14, 14, 8, 8);
         painter.drawEllipse(17, 17, 2, 2);
     }},
};

/// A pencil whose tip is the place.
QCursor pen()
{
    const QPixmap picture = rimmed([](QPainter& painter) {
        painter.drawPolygon(QPolygon({{2, 21}, {4, 15}, {16, 3}, {20, 7}, {8, 19}}));
        painter.drawLine(4, 15, 8, 19);
    });
    return pointer(picture, {2, 21});
}

/// A cross in a ring: what is under it goes.
QCursor eraser()
{
    const QPixmap picture = rimmed([](QPainter& painter) {
        painter.drawEllipse(QPoint(middle, middle), 8, 8);
        painter.drawLine(middle - 4, middle - 4, middle + 5, middle + 5);
        painter.drawLine(middle - 4, middle + 4, middle + 5, middle - 5);
    });
    return pointer(picture, {middle, middle});
}

std::map<cursor_shape, QCursor> drawn_cursors()
{
    std::map<cursor_shape, QCursor> out = {{cursor_shape::pen, pen()}, {cursor_shape::eraser, eraser()}};
    for (const signed_shape& each : signedShapes) out.emplace(each.shape, signed_cross(each.draw));
    return out;
}

} // namespace

QCursor qt_cursor(cursor_shape shape)
{
    // Made once and never freed: the toolkit's application ends before static objects do.
    static const auto& drawn = *new std::map<cursor_shape, QCursor>(drawn_cursors());
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

} // namespace vldv::host
