// What frames, applications and views tell each other: who is active, what menus and toolbars take from a view.
#include "platform/app/menu_item.h"
#include "view/ChildFrame.h"
#include "view/view_fixture.h"

namespace {

/// What views are told of their activity, in order: "a+" for view a, and who came and went.
struct told {
    std::string what;
    CView *activated, *deactivated;
    bool operator==(const told&) const = default;
};

class active_view : public plain_view {
public:
    void OnActivateView(bool activates, CView* activated, CView* deactivated) override
    {
        log->push_back({name + (activates ? "+" : "-"), activated, deactivated});
        EXPECT_NE(GetDocument(), nullptr);
        if (activates && closes) closes->DestroyFrame();
    }
    long OnResetToolbar(std::vector<toolbar_button>& buttons) override
    {
        buttons.push_back({.id = 9192, .text = "Flatten", .picture = {{1, 1}, {0xFF00FF00}}});
        return 0;
    }
    bool AppendMenuItems(unsigned first, std::vector<menu_item>& items) override
    {
        if (first != 9192) return CView::AppendMenuItems(first, items);
        items = {{.kind = menu_kind::popup, .text = "Filters", .children = {{.id = 9192, .text = "Flatten"}}}};
        return true;
    }

    std::string name;
    std::vector<told>* log = nullptr;
    CFrameWnd* closes = nullptr;
};

class FrameTest : public testing::Test {
protected:
    active_view& add(const char* name)
    {
        auto owned = std::make_unique<active_view>();
        active_view& view = *owned;
        view.name = name;
        view.log = &log;
        CFrameWnd* const frame = app.addFrame(std::make_unique<CChildFrame>());
        frame->LoadFrame(nullptr, 102, std::move(owned));
        document.AddView(&view);
        return view;
    }
    ~FrameTest() override { app.closeAllFrames(); }

    CHeadlessHost host;
    CWinApp app{host};
    std::vector<told> log;
    CDocument document;
};

TEST_F(FrameTest, ViewsLearnThatTheyBecameActiveAndNoLonger)
{
    document.autoDelete = false;
    active_view &a = add("a"), &b = add("b");
    a.GetParentFrame()->ActivateFrame();
    b.GetParentFrame()->ActivateFrame();
    b.GetParentFrame()->ActivateFrame();
    EXPECT_EQ(log, (std::vector<told>{{"a+", &a, nullptr}, {"a-", &b, &a}, {"b+", &b, &a}})) << "once a change";
    log.clear();
    b.GetParentFrame()->DestroyFrame();
    EXPECT_EQ(log, (std::vector<told>{{"b-", nullptr, &b}})) << "while it is attached";
    EXPECT_EQ(app.activeFrame(), nullptr);
}

TEST_F(FrameTest, AHandlerMayCloseTheFrameThatItBelongsTo)
{
    document.autoDelete = false;
    active_view& a = add("a");
    a.closes = a.GetParentFrame();
    a.GetParentFrame()->ActivateFrame();
    EXPECT_EQ(log.size(), 2u);
    EXPECT_EQ(app.activeFrame(), nullptr);
    EXPECT_TRUE(app.frames().empty());
}

TEST_F(FrameTest, ToolbarsTakeButtonsThatTheViewMakes)
{
    document.autoDelete = false;
    active_view& a = add("a");
    auto& frame = dynamic_cast<CChildFrame&>(*a.GetParentFrame());
    a.OnInitialUpdate();
    VLGlobalVarList* const global = VLGlobalVarList::GetVarList("global_options");
    SPMVar tools;
    tools.Init("local_toolbar,int");
    tools = 2;
    global->set_var(tools);
    frame.OnResetToolbar();
    const HeadlessWindow& window = CHeadlessHost::windowOf(frame);
    ASSERT_EQ(window.buttons.size(), 1u);
    EXPECT_EQ(window.buttons[0].picture.pixels, std::vector<std::uint32_t>{0xFF00FF00});
    a.setOption("toolbar", "false");
    EXPECT_TRUE(window.buttons.empty()) << "none without a toolbar";
    global->set_var("local_toolbar", "0");
    global->ReleaseList();
    frame.OnResetToolbar();
    EXPECT_TRUE(window.buttons.empty());
}

/// Remembers whether it was drawn for paper.
class printed_view : public plain_view {
public:
    void OnDrawData(CDC&) override
    {
        wasPrinting = isPrinting();
        if (fails) throw std::runtime_error("no ink");
    }
    bool wasPrinting = false, fails = false;
};

using PrintingTest = FramedViewTest<printed_view>;

TEST_F(PrintingTest, AViewKnowsThatItIsDrawnForPaper)
{
    view->OnInitialUpdate();
    view->OnCmdMsg(57609, nullptr);
    RecordingDC sheet;
    host.previewed.at(0).paint(sheet, 0);
    EXPECT_TRUE(view->wasPrinting);
    view->OnDraw(sheet);
    EXPECT_FALSE(view->wasPrinting);
    view->fails = true;
    EXPECT_THROW(host.previewed[0].paint(sheet, 0), std::runtime_error);
    EXPECT_FALSE(view->isPrinting()) << "also when it was broken off";
}

} // namespace
