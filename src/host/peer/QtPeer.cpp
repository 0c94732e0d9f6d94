#include "host/peer/QtPeer.h"

#include "host/peer/ReadProgress.h"
#include "host/peer/qt_cursors.h"
#include "host/peer/qt_keys.h"
#include "paint/QtDC.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWheelEvent>

namespace vldv::host {

QRect qt_rect(const CRect& rect) { return {rect.left, rect.top, rect.Width(), rect.Height()}; }
CRect rect_of(const QRect& rect) { return CRect({rect.x(), rect.y()}, CSize{rect.width(), rect.height()}); }

QWidget* widget_of(const CWnd* window)
{
    const auto* peer = window ? dynamic_cast<const CQtPeer*>(window->getPeer()) : nullptr;
    return peer ? peer->content() : nullptr;
}

namespace {

constexpr unsigned keyF4 = VK_F1 + 3;
constexpr int sizeDelay = 20; // milliseconds; timers rest while a file is read

CPoint point_of(const QPointF& point) { return {qFloor(point.x()), qFloor(point.y())}; }

const QMdiSubWindow* frame_around(const QWidget* widget)
{
    while (widget && !qobject_cast<const QMdiSubWindow*>(widget)) widget = widget->parentWidget();
    return static_cast<const QMdiSubWindow*>(widget);
}

/// The keys are in the widget's window beside all frames, as in the output pane, and were last in the widget.
bool is_lent(const QWidget& widget, const QWidget& focused)
{
    const QMdiSubWindow* const frame = frame_around(&widget);
    const QMdiArea* const area = frame ? frame->mdiArea() : nullptr;
    return area && focused.window() == area->window() && !area->isAncestorOf(&focused) &&
           area->activeSubWindow() == frame && frame->focusWidget() == &widget;
}

CSize dpi_of(const QWidget& widget) { return {widget.logicalDpiX(), widget.logicalDpiY()}; }

} // namespace

CQtPeer::CQtPeer(CWnd& logic_, QWidget* widget_) : logic(logic_), widget(widget_)
{
    widget->setMouseTracking(true);
    widget->installEventFilter(this);
}

CQtPeer::~CQtPeer()
{
    if (!widget) return;
    widget->removeEventFilter(this);
    // Its parent may be gone first, which takes it along.
    widget->hide();
    widget->deleteLater();
}

CRect CQtPeer::clientRect() const { return widget ? CRect({}, CSize{widget->width(), widget->height()}) : CRect(); }

CRect CQtPeer::windowRect() const
{
    const QPoint corner = outer()->mapToGlobal(QPoint(0, 0));
    return CRect({corner.x(), corner.y()}, CSize{outer()->width(), outer()->height()});
}

void CQtPeer::place(const CRect& rect)
{
    if (isMaximized()) return;
    outer()->setGeometry(qt_rect(rect));
    tellSizeLater();
}

CPoint CQtPeer::clientToScreen(CPoint point) const
{
    const QPoint there = widget->mapToGlobal(QPoint(point.x, point.y));
    return {there.x(), there.y()};
}

void CQtPeer::bringToFront()
{
    outer()->raise();
    if (fillsScreen) widget->activateWindow();
    widget->setFocus();
}

void CQtPeer::setTitle(const std::wstring& text) { outer()->setWindowTitle(QString::fromStdWString(text)); }

void CQtPeer::setFullScreen(bool on, const CRect& screenRect)
{
    fillsScreen = on;
    if (on) {
        parentBeforeFullScreen = widget->parentWidget();
        widget->setParent(nullptr, Qt::Window | Qt::FramelessWindowHint);
        widget->setGeometry(qt_rect(screenRect));
        widget->show();
        widget->activateWindow();
    } else {
        widget->setParent(parentBeforeFullScreen, Qt::Widget);
        widget->setGeometry(qt_rect(screenRect));
        widget->show();
    }
    widget->setFocus();
    tellSizeLater();
}

void CQtPeer::invalidate(const CRgn* region, bool erase)
{
    erases |= erase;
    if (!region) return widget->update();
    QRegion changed;
    for (const CRect& rect : region->rectangles()) changed += qt_rect(rect);
    widget->update(changed);
}

void CQtPeer::update() { widget->repaint(); }

std::unique_ptr<CDC> CQtPeer::clientDC() { return std::make_unique<paint::CQtDC>(dpi_of(*widget)); }

void CQtPeer::setCapture(bool on)
{
    if (captured == on) return;
    captured = on;
    if (on)
        widget->grabMouse();
    else
        widget->releaseMouse();
    if (!on) logic.OnCaptureChanged();
}

/// While no window of the program is active, the one that gets the focus back has it. A pane beside the frames takes
/// the keys alone: what the menus do still concerns the view of the active frame.
bool CQtPeer::hasFocus() const
{
    const QWidget* const now =
        QApplication::focusWidget() ? QApplication::focusWidget() : widget->window()->focusWidget();
    return now && (now == widget || is_lent(*widget, *now));
}

void CQtPeer::setCursor(cursor_shape shape) { widget->setCursor(qt_cursor(shape)); }

void CQtPeer::setTimer(unsigned id, unsigned milliseconds)
{
    std::unique_ptr<QTimer>& timer = timers[id];
    if (!timer) {
        timer = std::make_unique<QTimer>();
        connect(timer.get(), &QTimer::timeout, this, [this, id] { logic.OnTimer(id); });
    }
    timer->start(static_cast<int>(milliseconds));
}

void CQtPeer::killTimer(unsigned id)
{
    // Stopped, not freed: this may be its own timeout.
    if (const auto found = timers.find(id); found != timers.end()) found->second->stop();
}

void CQtPeer::flushTimers()
{
    // Listed first: a handler may start or stop timers.
    std::vector<unsigned> waiting;
    for (const auto& [id, timer] : timers)
        if (timer->isActive()) waiting.push_back(id);
    for (const unsigned id : waiting) logic.OnTimer(id);
}

void CQtPeer::tellSizeLater()
{
    // Between two events and once for all changes of an event: what the logic does about a size may change it again.
    if (sizePending) return;
    sizePending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            sizePending = false;
            if (CReadProgress::isShown()) return QTimer::singleShot(sizeDelay, this, [this] { tellSizeLater(); });
            const CSize now = clientRect().Size();
            if (now == toldSize) return;
            toldSize = now;
            logic.OnSize(now);
        },
        Qt::QueuedConnection);
}

