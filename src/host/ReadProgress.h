#pragma once
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <memory>
#include <vector>

class QProgressDialog;
class QWidget;

/// How much of a slow task is done, with a button that cancels it. Appears when the task has lasted a while, so that a
/// quick one shows nothing. While it is there nothing else is told anything: no input, no timer, no repaint, because
/// what a window shows may be half read.
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

private:
    bool eventFilter(QObject* receiver, QEvent* event) override;
    void show(QWidget* over);

    QElapsedTimer lasting, sinceTold;
    std::unique_ptr<QProgressDialog> box;
    std::vector<QPointer<QWidget>> resting; ///< windows that are not painted meanwhile
    static inline const CReadProgress* onScreen = nullptr;
};
