#pragma once
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <memory>
#include <vector>

class QProgressDialog;
class QWidget;

namespace vldv::host {

/// How much of a slow task is done, with a button that cancels it. Appears when the task has lasted a while, so that a
/// quick one shows nothing. While it is there no view is told anything: no input, no timer, no repaint, because what it
/// shows may be half read. The windows themselves, their menus and frames, are painted.
class CReadProgress : public QObject {
public:
    CReadProgress();
    ~CReadProgress() override;

    /// The task starts now.
    void begin() { lasting.start(); }
    /// Shows `done`, 0 to 1, over `over`, and lets the user press Cancel; some twenty times a second however often it
    /// is called. \return false when Cancel was pressed, and from then on until the next task
    bool tell(double done, QWidget* over);
    /// The task has ended, one way or the other.
    void end();
    /// Whether one is on the screen.
    static bool isShown() noexcept { return onScreen != nullptr; }
    /// Keeps what a view shows as it is while a progress is on the screen, and has it painted afterwards.
    static void repaintLater(QWidget& view) { onScreen->unpainted.emplace_back(&view); }

private:
    bool eventFilter(QObject* receiver, QEvent* event) override;
    void show(QWidget* over);

    QElapsedTimer lasting, sinceTold;
    std::unique_ptr<QProgressDialog> box;
    std::vector<QPointer<QWidget>> unpainted; ///< views that were to be painted meanwhile
    static inline CReadProgress* onScreen = nullptr;
};

} // namespace vldv::host