void CQtPeer::paint(const QRect& part)
{
    wasPainted = true;
    paint::CQtDC dc(*widget);
    dc.IntersectClipRect(rect_of(part)); // what is outside need not be worked out
    logic.OnEraseBkgnd(dc);
    logic.OnPaint(dc);
}

/// What was painted before stays; what never was is black without a ground.
void CQtPeer::paintLater()
{
    CReadProgress::repaintLater(*widget);
    if (!wasPainted) QPainter(widget).fillRect(widget->rect(), widget->palette().window());
}

bool CQtPeer::handleMouse(QEvent& event)
{
    auto& mouse = static_cast<QMouseEvent&>(event);
    const unsigned flags = mouse_flags_of(mouse.buttons(), mouse.modifiers());
    const CPoint at = point_of(mouse.position());
    const Qt::MouseButton button = mouse.button();
    switch (event.type()) {
    case QEvent::MouseMove:
        logic.OnMouseMove(flags, at);
        return true;
    case QEvent::MouseButtonPress:
        if (button == Qt::LeftButton) logic.OnLButtonDown(flags, at);
        if (button == Qt::RightButton) logic.OnRButtonDown(flags, at);
        if (button == Qt::MiddleButton) logic.OnMButtonDown(flags, at);
        return true;
    case QEvent::MouseButtonRelease:
        if (button == Qt::LeftButton) logic.OnLButtonUp(flags, at);
        if (button == Qt::RightButton) logic.OnRButtonUp(flags, at);
        if (button == Qt::MiddleButton) logic.OnMButtonUp(flags, at);
        return true;
    default:
        if (button == Qt::LeftButton) logic.OnLButtonDblClk(flags, at);
        return true;
    }
}

bool CQtPeer::handleKeyPress(const QKeyEvent& press)
{
    const unsigned key = key_of(press);
    // Where no window manager takes the key for itself.
    if (fillsScreen && key == keyF4 && press.modifiers() == Qt::AltModifier) {
        closeLater();
        return true;
    }
    return key != 0 && logic.OnKeyDown(key);
}

bool CQtPeer::handleKeyRelease(const QKeyEvent& release)
{
    if (release.isAutoRepeat()) return true; // the key is still down
    const unsigned key = key_of(release);
    return key != 0 && logic.OnKeyUp(key);
}

bool CQtPeer::handleWheel(const QWheelEvent& wheel)
{
    // With Alt or Shift some systems turn the wheel sideways.
    const int delta = wheel.angleDelta().y() ? wheel.angleDelta().y() : wheel.angleDelta().x();
    return logic.OnMouseWheel(mouse_flags_of(wheel.buttons(), wheel.modifiers()), delta, point_of(wheel.position()));
}

/// Between two events: leaving the full screen gives the window another parent.
void CQtPeer::closeLater()
{
    QTimer::singleShot(0, this, [this] { logic.OnClose(); });
}

bool CQtPeer::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != widget) return false;
    if (CReadProgress::isShown() && event->type() != QEvent::Resize) { // its document may be half read
        if (event->type() == QEvent::Paint) paintLater();
        return false;
    }
    switch (event->type()) {
    case QEvent::Paint:
        paint(static_cast<QPaintEvent*>(event)->region().boundingRect());
        return true;
    case QEvent::Resize:
        tellSizeLater();
        return false;
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        return handleMouse(*event);
    case QEvent::Leave:
        logic.OnMouseLeave();
        return false;
    case QEvent::Wheel:
        return handleWheel(static_cast<QWheelEvent&>(*event));
    case QEvent::ContextMenu: {
        const QPoint at = static_cast<QContextMenuEvent*>(event)->globalPos();
        logic.OnContextMenu({at.x(), at.y()});
        return true;
    }
    case QEvent::KeyPress:
        return handleKeyPress(static_cast<QKeyEvent&>(*event));
    case QEvent::KeyRelease:
        return handleKeyRelease(static_cast<QKeyEvent&>(*event));
    case QEvent::Close:
        if (!fillsScreen) return false;
        event->ignore();
        closeLater();
        return true;
    case QEvent::FocusIn:
        logic.OnSetFocus();
        return false;
    case QEvent::FocusOut:
        logic.OnKillFocus();
        return false;
    default:
        return false;
    }
}

} // namespace vldv::host
