#include "host/MainWindow.h"

#include "entry/Application.h"
#include "host/QtFrame.h"
#include "host/QtPaletteBar.h"
#include "host/qt_menus.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

namespace {

enum command : unsigned {
    cmdOutput = 10205,
    cmdClose = 57602,
    cmdCascade = 57650,
    cmdTileHorizontally = 57651,
    cmdTileVertically = 57652,
    cmdAbout = 57664,
    cmdToolbar = 59392,
    cmdStatusBar = 59393,
    cmdFirstWindow = 65280,
};
constexpr int freeInterval = 0; // milliseconds: between two events

} // namespace

CMainWindow::CMainWindow(CVldvApp& app_)
    : app(app_),
      frames(new QMdiArea(this)),
      lines(new QPlainTextEdit),
      pane(new QDockWidget(QStringLiteral("Output"), this)),
      tools(addToolBar(QStringLiteral("Main"))),
      palettes(std::make_unique<CQtPaletteBar>(*tools))
{
    setWindowTitle(QStringLiteral("Velmira"));
    setCentralWidget(frames);
    setAcceptDrops(true);
    frames->setAcceptDrops(false);
    frames->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    frames->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    lines->setReadOnly(true);
    pane->setWidget(lines);
    pane->setObjectName(QStringLiteral("output"));
    addDockWidget(Qt::BottomDockWidgetArea, pane);
    pane->hide();
    tools->setObjectName(QStringLiteral("main"));
    statusBar()->showMessage(QStringLiteral("Ready"));
    connect(frames, &QMdiArea::subWindowActivated, this, &CMainWindow::onActivated);
    auto* const collector = new QTimer(this);
    connect(collector, &QTimer::timeout, this, [this] { app.freeClosed(); });
    collector->start(100);
    rebuildMenus();
    installShortcuts();
}

CMainWindow::~CMainWindow()
{
    // The area tells of windows that lose their activity while it goes.
    frames->disconnect(this);
}

void CMainWindow::showStatus(const QString& text) { statusBar()->showMessage(text); }

void CMainWindow::addOutput(const QString& line)
{
    lines->appendPlainText(line);
    pane->show();
}

bool CMainWindow::route(unsigned id, CCmdUI* ui)
{
    const bool handled = app.routeCommand(id, ui) || ownCommand(id, ui);
    if (!ui) QTimer::singleShot(freeInterval, this, [this] { app.freeClosed(); });
    return handled;
}

bool CMainWindow::ownCommand(unsigned id, CCmdUI* ui)
{
    CFrameWnd* const active = app.activeFrame();
    switch (id) {
    case cmdClose:
        if (ui)
            ui->Enable(active != nullptr);
        else if (active)
            active->OnClose();
        return active != nullptr;
    case cmdCascade:
    case cmdTileHorizontally:
    case cmdTileVertically:
        if (ui)
            ui->Enable(!frames->subWindowList().isEmpty());
        else if (id == cmdCascade)
            frames->cascadeSubWindows();
        else
            frames->tileSubWindows();
        return true;
    case cmdOutput:
        if (ui)
            ui->SetCheck(pane->isVisible());
        else
            pane->setVisible(!pane->isVisible());
        return true;
    case cmdStatusBar:
        if (ui)
            ui->SetCheck(statusBar()->isVisible());
        else
            statusBar()->setVisible(!statusBar()->isVisible());
        return true;
    case cmdToolbar:
        if (ui)
            ui->SetCheck(tools->isVisible());
        else
            tools->setVisible(!tools->isVisible());
        return true;
    case cmdAbout:
        if (!ui)
            QMessageBox::about(this, QStringLiteral("About Velmira"),
                               QStringLiteral("Velmira opens, measures and processes what a scanning-probe microscope "
                                              "recorded."));
        return true;
    default:
        break;
    }
    const std::size_t index = id - cmdFirstWindow;
    if (id < cmdFirstWindow || index >= app.frames().size()) return false;
    CFrameWnd& frame = *app.frames()[index];
    if (ui) {
        ui->SetText(QString::fromStdWString(frame.GetWindowText()).replace('&', "&&").toUtf8().constData());
        ui->SetCheck(&frame == active);
    } else {
        frame.ActivateFrame();
    }
    return true;
}

void CMainWindow::onActivated(QMdiSubWindow* window)
{
    CFrameWnd* found = nullptr;
    for (const auto& frame : app.frames())
        if (const auto* peer = dynamic_cast<CQtFrame*>(frame->getPeer()); peer && peer->subWindow() == window)
            found = frame.get();
    // The area also loses its active window when the program itself is left.
    if (found || !window) app.setActiveFrame(found ? found : app.activeFrame());
    if (found && found->GetActiveView()) found->GetActiveView()->SetFocus();
    rebuildMenus();
}

void CMainWindow::rebuildMenus()
{
    const CFrameWnd* const active = app.activeFrame();
    shownMenu = active && active->menuId() ? active->menuId() : mainMenu;
    host::fill_menu_bar(*menuBar(), menu_resource(shownMenu),
                        [this](unsigned id, CCmdUI* ui) { return route(id, ui); });
    tools->clear();
    bool separates = false;
    for (const unsigned id : toolbar_resource(mainMenu)) {
        if (id == 0) {
            separates = true;
            continue;
        }
        if (id == CPaletteBar::commandId) {
            if (!tools->actions().isEmpty()) tools->addSeparator();
            tools->addAction(palettes.get());
            continue;
        }
        QString text;
        for (const menu_row& row : menu_resource(102))
            if (row.id == id) text = QString::fromUtf8(row.text).remove('&').remove("...");
        CCmdUI state{.m_nID = id};
        if (text.isEmpty() || !route(id, &state)) continue;
        if (separates && !tools->actions().isEmpty()) tools->addSeparator();
        separates = false;
        QAction* const action = tools->addAction(text);
        action->setEnabled(state.enabled || id == 57601);
        connect(action, &QAction::triggered, this, [this, id] { route(id, nullptr); });
    }
}

/// Shortcuts of all menus, each sent to whoever handles it now.
void CMainWindow::installShortcuts()
{
    std::map<QString, unsigned> keys;
    for (const unsigned menu : menu_resource_ids())
        for (const menu_row& row : menu_resource(menu))
            if (*row.shortcut) keys.emplace(QString::fromLatin1(row.shortcut), row.id);
    for (const auto& [keySequence, id] : keys) {
        if (keySequence.size() == 1) continue; // plain letters belong to the view
        auto* const shortcut = new QShortcut(QKeySequence(keySequence), this);
        connect(shortcut, &QShortcut::activated, this, [this, sent = id] { route(sent, nullptr); });
    }
}

void CMainWindow::closeEvent(QCloseEvent* event)
{
    if (!app.mayExit()) return event->ignore();
    app.closeAllFrames();
    event->accept();
}

void CMainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void CMainWindow::dropEvent(QDropEvent* event)
{
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile()) app.OpenDocumentFile(url.toLocalFile().toStdWString().c_str());
}
