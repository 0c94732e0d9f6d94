#include "host/window/frame_drag.h"

#include "host/peer/QtPeer.h"
#include "view/ChildFrame.h"

#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QScopedValueRollback>

namespace vldv::host {

int dragged_edge(const QRect& from, const QRect& to)
{
    const bool left = from.left() != to.left(), right = from.right() != to.right();
    const bool top = from.top() != to.top(), bottom = from.bottom() != to.bottom();
    if (from.size() == to.size()) return 0;
    if (top) return left ? view::sizeTopLeft : right ? view::sizeTopRight : view::sizeTop;
    if (bottom) return left ? view::sizeBottomLeft : right ? view::sizeBottomRight : view::sizeBottom;
    return left ? view::sizeLeft : view::sizeRight;
}

bool frame_drag::resize(QMdiSubWindow& window, CChildFrame& frame)
{
    const QRect wanted = window.geometry();
    const int edge = dragged_edge(*before, wanted);
    if (edge == 0) return false;
    const QRect fitting = qt_rect(frame.OnSizing(edge, rect_of(wanted)));
    if (fitting == wanted) return false;
    const QScopedValueRollback guard(correcting, true);
    window.setGeometry(fitting);
    return true;
}

bool frame_drag::handle(QEvent& event, QMdiSubWindow& window, const QRect& content, CChildFrame& frame)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress: {
        const auto& mouse = static_cast<QMouseEvent&>(event);
        if (mouse.button() != Qt::LeftButton || content.contains(mouse.position().toPoint())) return false;
        before = window.geometry();
        frame.OnNcLButtonDown();
        return false;
    }
    case QEvent::MouseButtonRelease:
        if (before) frame.OnCaptureChanged();
        before.reset();
        return false;
    case QEvent::Resize:
        return before && !correcting && resize(window, frame);
    default:
        return false;
    }
}

} // namespace vldv::host
