#include "host/window/QtFrame.h"

#include "host/menus/command_door.h"
#include "host/menus/qt_toolbar.h"
#include "host/window/SubimageTabs.h"
#include "host/window/tiling.h"
#include "platform/app/WinApp.h"
#include "view/ChildFrame.h"

#include <QAction>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMouseEvent>
#include <QStyle>
#include <QTimer>
#include <QToolBar>

namespace vldv::host {

namespace {

constexpr QSize firstSize(560, 400);

} // namespace

CQtFrame::CQtFrame(CWnd& logic_, QMdiArea& area) : CQtPeer(logic_, new QWidget)
{
    widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
    const QPoint place = cascaded(area.subWindowList().size());
    sub = area.addSubWindow(widget);
    sub->setGeometry(QRect(place, firstSize));
    widget->resize(firstSize); // for views that do not fit the frame to themselves, as tables and texts
    sub->setAttribute(Qt::WA_DeleteOnClose, false);
    sub->installEventFilter(this);
    // Closing by key is a command of the menus; twice the same key would do nothing.
    for (QAction* const action : sub->systemMenu()->actions()) action->setShortcut({});
    tabs = new CSubimageTabs(widget);
    tabs->setExpanding(false);
    tabs->setDrawBase(false);
    tabs->setUsesScrollButtons(true);
    tabs->hide();
    tools = new QToolBar(widget);
    tools->hide();
    const auto choose = [this](int tab) {
        if (auto* const frame = dynamic_cast<CChildFrame*>(&logic)) frame->OnSubimageSelChange(tab);
    };
    connect(tabs, &QTabBar::currentChanged, this, choose); // by mouse, wheel or key
    connect(tabs, &QTabBar::tabBarClicked, this, [this, choose](int tab) {
        if (tab == tabs->currentIndex()) choose(tab); // a bitmap over it may have been turned off only
    });
}

CQtFrame::~CQtFrame()
{
    if (sub) {
        sub->removeEventFilter(this);
        sub->hide();
        sub->deleteLater();
    }
}

QWidget* CQtFrame::outer() const { return sub ? static_cast<QWidget*>(sub) : widget.data(); }

CSize CQtFrame::decoration() const
{
    // Before the first layout the content has no place yet; afterwards the difference is what lies around it.
    const QMargins margins = sub->contentsMargins();
    const int caption = sub->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, sub);
    const int frame = sub->style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, sub);
    const int horizontal = std::max(margins.left() + margins.right(), 2 * frame);
    const int vertical =
        margins.top() + margins.bottom() > 2 * frame ? margins.top() + margins.bottom() : 2 * frame + caption;
    return {horizontal, vertical};
}

CSize CQtFrame::outerSize(CSize client) const
{
    const CSize around = decoration();
    return {client.cx + around.cx, client.cy + around.cy};
}

void CQtFrame::place(const CRect& rect)
{
    if (isMaximized()) return;
    // Frames have no parent window, so that their place is told in coordinates of the screen.
    QRect inside = qt_rect(rect);
    if (const QWidget* const parent = sub->parentWidget()) inside.moveTopLeft(parent->mapFromGlobal(inside.topLeft()));
    sub->setGeometry(inside);
    // So that the new size can be read back: the window lays its content out only when it is shown.
    const CSize around = decoration();
    widget->resize(std::max(rect.Width() - around.cx, 0), std::max(rect.Height() - around.cy, 0));
    tellSizeLater();
}

CRect CQtFrame::windowRect() const
{
    const QPoint corner = sub->parentWidget() ? sub->parentWidget()->mapToGlobal(sub->pos()) : sub->pos();
    return CRect({corner.x(), corner.y()}, CSize{sub->width(), sub->height()});
}

void CQtFrame::show(bool on)
{
    sub->setVisible(on);
    widget->setVisible(on);
}

