// Menus, toolbars, panes and commands of the main window over views of the test's own, on the offscreen platform.
#include "base/text.h"
#include "host/dialogs/VariableGrid.h"
#include "host/menus/command_door.h"
#include "host/window/OutputPane.h"
#include "platform/app/Document.h"
#include "resources/commands.h"
#include "support/allocation_count.h"
#include "view/ChildFrame.h"
#include "view/DCView.h"
#include "view/panes/PaneView.h"
#include "view/panes/TextView.h"
#include "workstation_fixture.h"

#include <QClipboard>
#include <QDockWidget>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QTextBlock>
#include <QToolBar>
#include <gtest/gtest.h>
#include <thread>

namespace {

constexpr unsigned surfaceMenu = 102, textMenu = 115, firstFunction = 9192, lastFunction = 9999, cmdDuplicate = 10151;

class telling_host : public host::CQtHost {
public:
    using host::CQtHost::CQtHost;
    void messageBox(const std::string& text, message_icon) override { messages.push_back(text); }
    std::vector<std::string> messages;
};

/// A view with a tree of functions, some of which it handles, and a button with a picture.
class function_view : public CDCView {
public:
    bool AppendMenuItems(unsigned first, std::vector<menu_item>& items) override
    {
        if (first != firstFunction) return CDCView::AppendMenuItems(first, items);
        ++asked;
        const auto leaf = [](unsigned id, const char* text) { return menu_item{.id = id, .text = text}; };
        const menu_item separator{.kind = menu_kind::separator};
        items = {leaf(9192, "My macro"),
                 separator,
                 {.kind = menu_kind::popup,
                  .text = "Filters",
                  .children = {leaf(9193, "Median"), separator, leaf(9194, "&Flatten"), separator, leaf(9195, "gone")}},
                 separator,
                 {.kind = menu_kind::popup, .text = "Nothing", .children = {leaf(9196, "gone")}}};
        return true;
    }
    long OnResetToolbar(std::vector<toolbar_button>& buttons) override
    {
        buttons = {
            {.id = 9194, .text = "Flatten", .hint = "Takes a plane off", .picture = {{2, 1}, {0xFFFF0000, 0xFF0000FF}}},
            {.id = 9195, .text = "gone"}};
        return 0;
    }
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override
    {
        if (id == cmdDuplicate && !ui) throw std::bad_alloc();
        if (id == 9193 && !ui) throw std::bad_alloc();
        if (id == cmdDuplicate) return true;
        if (id < firstFunction || id > lastFunction) return CDCView::OnCmdMsg(id, ui);
        if (ui)
            ++probed[id];
        else
            ran.push_back(id);
        if (!ui && onRun) onRun();
        return id <= 9194;
    }

    int asked = 0;
    std::map<unsigned, int> probed;
    std::vector<unsigned> ran;
    std::function<void()> onRun; ///< what a command does
};

class clicked_table : public CTableView {
public:
    void OnUpdate(CView*, std::uint32_t, const hint_object&) override { showTable(rows); }
    void OnTableHeading(unsigned column) override { told.push_back("heading " + std::to_string(column)); }
    void OnTableRow(unsigned row) override { told.push_back("row " + std::to_string(row)); }
    void OnTableRowActivated(unsigned row) override { told.push_back("activated " + std::to_string(row)); }
    std::vector<std::string> take() { return std::exchange(told, {}); }
    table_rows rows = {{L"L_skel", L"H"}, {L"1", L"2"}, {L"3", L"4"}, {L"5", L"6"}};

private:
    std::vector<std::string> told;
};

class SeamsTest : public MainWindowTest<telling_host> {
protected:
    SeamsTest() { document.autoDelete = false; }
    ~SeamsTest() override
    {
        app.closeAllFrames();
        settle(); // views go before their document
    }
    template <class View>
    View& open(unsigned menuId)
    {
        auto owned = std::make_unique<View>();
        View& view = *owned;
        CFrameWnd* const frame = app.addFrame(std::make_unique<CChildFrame>());
        frame->LoadFrame(nullptr, menuId, std::move(owned));
        document.AddView(&view);
        view.OnInitialUpdate();
        frame->ActivateFrame();
        settle();
        return view;
    }
    QMenu& popup(const char* title)
    {
        for (const QAction* action : window.menuBar()->actions())
            if (action->text() == title) return *action->menu();
        throw std::runtime_error(std::string("no popup ") + title);
    }
    static QStringList texts(const QMenu& menu)
    {
        QStringList out;
        for (const QAction* action : menu.actions())
            out << (action->isSeparator() ? QStringLiteral("-") : action->text().section('\t', 0, 0));
        return out;
    }
    QToolBar& tools() { return *window.findChild<QToolBar*>(QStringLiteral("main")); }

