#pragma once
#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <functional>

/// A display of its own with the workstation on it: hands and eyes of a test.
class desktop {
public:
    /// Starts a display without a screen. To be called before the toolkit. \return false when it cannot
    static bool start_display();
    static void stop_display();

    /// Starts the workstation at the upper left corner with settings of its own in `folder`.
    desktop(const QString& folder, const QStringList& files);
    ~desktop();

    /// What is on the screen now.
    QImage look() const;
    /// Looks until `expected` holds, at most half a minute; keeps the last picture as out/e2e/NAME.png. \return it held
    bool sees(const char* name, const std::function<bool(const QImage&)>& expected) const;

    void press(const QString& keys) const { act({"key", keys}); }
    void type(const QString& text) const { act({"type", "--delay", "5", text}); }
    /// Gives the keys to the main window, as a window manager does when a dialog closes.
    void takeFocus() const;
    void click(QPoint at) const;
    void moveTo(QPoint at) const;
    /// With the left button, and a key held or none.
    void drag(QPoint from, QPoint to, const QString& modifier = {}) const;
    /// \param notches  away from the user positive
    void turnWheel(QPoint at, int notches, const QString& modifier) const;

    /// \return the exit status, or -1 when it did not end
    int waitForEnd();
    /// As a session does that ends. \return as `waitForEnd`
    int terminate();

private:
    /// \return false when the tool could not; all that follows from what it did has happened
    bool act(const QStringList& what) const;
    /// Waits until neither the workstation nor the display has anything to do; not for long, as a file dialog over a
    /// folder in which others write never comes to rest.
    void settle() const;

    QProcess program;
};
