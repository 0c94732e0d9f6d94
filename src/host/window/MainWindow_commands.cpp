// Commands: to the fields and panes that have the keys, the active frame, the application, and the window itself.
#include "document/StorageDocTemplate.h"
#include "entry/Application.h"
#include "host/dialogs/about.h"
#include "host/menus/command_door.h"
#include "host/menus/window_menu.h"
#include "host/window/MainWindow.h"
#include "host/window/OutputPane.h"
#include "host/window/QtFrame.h"
#include "host/window/tiling.h"
#include "resources/commands.h"

#include <QDockWidget>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

namespace vldv::host {

namespace {

constexpr int freeInterval = 0; // milliseconds: between two events

} // namespace

bool CMainWindow::route(unsigned id, CCmdUI* ui)
{
    const auto send = [&] { return focusCommand(id, ui) || app.routeCommand(id, ui) || ownCommand(id, ui); };
    const bool handled = ui ? send() : run_command(id, send);
    if (!ui) QTimer::singleShot(freeInterval, this, [this] { app.freeClosed(); });
    return handled;
}

void CMainWindow::rememberFocus()
{
    if (QWidget* const now = focusWidget(); now && now != menuBar()) keyboard = now;
}

bool CMainWindow::focusCommand(unsigned id, CCmdUI* ui)
{
    rememberFocus();
    if (!keyboard || !keyboard->isVisible()) return false;
    if (auto* const field = qobject_cast<QLineEdit*>(keyboard)) return field_command(*field, id, ui);
    return keyboard == lines && !lines->document()->isEmpty() && view::pane_command(*lines, id, ui);
}

/// A row of the View menu that shows and hides a part of the window.
QWidget* CMainWindow::partOf(unsigned id)
{
    switch (id) {
    case commands::output:
        return pane;
    case commands::statusBar:
        return statusBar();
    case commands::toolbar:
        return tools;
    default:
        return nullptr;
    }
}

bool CMainWindow::ownCommand(unsigned id, CCmdUI* ui)
{
    if (QWidget* const part = partOf(id)) {
        if (ui)
            ui->SetCheck(part->isVisible());
        else
            part->setVisible(!part->isVisible());
        return true;
    }
    switch (id) {
    case commands::close:
        return closeActive(ui);
    case commands::cascade:
    case commands::tileHorizontally:
    case commands::tileVertically:
        arrangeFrames(id, ui);
        return true;
    case commands::about:
        if (!ui) show_about(this);
        return true;
    case commands::help:
        if (!ui) showHelp();
        return true;
    default:
        return windowCommand(id, ui);
    }
}

bool CMainWindow::closeActive(CCmdUI* ui)
{
    CFrameWnd* const active = app.activeFrame();
    if (ui)
        ui->Enable(active != nullptr);
    else if (active)
        active->OnClose();
    return active != nullptr;
}

void CMainWindow::arrangeFrames(unsigned id, CCmdUI* ui)
{
    if (ui)
        ui->Enable(!frames->subWindowList().isEmpty());
    else if (id == commands::cascade)
        cascade();
    else
        tile(id == commands::tileVertically);
}

/// A numbered row of the Window menu.
bool CMainWindow::windowCommand(unsigned id, CCmdUI* ui)
{
    const std::size_t index = id - commands::firstWindow;
    if (id < commands::firstWindow || index >= app.frames().size()) return false;
    CFrameWnd& frame = *app.frames()[index];
    if (ui)
        ui->SetCheck(&frame == app.activeFrame());
    else
        frame.ActivateFrame();
    return true;
}

bool CMainWindow::menuItems(unsigned first, std::vector<menu_item>& items)
{
    if (first != commands::firstWindow) return app.routeMenuItems(first, items);
    items = window_rows(app.frames(), app.activeFrame(), first);
    return true;
}

/// The windows that are neither hidden nor minimized, in no case maximized.
QList<QMdiSubWindow*> CMainWindow::arrangedWindows(QMdiArea::WindowOrder order)
{
    QList<QMdiSubWindow*> shown;
    for (QMdiSubWindow* const window : frames->subWindowList(order))
        if (window->isVisible() && !window->isMinimized()) shown << window;
    for (QMdiSubWindow* const window : shown)
        if (window->isMaximized()) window->showNormal();
    return shown;
}

/// In the order in which they lie, so that the caption of each is seen. What fits keeps its size.
void CMainWindow::cascade()
{
    const QSize area = frames->viewport()->size();
    const QList<QMdiSubWindow*> shown = arrangedWindows(QMdiArea::StackingOrder);
    for (const auto& frame : app.frames()) {
        const auto* const peer = dynamic_cast<CQtFrame*>(frame->getPeer());
        const auto number = peer ? shown.indexOf(peer->subWindow()) : -1;
        if (number < 0) continue;
        const QPoint corner = cascaded(number);
        const QSize size = peer->subWindow()->size();
        const bool fits = size.boundedTo(area) == size;
        peer->subWindow()->setGeometry(
            {corner, fits ? size : peer->sizeInside({area.width() - corner.x(), area.height() - corner.y()})});
    }
}

void CMainWindow::tile(bool vertically)
{
    const QList<QMdiSubWindow*> shown = arrangedWindows(QMdiArea::CreationOrder);
    const std::vector<QRect> places = tiles(static_cast<int>(shown.size()), frames->viewport()->size(), vertically);
    for (qsizetype i = 0; i < shown.size(); ++i) shown[i]->setGeometry(places[static_cast<std::size_t>(i)]);
}

} // namespace vldv::host