    CDocument document;
};

TEST_F(SeamsTest, DynamicMenusAreTreesThatAreAskedOnceAnOpening)
{
    auto& view = open<function_view>(surfaceMenu);
    EXPECT_EQ(view.probed[9193], 0) << "nothing of it before it opens";
    EXPECT_EQ(view.asked, 0);
    view.probed.clear();
    QMenu& menu = popup("&Mathematics");
    menu.popup({0, 0});
    EXPECT_EQ(view.asked, 1);
    EXPECT_EQ(view.probed, (std::map<unsigned, int>{{9192, 1}, {9193, 1}, {9194, 1}, {9195, 1}, {9196, 1}}))
        << "each entry once, and no number without one";
    EXPECT_EQ(texts(menu), (QStringList{"My macro", "-", "Filters"})) << "and nothing of what has no content";
    QMenu& filters = *menu.actions().back()->menu();
    EXPECT_EQ(texts(filters), (QStringList{"Median", "-", "&Flatten"}));
    filters.actions().back()->trigger();
    EXPECT_EQ(view.ran, std::vector<unsigned>{9194});
    menu.close();
    menu.popup({0, 0});
    EXPECT_EQ(view.asked, 2) << "as it is now";
    EXPECT_EQ(texts(menu).size(), 3);
    menu.close();
}

TEST_F(SeamsTest, AMenuOutlivesTheCommandThatWasChosenFromIt)
{
    auto& other = open<function_view>(textMenu);
    auto& view = open<function_view>(surfaceMenu);
    QPointer<QMenu> menu = &popup("&Mathematics");
    menu->popup({0, 0});
    view.onRun = [&] { // another window becomes active, then a box waits for its answer
        other.GetParentFrame()->ActivateFrame();
        settle();
        EXPECT_FALSE(menu.isNull());
    };
    menu->actions().front()->trigger();
    settle();
    EXPECT_TRUE(menu.isNull()) << "the menus are those of the other window now";
}

TEST_F(SeamsTest, RecentFilesPalettesAndWindowsStandInTheirMenus)
{
    app.AddToRecentFileList(L"/data/a&b.spm");
    open<function_view>(surfaceMenu).GetParentFrame()->SetWindowText(L"one & two");
    for (const auto& [title, entry] :
         {std::pair{"&File", "/data/a&&b.spm"}, {"&Palette", "&Gray"}, {"&Window", "&1 one && two"}}) {
        QMenu& menu = popup(title);
        menu.popup({0, 0});
        EXPECT_TRUE(texts(menu).contains(entry)) << title << ": " << texts(menu).join('|').toStdString();
        menu.close();
    }
}

TEST_F(SeamsTest, TheWindowMenuListsNineWindowsAndAlwaysTheActiveOne)
{
    for (int i = 1; i <= 12; ++i)
        open<function_view>(surfaceMenu).GetParentFrame()->SetWindowText(L"w" + std::to_wstring(i));
    const auto windows = [&] {
        QMenu& menu = popup("&Window");
        menu.popup({0, 0});
        const QStringList rows = texts(menu).filter(QRegularExpression("^&[0-9]"));
        menu.close();
        return rows.join(' ');
    };
    EXPECT_EQ(windows(), "&1 w1 &2 w2 &3 w3 &4 w4 &5 w5 &6 w6 &7 w7 &8 w8 &9 w12");
    window.route(commands::firstWindow + 4, nullptr);
    settle();
    EXPECT_EQ(app.activeFrame(), app.frames()[4].get());
    EXPECT_EQ(windows(), "&1 w1 &2 w2 &3 w3 &4 w4 &5 w5 &6 w6 &7 w7 &8 w8 &9 w9");
}

TEST_F(SeamsTest, ToolbarsShowButtonsWithPicturesMadeAtRunTime)
{
    auto& view = open<function_view>(surfaceMenu);
    const auto find = [&](const char* text) {
        for (QAction* action : tools().actions())
            if (action->text() == text) return action;
        return static_cast<QAction*>(nullptr);
    };
    window.rebuildMenus();
    QAction* const button = find("Flatten");
    ASSERT_NE(button, nullptr);
    const QImage picture = button->icon().pixmap(2, 1).toImage();
    ASSERT_EQ(picture.size(), QSize(2, 1));
    EXPECT_EQ(picture.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(1, 0), QColor(Qt::blue));
    EXPECT_EQ(button->statusTip(), "Takes a plane off");
    EXPECT_EQ(find("gone"), nullptr) << "nobody handles it";
    button->trigger();
    EXPECT_EQ(view.ran, std::vector<unsigned>{9194});
    app.setActiveFrame(nullptr);
    window.rebuildMenus();
    EXPECT_EQ(find("Flatten"), nullptr);
}

TEST_F(SeamsTest, MenusAndToolbarsGiveBackWhatTheyReplace)
{
    CFrameWnd* const frames[] = {open<function_view>(surfaceMenu).GetParentFrame(),
                                 open<function_view>(surfaceMenu).GetParentFrame()};
    const auto activate = [&](int times) {
        for (int i = 0; i < times; ++i) {
            frames[i % 2]->ActivateFrame();
            frames[i % 2]->OnResetToolbar();
            QApplication::processEvents();
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            if (i % 100 != 0) continue;
            popup("&Mathematics").popup({0, 0});
            popup("&Mathematics").close();
        }
        settle();
        return window.findChildren<QObject*>().size();
    };
    const auto before = activate(20);
    EXPECT_LT(activate(2000), before + 20) << "an activation made some 150 objects";
}

TEST_F(SeamsTest, CellsOfATextStandBelowTheirHeadings)
{
    auto& view = open<CTextView>(textMenu);
    view.appendText(L"Position, nm\tNominal, nm\tFit, nm\n0\t195.42\t195.464\n");
    auto& editor = *host::widget_of(&view)->findChild<QPlainTextEdit*>();
    const auto left = [&](int block, int column) {
        QTextCursor at(editor.document()->findBlockByNumber(block));
        at.setPosition(at.position() + column);
        return editor.cursorRect(at).left();
    };
    EXPECT_EQ(left(1, 2), left(0, 13)) << "Nominal";
    EXPECT_EQ(left(1, 9), left(0, 25)) << "Fit";
    EXPECT_GT(left(0, 13), left(0, 12)) << "a gap";
}

TEST_F(SeamsTest, CopySelectAllAndSaveWorkInTextsAndPanes)
{
    auto& view = open<CTextView>(textMenu);
    view.appendText(L"one\ntwo");
    auto& editor = *host::widget_of(&view)->findChild<QPlainTextEdit*>();
    QTextCursor last = editor.textCursor();
    last.movePosition(QTextCursor::StartOfLine, QTextCursor::KeepAnchor);
    editor.setTextCursor(last);
    EXPECT_TRUE(window.route(57634, nullptr));
    EXPECT_EQ(QApplication::clipboard()->text(), "two");
    window.route(57642, nullptr);
    window.route(57634, nullptr);
    EXPECT_EQ(QApplication::clipboard()->text(), "one\ntwo");

    machine.output("told");
    auto& output = *qobject_cast<QPlainTextEdit*>(window.findChild<QDockWidget*>(QStringLiteral("output"))->widget());
    output.setFocus();
    settle();
    window.route(57634, nullptr);
    EXPECT_EQ(QApplication::clipboard()->text(), "told") << "the pane has the keys";
    window.route(57642, nullptr);
    EXPECT_TRUE(output.textCursor().hasSelection());
    window.menuBar()->setFocus(); // as Alt does
    settle();
    CCmdUI ui{.m_nID = 57603};
    EXPECT_TRUE(window.route(57603, &ui)) << "a menu takes the keys and not the place";
    editor.setFocus();
    settle();
    window.route(57634, nullptr);
    EXPECT_EQ(QApplication::clipboard()->text(), "one\ntwo");
}

TEST_F(SeamsTest, TablesTellTheirViewOfHeadingsAndRows)
{
    auto& view = open<clicked_table>(114);
    QWidget& pane = *host::widget_of(&view);
    auto& table = *pane.findChild<QTableWidget*>();
    EXPECT_EQ(view.take(), std::vector<std::string>{}) << "while it fills nobody clicks";
    const auto click = [](QWidget& target, const QPoint& at, QEvent::Type pressed = QEvent::MouseButtonPress) {
        for (const QEvent::Type type : {pressed, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, at, target.mapToGlobal(at), Qt::LeftButton,
                              type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(&target, &event);
        }
    };
    const auto cell = [&](int row, int column) { return table.visualItemRect(table.item(row, column)).center(); };
    click(*table.viewport(), cell(1, 0));
    EXPECT_EQ(view.take(), std::vector<std::string>{"row 1"});
    click(*table.viewport(), cell(1, 1));
    EXPECT_EQ(view.take(), std::vector<std::string>{"row 1"}) << "each click";
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QApplication::sendEvent(&table, &down);
    EXPECT_EQ(view.take(), std::vector<std::string>{"row 2"}) << "as a key does";
    click(*table.viewport(), cell(2, 1));
    EXPECT_EQ(view.take(), std::vector<std::string>{"row 2"});
    click(*table.viewport(), cell(0, 0));
    click(*table.viewport(), cell(0, 0), QEvent::MouseButtonDblClick);
    EXPECT_EQ(view.take(), (std::vector<std::string>{"row 0", "activated 0"}));
    QHeaderView& headings = *table.horizontalHeader();
    click(*headings.viewport(), {headings.sectionViewportPosition(1) + 20, 5});
    EXPECT_EQ(view.take(), std::vector<std::string>{"heading 1"});
    table.selectAll();
    view.take();
    view.rows[1][0] = L"7";
    view.OnUpdate(nullptr, 0, {});
    EXPECT_EQ(view.selectedText(), L"") << "other rows are not those that were selected";
    EXPECT_EQ(view.take(), std::vector<std::string>{});

    table.clearSelection();
    table.item(0, 1)->setSelected(true);
    table.item(2, 0)->setSelected(true);
    EXPECT_EQ(view.selectedText(), L"\t2\r\n5\t\r\n");
    window.route(57642, nullptr);
    window.route(57634, nullptr);
    EXPECT_EQ(QApplication::clipboard()->text(), "7\t2\r\n3\t4\r\n5\t6\r\n");

    auto& search = *pane.findChild<QLineEdit*>();
    search.setText("H");
    search.setFocus();
    settle();
    window.route(57642, nullptr);
    window.route(57634, nullptr);
    EXPECT_EQ(QApplication::clipboard()->text(), "H") << "the field has the keys";
}

TEST_F(SeamsTest, RunningOutOfMemoryNamesTheOperation)
{
    open<function_view>(surfaceMenu);
    EXPECT_TRUE(window.route(cmdDuplicate, nullptr));
    EXPECT_TRUE(window.route(9193, nullptr));
    EXPECT_EQ(machine.messages, (std::vector<std::string>{"There is not enough memory for \"Duplicate\".",
                                                          "There is not enough memory for \"Median\"."}));
}

TEST_F(SeamsTest, WhatThereIsNoMemoryToStartBehindACommandWaitsForTheNext)
{
    int started = 0;
    host::run_command(cmdDuplicate, [&] {
        host::after_commands([&started] { ++started; });
        fail_allocation_after(0);
        return true;
    });
    EXPECT_TRUE(allocation_failed());
    settle();
    EXPECT_EQ(started, 0);
    host::run_command(cmdDuplicate, [] { return true; });
    settle();
    EXPECT_EQ(started, 1);
}

TEST_F(SeamsTest, WorkOfOtherThreadsRunsBetweenTwoEvents)
{
    int ran = 0;
    std::thread::id where;
    machine.waitCursor(true);
    std::thread([&] {
        machine.runOnInterfaceThread([&] {
            ++ran;
            where = std::this_thread::get_id();
        });
    }).join();
    EXPECT_EQ(ran, 0);
    settle();
    EXPECT_EQ(ran, 0) << "not while something is half read";
    machine.waitCursor(false);
    settle();
    EXPECT_EQ(ran, 1);
    EXPECT_EQ(where, std::this_thread::get_id());
}

TEST(Host, RefusesWorkOfThreadsThatOutliveIt)
{
    const temporary_folder folder;
    CProfileStore profile(folder / "profile");
    auto machine = std::make_unique<host::CQtHost>(profile);
    const auto queue = machine->interfaceQueue();
    bool ran = false;
    EXPECT_TRUE(queue->post([&] { ran = true; }));
    machine.reset();
    settle();
    EXPECT_FALSE(queue->post([&] { ran = true; }));
    EXPECT_FALSE(ran);
}

/// How many listen to the wandering focus.
int focus_listeners()
{
    struct counted : QApplication {
        static auto receiversOf() { return &counted::receivers; }
    };
    return (qApp->*counted::receiversOf())(SIGNAL(focusChanged(QWidget*, QWidget*)));
}

TEST(VariableGridEnd, ListensToTheFocusNoMoreWhenItsEditorsGo)
{
    std::vector<SPMVar> rows(1);
    rows[0].Init("a(A),int");
    SPMVarList list;
    list.set_variables(rows.data(), 1);
    CVarListCtrl model;
    model.SetVarList(&list);
    const int before = focus_listeners();
    auto grid = std::make_unique<host::CVariableGrid>(model);
    EXPECT_EQ(focus_listeners(), before + 1);
    int then = -1;
    // The base takes the editors down when the rows of the grid are gone.
    QObject::connect(grid->cellWidget(0, 1), &QObject::destroyed, [&] { then = focus_listeners(); });
    grid.reset();
    EXPECT_EQ(then, before);
}

} // namespace
