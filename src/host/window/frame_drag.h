#pragma once
#include "platform/draw/geometry.h"

#include <QRect>
#include <optional>

class CChildFrame;
class QEvent;
class QMdiSubWindow;

namespace vldv::host {

/// Follows the user's hand at the border and caption of a frame: tells the frame when it begins and ends, and keeps
/// the shape that the frame wants meanwhile.
class frame_drag {
public:
    /// An event of the window around `content`. \return true: it is done with
    bool handle(QEvent& event, QMdiSubWindow& window, const QRect& content, CChildFrame& frame);

private:
    bool resize(QMdiSubWindow& window, CChildFrame& frame);

    std::optional<QRect> before; ///< geometry when the button went down; none while it is up
    bool correcting = false;
};

/// The edge, a `view::sizing_edge`, whose drag led from one rectangle to the other; 0 for none.
int dragged_edge(const QRect& from, const QRect& to);

} // namespace vldv::host
