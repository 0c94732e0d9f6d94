#pragma once
#include "platform/app/CmdTarget.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QPointer>
#include <memory>

namespace vldv {
class CVldvApp;
}

class QLabel;
class QMdiSubWindow;

namespace vldv::host {

class CHelpWindow;
class CQtPaletteBar;
class COutputPane;
class CStartPage;

/// The workstation's main window: the area of frames, menus and toolbar of the active one, status bar and output pane.
class CMainWindow : public QMainWindow {
public:
    explicit CMainWindow(CVldvApp& app_);
    ~CMainWindow() override;

    QMdiArea& area() const noexcept { return *frames; }
    /// \param text  empty: that the program is ready
    void showStatus(const QString& text);
    void addOutput(const QString& line);
    /// Menus and tools of the frame that is active now.
    void rebuildMenus();
    /// To the active frame, the application, and then the window's own commands.
    bool route(unsigned id, CCmdUI* ui);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    bool ownCommand(unsigned id, CCmdUI* ui);
    QWidget* partOf(unsigned id);
    bool closeActive(CCmdUI* ui);
    void arrangeFrames(unsigned id, CCmdUI* ui);
    bool windowCommand(unsigned id, CCmdUI* ui);
    void rememberFocus();
    /// Of the widget that has the keys, before those of views.
    bool focusCommand(unsigned id, CCmdUI* ui);
    bool menuItems(unsigned first, std::vector<menu_item>& items);
    void onActivated(QMdiSubWindow* window);
    QList<QMdiSubWindow*> arrangedWindows(QMdiArea::WindowOrder order);
    void cascade();
    void tile(bool vertically);
    void installShortcuts();
    void rebuildTools();
    void rebuildMenusSoon();
    void fillMenus();
    void fillStartPage();
    void showHelp();
    /// Frees what was closed and shows the state of commands.
    void idle();

    CVldvApp& app;
    QMdiArea* frames;
    CStartPage* start;                     ///< over the area while it has no frame
    std::vector<std::wstring> shownRecent; ///< on the start page
    QPointer<CHelpWindow> help;
    COutputPane* lines;
    QDockWidget* pane;
    QToolBar* tools;
    QLabel* status;                          ///< what views say; descriptions of commands cover it for a while
    std::unique_ptr<CQtPaletteBar> palettes; ///< the scale that all views follow
    unsigned shownMenu = 0;
    bool menusWait = false;     ///< to be rebuilt once the running handler has ended
    QPointer<QWidget> keyboard; ///< what has the keys, or had them before a menu was opened
};

} // namespace vldv::host
