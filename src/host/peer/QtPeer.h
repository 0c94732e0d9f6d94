#pragma once
#include "platform/app/Window.h"

#include <QPointer>
#include <QWidget>
#include <map>

class QKeyEvent;
class QTimer;

namespace vldv::host {

/// The toolkit's side of a window: one widget and what its logic asks of it. Events go back to the logic; a new size is
/// told once, after the handler that runs.
class CQtPeer : public QObject, public IWindowPeer {
public:
    CQtPeer(CWnd& logic_, QWidget* widget_);
    ~CQtPeer() override;

    CRect clientRect() const override;
    CRect windowRect() const override;
    void place(const CRect& rect) override;
    CSize outerSize(CSize client) const override { return client; }
    CPoint clientToScreen(CPoint point) const override;
    void show(bool on) override { outer()->setVisible(on); }
    bool isVisible() const override { return outer()->isVisible(); }
    bool isMinimized() const override { return outer()->isMinimized(); }
    bool isMaximized() const override { return outer()->isMaximized(); }
    void bringToFront() override;
    void setTitle(const std::wstring& text) override;
    void setFullScreen(bool on, const CRect& screenRect) override;
    void invalidate(const CRgn* region, bool erase) override;
    void update() override;
    std::unique_ptr<CDC> clientDC() override;
    void setCapture(bool on) override;
    bool hasCapture() const override { return captured; }
    void setFocus() override { widget->setFocus(); }
    bool hasFocus() const override;
    void setCursor(cursor_shape shape) override;
    void setTimer(unsigned id, unsigned milliseconds) override;
    void killTimer(unsigned id) override;
    void flushTimers() override;

    QWidget* content() const noexcept { return widget; }

protected:
    /// The widget that is placed and shown: a decoration around `content`, or the content itself.
    virtual QWidget* outer() const { return widget; }
    bool eventFilter(QObject* watched, QEvent* event) override;
    void tellSizeLater();

    CWnd& logic;
    QPointer<QWidget> widget;

private:
    bool handleMouse(QEvent& event);
    bool handleKeyPress(const QKeyEvent& press);
    bool handleKeyRelease(const QKeyEvent& release);
    bool handleWheel(const QWheelEvent& wheel);
    void closeLater();
    void paint(const QRect& part);
    void paintLater();

    std::map<unsigned, std::unique_ptr<QTimer>> timers;
    CSize toldSize{-1, -1};
    bool sizePending = false, captured = false, erases = true, fillsScreen = false, wasPainted = false;
    QPointer<QWidget> parentBeforeFullScreen;
};

QRect qt_rect(const CRect& rect);
CRect rect_of(const QRect& rect);
/// Null or a peer's content widget.
QWidget* widget_of(const CWnd* window);

} // namespace vldv::host
