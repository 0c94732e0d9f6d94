#pragma once
#include "platform/CmdTarget.h"

#include <QMainWindow>
#include <memory>

class CQtPaletteBar;
class CVldvApp;
class QMdiArea;
class QMdiSubWindow;
class QPlainTextEdit;

/// The workstation's main window: the area of frames, menus and toolbar of the active one, status bar and output pane.
class CMainWindow : public QMainWindow {
public:
    explicit CMainWindow(CVldvApp& app_);
    ~CMainWindow() override;

    QMdiArea& area() const noexcept { return *frames; }
    void showStatus(const QString& text);
    void addOutput(const QString& line);
    /// Menus and tools of the frame that is active now.
    void rebuildMenus();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    bool route(unsigned id, CCmdUI* ui);
    bool ownCommand(unsigned id, CCmdUI* ui);
    void onActivated(QMdiSubWindow* window);
    void installShortcuts();
    void rebuildTools();
    /// Frees what was closed and shows the state of commands.
    void idle();

    CVldvApp& app;
    QMdiArea* frames;
    QPlainTextEdit* lines;
    QDockWidget* pane;
    QToolBar* tools;
    std::unique_ptr<CQtPaletteBar> palettes; ///< the scale that all views follow
    unsigned shownMenu = 0;
};
