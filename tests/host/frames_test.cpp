// Frames on the screen: their tools, their keys, the full screen.
#include "workstation_fixture.h"

#include <QAction>
#include <QKeyEvent>
#include <QShortcut>
#include <QToolBar>

namespace {

class FramesTest : public WorkstationTest {
protected:
    ~FramesTest() override { setLocalToolbars("0"); }
    void setLocalToolbars(const char* kind)
    {
        VLGlobalVarList* const list = VLGlobalVarList::GetVarList("global_options");
        list->set_var("local_toolbar", kind);
        list->ReleaseList();
        for (const auto& frame : app.frames()) frame->OnResetToolbar();
        settle();
    }
    QAction* tool(std::size_t frame, unsigned id)
    {
        QWidget* const content = host::widget_of(app.frames().at(frame).get());
        for (QAction* const action : content->findChild<QToolBar*>()->actions())
            if (action->data().toUInt() == id) return action;
        return nullptr;
    }
    static void sendKey(QWidget* to, QEvent::Type type, int key, Qt::KeyboardModifiers held, bool repeats = false)
    {
        QKeyEvent event(type, key, held, QString(), repeats);
        QApplication::sendEvent(to, &event);
    }
};

TEST_F(FramesTest, TheToolsOfAFrameAskItsOwnView)
{
    constexpr unsigned inverted = 10192;
    open("a.spm");
    open("b.spm");
    setLocalToolbars("1");
    ASSERT_EQ(app.activeFrame(), app.frames()[1].get());
    ASSERT_NE(tool(0, inverted), nullptr);
    EXPECT_FALSE(tool(0, inverted)->isChecked());
    tool(0, inverted)->trigger();
    EXPECT_TRUE(static_cast<bool>(view(0).options["invert"]));
    EXPECT_FALSE(static_cast<bool>(view(1).options["invert"])) << "which is the active one";
    for (const auto& frame : app.frames()) dynamic_cast<host::CQtFrame&>(*frame->getPeer()).refreshTools();
    EXPECT_TRUE(tool(0, inverted)->isChecked());
    EXPECT_FALSE(tool(1, inverted)->isChecked());
}

TEST_F(FramesTest, KeysGoToTheNextFrameAndBack)
{
    for (const char* name : {"a.spm", "b.spm", "c.spm"}) open(name);
    const auto press = [&](const char* keys) {
        for (QShortcut* const shortcut : window.findChildren<QShortcut*>())
            if (shortcut->key() == QKeySequence(QString::fromLatin1(keys))) Q_EMIT shortcut->activated();
        settle();
        for (std::size_t i = 0; i < app.frames().size(); ++i)
            if (app.frames()[i].get() == app.activeFrame()) return static_cast<int>(i);
        return -1;
    };
    // From the third frame round and round, whatever was active when.
    EXPECT_EQ(press("Ctrl+Tab"), 0);
    EXPECT_EQ(press("Ctrl+F6"), 1);
    EXPECT_EQ(press("Ctrl+Tab"), 2);
    EXPECT_EQ(press("Ctrl+Shift+Tab"), 1);
    EXPECT_EQ(press("Ctrl+Shift+F6"), 0);
    EXPECT_EQ(press("Ctrl+Shift+F6"), 2);
}

TEST_F(FramesTest, ClosingAFullScreenLeavesItAndKeepsTheView)
{
    open("a.spm");
    QWidget* const widget = host::widget_of(&view());
    const QSize before = widget->size();
    const auto enter = [&] {
        view().SwitchFullScreen();
        settle();
        ASSERT_TRUE(widget->isWindow());
    };
    const auto expectBack = [&](const char* after) {
        settle();
        EXPECT_FALSE(view().fullscreenOn) << after;
        EXPECT_FALSE(widget->isWindow()) << after;
        EXPECT_TRUE(widget->isVisible()) << after;
        EXPECT_EQ(widget->size(), before) << after;
        EXPECT_EQ(app.frames().size(), 1u) << after;
        EXPECT_TRUE(window.isVisible()) << after;
    };
    enter();
    EXPECT_FALSE(widget->close()) << "what a window manager makes of Alt+F4";
    expectBack("close");
    enter();
    sendKey(widget, QEvent::KeyPress, Qt::Key_F4, Qt::AltModifier);
    expectBack("the key itself");
    sendKey(widget, QEvent::KeyPress, Qt::Key_F4, Qt::AltModifier);
    expectBack("the key in a frame, which is not the view's");
}

TEST_F(FramesTest, ActivatingAFrameWhoseViewFillsTheScreenShowsTheView)
{
    open("a.spm");
    open("b.spm");
    view(0).SwitchFullScreen();
    settle();
    QWidget* const widget = host::widget_of(&view(0));
    window.activateWindow();
    app.frames()[1]->ActivateFrame();
    settle();
    ASSERT_FALSE(widget->isActiveWindow());
    app.frames()[0]->ActivateFrame(); // as its row of the Window menu does
    settle();
    EXPECT_TRUE(widget->isActiveWindow());
    view(0).SwitchFullScreen();
    settle();
}

/// Counts the keys that reach it.
class key_view : public CDCView {
public:
    bool OnKeyDown(unsigned) override { return ++downs > 0; }
    bool OnKeyUp(unsigned) override { return ++ups > 0; }
    int downs = 0, ups = 0;
};

TEST_F(FramesTest, AKeyThatRepeatsIsHeldDown)
{
    key_view watched;
    QWidget parent;
    host::CQtPeer* const peer = new host::CQtPeer(watched, new QWidget(&parent));
    watched.setPeer(std::unique_ptr<IWindowPeer>(peer));
    sendKey(peer->content(), QEvent::KeyPress, Qt::Key_Left, {});
    for (int i = 0; i < 3; ++i) {
        sendKey(peer->content(), QEvent::KeyRelease, Qt::Key_Left, {}, true);
        sendKey(peer->content(), QEvent::KeyPress, Qt::Key_Left, {}, true);
    }
    EXPECT_EQ(watched.downs, 4) << "repeats move on";
    EXPECT_EQ(watched.ups, 0);
    sendKey(peer->content(), QEvent::KeyRelease, Qt::Key_Left, {});
    EXPECT_EQ(watched.ups, 1);
    watched.setPeer(nullptr);
}

} // namespace