QSize CQtFrame::sizeInside(const QSize& room) const
{
    const QSize fitting = sub->size().boundedTo(room);
    const auto* const frame = dynamic_cast<const CChildFrame*>(&logic);
    return frame ? qt_rect(frame->OnSizing(view::sizeBottomRight, rect_of({{}, fitting}))).size() : fitting;
}

void CQtFrame::bringToFront()
{
    if (QMdiArea* const area = sub->mdiArea()) area->setActiveSubWindow(sub);
    // A view that fills the screen is a window beside the main one, and its frame is empty.
    const auto* const frame = dynamic_cast<const CFrameWnd*>(&logic);
    const CView* const view = frame ? frame->GetActiveView() : nullptr;
    if (view && view->isFullScreen() && view->getPeer()) view->getPeer()->bringToFront();
}

void CQtFrame::setTabs(const std::vector<std::wstring>& names, int selected, bool visible)
{
    const QSignalBlocker quiet(tabs);
    if (names != tabNames) {
        // A bar that is seen would lay all its tabs out again for each that comes or goes.
        tabs->hide();
        while (tabs->count() > 0) tabs->removeTab(tabs->count() - 1);
        for (const std::wstring& name : names) {
            const int tab = tabs->addTab(QString::fromStdWString(name));
            tabs->setTabToolTip(tab, QString::fromStdWString(name));
        }
        tabNames = names;
    }
    if (selected >= 0 && selected < tabs->count()) tabs->setCurrentIndex(selected);
    tabs->setVisible(visible);
    placeStrips();
}

void CQtFrame::placeStrips()
{
    tabs->setGeometry(0, 0, widget->width(), CSubimgSwitch::height);
    tools->setGeometry(0, tabs->isHidden() ? 0 : CSubimgSwitch::height, widget->width(), tools->sizeHint().height());
}

int CQtFrame::setToolbar(unsigned id, bool large, const std::vector<toolbar_button>& added)
{
    clear_toolbar(*tools);
    size_toolbar(*tools, large);
    fill_toolbar(*tools, toolbar_resource(id), ownRoute(), nullptr);
    add_buttons(*tools, added, ownRoute());
    tools->setVisible(!tools->actions().isEmpty());
    placeStrips();
    return tools->isHidden() ? 0 : tools->sizeHint().height();
}

void CQtFrame::refreshTools()
{
    if (!tools->isHidden()) refresh_toolbar(*tools, ownRoute());
}

/// The tools of a frame are about its own view, whichever frame is active.
std::function<bool(unsigned, CCmdUI*)> CQtFrame::ownRoute()
{
    return [this](unsigned id, CCmdUI* ui) {
        CWinApp* const app = AfxGetApp();
        const auto send = [&] { return logic.OnCmdMsg(id, ui) || (app && app->OnCmdMsg(id, ui)); };
        return ui ? send() : run_command(id, send);
    };
}

bool CQtFrame::eventFilter(QObject* watched, QEvent* event)
{
    if (sub && watched == sub.data()) {
        if (event->type() == QEvent::Close) {
            // The logic decides, and frees the window between two events.
            event->ignore();
            QTimer::singleShot(0, this, [this] { logic.OnClose(); });
            return true;
        }
        auto* const frame = dynamic_cast<CChildFrame*>(&logic);
        if (!frame) return false;
        const QRect inside(widget->mapTo(sub.data(), QPoint(0, 0)), widget->size());
        if (event->type() == QEvent::MouseButtonDblClick) {
            if (static_cast<QMouseEvent*>(event)->position().y() >= inside.top()) return false;
            frame->OnNcLButtonDblClk();
            return true;
        }
        return drag.handle(*event, *sub, inside, *frame);
    }
    if (watched == widget.data()) {
        if (event->type() == QEvent::Resize) {
            placeStrips();
            tellSizeLater();
            return false;
        }
        if (event->type() == QEvent::Paint) return false; // tabs and view cover it
    }
    return CQtPeer::eventFilter(watched, event);
}

} // namespace vldv::host
