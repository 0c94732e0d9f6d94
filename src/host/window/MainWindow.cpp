#include "host/window/MainWindow.h"

#include "base/variables/global_option.h"
#include "document/StorageDocTemplate.h"
#include "document/examples/examples.h"
#include "entry/Application.h"
#include "entry/open_example.h"
#include "entry/open_files.h"
#include "host/dialogs/HelpWindow.h"
#include "host/menus/command_door.h"
#include "host/menus/qt_toolbar.h"
#include "host/peer/path_text.h"
#include "host/window/OutputPane.h"
#include "host/window/QtFrame.h"
#include "host/window/QtPaletteBar.h"
#include "host/window/StartPage.h"
#include "host/window/tiling.h"
#include "platform/files/paths.h"
#include "resources/commands.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <algorithm>
#include <utility>

namespace vldv::host {

namespace {

constexpr int outputHeight = 110; // pixels
constexpr int idleInterval = 100; // milliseconds

/// The name of a file, with its folder where another one has the same name.
std::wstring telling_name(const std::wstring& path, const std::vector<std::wstring>& all)
{
    const std::wstring name = platform::file_name(path);
    const bool isOnly = std::ranges::count(all, name, platform::file_name) == 1;
    return isOnly ? name : name + L" in " + path.substr(0, path.size() - name.size());
}

} // namespace

CMainWindow::CMainWindow(CVldvApp& app_)
    : app(app_),
      frames(new QMdiArea(this)),
      start(new CStartPage(frames)),
      lines(new COutputPane),
      pane(new QDockWidget(QStringLiteral("Output"), this)),
      tools(addToolBar(QStringLiteral("Main"))),
      status(new QLabel),
      palettes(std::make_unique<CQtPaletteBar>(*tools))
{
    setWindowTitle(QStringLiteral("Velmira"));
    setCentralWidget(frames);
    setAcceptDrops(true);
    frames->setActivationOrder(QMdiArea::ActivationHistoryOrder); // closing one leads back to the one before
    frames->setAcceptDrops(false);
    frames->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    frames->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    pane->setWidget(lines);
    pane->setObjectName(QStringLiteral("output"));
    addDockWidget(Qt::BottomDockWidgetArea, pane);
    resizeDocks({pane}, {outputHeight}, Qt::Vertical);
    pane->hide();
    tools->setObjectName(QStringLiteral("main"));
    showStatus({});
    statusBar()->addWidget(status, 1);
    connect(qApp, &QApplication::focusChanged, this, [this] { rememberFocus(); });
    connect(frames, &QMdiArea::subWindowActivated, this, &CMainWindow::onActivated);
    auto* const collector = new QTimer(this);
    connect(collector, &QTimer::timeout, this, [this] { idle(); });
    collector->start(idleInterval);
    rebuildMenus();
    installShortcuts();
    fillStartPage();
}

CMainWindow::~CMainWindow()
{
    // The area tells of windows that lose their activity while it goes.
    frames->disconnect(this);
    qApp->disconnect(this); // the focus wanders while widgets go
}

void CMainWindow::showStatus(const QString& text) { status->setText(text.isEmpty() ? QStringLiteral("Ready") : text); }

void CMainWindow::addOutput(const QString& line)
{
    lines->appendPlainText(line);
    pane->show();
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
    rebuildMenusSoon();
}

/// A file of many images activates a frame for each: the menus follow the last one alone.
void CMainWindow::rebuildMenusSoon()
{
    if (std::exchange(menusWait, true)) return;
    after_commands([self = QPointer(this)] {
        if (!self) return;
        self->menusWait = false;
        self->fillMenus();
    });
}

void CMainWindow::rebuildMenus()
{
    if (command_runs()) return rebuildMenusSoon();
    fillMenus();
}

void CMainWindow::fillMenus()
{
    const CFrameWnd* const active = app.activeFrame();
    shownMenu = active && active->menuId() ? active->menuId() : mainMenu;
    fill_menu_bar(*menuBar(), menu_resource(shownMenu),
                  {.route = [this](unsigned id, CCmdUI* ui) { return route(id, ui); },
                   .items = [this](unsigned first, std::vector<menu_item>& items) { return menuItems(first, items); }});
    rebuildTools();
}

void CMainWindow::rebuildTools()
{
    const auto toHandler = [this](unsigned id, CCmdUI* ui) { return route(id, ui); };
    clear_toolbar(*tools);
    size_toolbar(*tools, !static_cast<bool>(base::global_option("small_toolbar")));
    // All of them, so that the palette stays where it is.
    fill_toolbar(*tools, toolbar_resource(mainMenu), toHandler, palettes.get(), unhandled::disabled);
    // The view's own tools stand here unless its frame has them.
    if (static_cast<int>(base::global_option("local_toolbar")) != 0 || shownMenu == mainMenu) return;
    if (!toolbar_resource(shownMenu).empty()) tools->addSeparator();
    fill_toolbar(*tools, toolbar_resource(shownMenu), toHandler, nullptr);
    if (CFrameWnd* const active = app.activeFrame()) add_buttons(*tools, active->addedButtons(), toHandler);
}

void CMainWindow::showHelp()
{
    if (!help) {
        help = new CHelpWindow(this);
        help->setAttribute(Qt::WA_DeleteOnClose);
    }
    help->show();
    help->raise();
    help->activateWindow();
}

void CMainWindow::fillStartPage()
{
    std::vector<CStartPage::entry> recent, examples;
    shownRecent = app.recentFiles();
    for (const std::wstring& path : shownRecent)
        recent.push_back({QString::fromStdWString(telling_name(path, shownRecent)), QString::fromStdWString(path),
                          [this, path] { entry::open_files(app, std::span(&path, 1)); }});
    for (const document::example_row& row : document::example_table())
        if (CStorageDocTemplate::showsDimensions(row.dimensions))
            examples.push_back({QString::fromUtf8(row.title), QStringLiteral("Opens the bundled example"),
                                [this, &row] { entry::open_example(app, row); }});
    start->setEntries(recent, examples, [this] { app.routeCommand(commands::open, nullptr); });
    start->setFocus(); // or the output pane would have the keys
}

void CMainWindow::idle()
{
    app.freeClosed();
    if (const bool isEmpty = app.frames().empty(); isEmpty == start->isHidden()) {
        start->setVisible(isEmpty);
        if (isEmpty) fillStartPage();
    } else if (isEmpty && shownRecent != app.recentFiles()) {
        fillStartPage(); // a file did not open
    }
    refresh_toolbar(*tools, [this](unsigned id, CCmdUI* ui) { return route(id, ui); });
    for (const auto& frame : app.frames())
        if (auto* const peer = dynamic_cast<CQtFrame*>(frame->getPeer())) peer->refreshTools();
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
        shortcut->setContext(Qt::ApplicationShortcut); // a view in full screen is a window of its own
        connect(shortcut, &QShortcut::activated, this, [this, sent = id] { route(sent, nullptr); });
    }
    for (const char* const next : {"Ctrl+Tab", "Ctrl+F6", "Ctrl+Shift+Tab", "Ctrl+Shift+F6"}) {
        const QKeySequence sequence(QString::fromLatin1(next));
        const int step = sequence[0].keyboardModifiers().testFlag(Qt::ShiftModifier) ? -1 : 1;
        connect(new QShortcut(sequence, this), &QShortcut::activated, this,
                [this, step] { activate_neighbour(*frames, step); });
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
    std::vector<std::wstring> paths;
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile()) paths.push_back(path_of_url(url));
    run_named("Open", [&] { entry::open_files(app, paths); });
}

} // namespace vldv::host
