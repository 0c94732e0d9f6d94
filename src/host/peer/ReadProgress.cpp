#include "host/peer/ReadProgress.h"

#include <QApplication>
#include <QEvent>
#include <QProgressDialog>
#include <QWindow>
#include <cmath>

namespace vldv::host {

namespace {

constexpr qint64 patience = 500, lookPause = 50; // milliseconds until it appears, and between two looks at the user
constexpr int steps = 1000;

/// Whether an event for `receiver` is one for the box: for a part of it, or for its window of the system.
bool is_of(const QProgressDialog& box, const QObject* receiver)
{
    if (const auto* const window = qobject_cast<const QWindow*>(receiver)) return window == box.windowHandle();
    while (receiver && receiver != &box) receiver = receiver->parent();
    return receiver != nullptr;
}

} // namespace

CReadProgress::CReadProgress() = default;
CReadProgress::~CReadProgress() { end(); }

bool CReadProgress::tell(double done, QWidget* over)
{
    if (box && box->wasCanceled()) return false;
    if (box ? sinceTold.elapsed() < lookPause : !lasting.isValid() || lasting.elapsed() < patience) return true;
    if (!box) show(over);
    box->setValue(static_cast<int>(std::lround(done * steps)));
    QApplication::processEvents();
    sinceTold.start();
    return !box->wasCanceled();
}

void CReadProgress::show(QWidget* over)
{
    box = std::make_unique<QProgressDialog>(QStringLiteral("Reading…"), QStringLiteral("Cancel"), 0, steps, over);
    box->setObjectName(QStringLiteral("progress"));
    box->setWindowTitle(QStringLiteral("Velmira"));
    box->setWindowModality(Qt::ApplicationModal);
    box->setAutoReset(false); // it ends with the task, not with the last step
    onScreen = this;
    qApp->installEventFilter(this);
    QApplication::setOverrideCursor(Qt::ArrowCursor); // over that of waiting: there is something to press
    box->show();
}

void CReadProgress::end()
{
    lasting.invalidate();
    if (!box) return;
    QApplication::restoreOverrideCursor();
    qApp->removeEventFilter(this);
    onScreen = nullptr;
    box.reset();
    for (const QPointer<QWidget>& view : std::exchange(unpainted, {}))
        if (view) view->update();
}

// Timers of others tick again later. What else arrives for a window behind the box the toolkit keeps away from it.
bool CReadProgress::eventFilter(QObject* receiver, QEvent* event)
{
    return event->type() == QEvent::Timer && !is_of(*box, receiver);
}

} // namespace vldv::host
