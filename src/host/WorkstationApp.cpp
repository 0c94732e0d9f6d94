#include "host/WorkstationApp.h"

#include <QTimer>
#include <new>
#include <utility>

namespace vldv::host {

bool CWorkstationApp::notify(QObject* receiver, QEvent* event)
{
    std::string reason;
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::bad_alloc&) {
        reason = "There is not enough memory for this.";
    } catch (const std::exception& failure) {
        reason = failure.what();
    }
    // A painter or a mouse grab may still be open here: the message waits for the next event, and a paint that fails
    // again and again is told once.
    if (std::exchange(isTold, true) || !onFailure) return false;
    QTimer::singleShot(0, this, [this, reason] {
        onFailure(reason);
        isTold = false;
    });
    return false;
}

} // namespace vldv::host
