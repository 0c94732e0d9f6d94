// Scales with windows: strips beside images, the bar that they follow, commands and hints.
#include "surface/surface_fixture.h"
#include "view/scale/CustomPaletteDialog.h"
#include "view/scale/PaletteBar.h"

#include <gtest/gtest.h>

namespace {

/// Remembers the hints that reach it and the presses that its strip passes on.
class watched_view : public CSurfMathView {
public:
    void OnUpdate(CView* sender, std::uint32_t hint, const hint_object& object) override
    {
        hints.push_back(hint);
        CSurfMathView::OnUpdate(sender, hint, object);
    }
    void LoadData() override
    {
        ++loads;
        CSurfMathView::LoadData();
    }
    void OnLButtonDown(unsigned flags, CPoint point) override { presses.push_back({flags, point}); }

    std::vector<std::uint32_t> hints;
    std::vector<std::pair<unsigned, CPoint>> presses;
    int loads = 0;
};

constexpr unsigned fixedCommand = 10152, autoCommand = 10011, planefitCommand = 10156, customCommand = 12001;

/// Two images, 10 by 10 samples from 0 to 99 nm, and a bar in a toolbar of a window.
class ScaleWindowTest : public SurfaceTest {
protected:
    ScaleWindowTest()
    {
        static constexpr CRuntimeClass watched{"CSurfMathView", nullptr, create_object<watched_view>};
        register_runtime_class(watched);
        bar.scale().createStrip(nullptr);
        bar.OnChangeParentWnd(true);
        const SPMDataStream stream =
            test_support::made_stream("height", {{10}, {10}}, VLAxis(0, 1, "nm"), [](unsigned i) { return i; });
        for (const char* name : {"a.spm", "b.spm"}) open(stream, name);
        view(0).SetFocus();
        for (std::size_t i = 0; i < 2; ++i) {
            view(i).flushTimers();
            view(i).hints.clear();
            view(i).loads = 0;
        }
    }
    ~ScaleWindowTest() override { closeFrames(); } // before the bar
    watched_view& view(std::size_t i) { return dynamic_cast<watched_view&>(*app.frames().at(i)->GetActiveView()); }
    CScale& strip(std::size_t i) { return view(i).getScale(); }
    CScale& leader() { return bar.scale(); }
    cursor_shape cursorOf(const CWnd& window) { return CHeadlessHost::windowOf(window).cursor; }
    bool isChecked(unsigned id)
    {
        CCmdUI ui{.m_nID = id};
        EXPECT_TRUE(leader().OnCmdMsg(id, &ui));
        return ui.checked;
    }

    CPaletteBar bar;
};

TEST_F(ScaleWindowTest, TheStripStandsBesideTheImage)
{
    EXPECT_EQ(view(0).displayRect.Size(), (CSize{512, 512}));
    // Margins of 50, 25 + 65, 10 and 25 + 40 for the file.
    EXPECT_EQ(view(0).GetClientRect().Size(), (CSize{652, 587}));
    // 512 / 32 wide, 5 pixels from the right and inside the margins of top and bottom.
    EXPECT_EQ(CHeadlessHost::windowOf(strip(0)).rect, CRect(652 - 21, 15, 652 - 5, 587 - 65 - 5));
    EXPECT_EQ(strip(0).GetDirection(), tdVertical);
    view(0).toggle_option("ShowLegend");
    host.pump();
    EXPECT_FALSE(strip(0).IsWindowVisible());
    EXPECT_EQ(view(0).GetClientRect().Size(), (CSize{652 - 65, 587})) << "its room is given back";
    view(0).toggle_option("ShowLegend");
    EXPECT_TRUE(strip(0).IsWindowVisible());

    RecordingDC page;
    view(0).OnDraw(page);
    std::vector<std::string> labels;
    for (const drawn& text : page.all(drawn::kind::text)) labels.push_back(text.text);
    ASSERT_GE(labels.size(), 6u);
    EXPECT_EQ(std::vector(labels.end() - 6, labels.end()),
              (std::vector<std::string>{"nm", "0", "20", "40", "60", "80"}))
        << "0 to 99, four steps wanted";
}

TEST_F(ScaleWindowTest, CommandsChangeTheScaleAndTheViewWithTheFocus)
{
    EXPECT_TRUE(isChecked(autoCommand));
    EXPECT_TRUE(leader().OnCmdMsg(planefitCommand, nullptr));
    EXPECT_EQ(leader().GetAutoScaling(), 3);
    EXPECT_TRUE(isChecked(planefitCommand));
    EXPECT_FALSE(isChecked(autoCommand));
    leader().OnCmdMsg(planefitCommand, nullptr);
    EXPECT_EQ(view(0).hints, (std::vector<std::uint32_t>{4, 4})) << "told also when it was set already";
    EXPECT_EQ(view(1).hints, (std::vector<std::uint32_t>{4, 4}));
    EXPECT_EQ(strip(0).GetAutoScaling(), 3);
    EXPECT_EQ(strip(1).GetAutoScaling(), 1) << "without the focus it waits for new data";
    leader().OnCmdMsg(12008, nullptr);
    EXPECT_EQ(leader().GetPaletteId(), 7);
    EXPECT_EQ(strip(0).GetPaletteId(), 7);
    EXPECT_TRUE(isChecked(12008));
    leader().OnCmdMsg(12008, nullptr);
    EXPECT_EQ(view(0).hints.size(), 3u) << "nothing new";

    std::vector<menu_item> palettes;
    ASSERT_TRUE(leader().AppendMenuItems(12001, palettes));
    EXPECT_EQ(palettes.at(1).text, "&Gray");
    CCmdUI none{.m_nID = 12009};
    leader().OnCmdMsg(12009, &none);
    EXPECT_FALSE(none.enabled) << "there is no file palette";
    EXPECT_FALSE(none.text);
}

TEST_F(ScaleWindowTest, DraggingADelimiterStretchesTheWindowLive)
{
    leader().OnCmdMsg(fixedCommand, nullptr);
    // 64 and 192 on 256 pixels
    leader().OnMouseMove(0, {100, 10});
    EXPECT_EQ(cursorOf(leader()), cursor_shape::arrow);
    EXPECT_FALSE(leader().IsActive());
    leader().OnMouseMove(0, {66, 10});
    EXPECT_EQ(cursorOf(leader()), cursor_shape::sizeHorizontal);
    EXPECT_TRUE(leader().IsActive());
    view(0).hints.clear();
    leader().OnLButtonDown(MK_LBUTTON, {66, 10});
    EXPECT_TRUE(leader().IsChanging());
    EXPECT_TRUE(leader().hasCapture());
    EXPECT_EQ(leader().getFixedSize(), 1000.0) << "-500 to 500 nm suits 0 to 99 nm";
    EXPECT_TRUE(view(0).hints.empty());
    leader().OnMouseMove(MK_LBUTTON, {128, 10});
    EXPECT_EQ(leader().getFixedSize(), 500.0);
    EXPECT_EQ(leader().getFixedStart(), 0.0);
    EXPECT_EQ(view(0).hints, (std::vector<std::uint32_t>{4}));
    EXPECT_EQ(strip(0).getFixedSize(), 500.0);
    leader().OnMouseMove(MK_LBUTTON, {128, 12});
    EXPECT_EQ(view(0).hints.size(), 1u) << "it did not move along the strip";
    leader().OnLButtonUp(0, {128, 10});
    EXPECT_FALSE(leader().hasCapture());
    EXPECT_FALSE(leader().IsActive());
    EXPECT_EQ(leader().upperDelimiter, 64) << "a handle, not a mark";
    EXPECT_EQ(leader().lowerDelimiter, 192);
    EXPECT_EQ(view(0).hints.size(), 2u);
    leader().OnMouseMove(0, {66, 10});
    leader().OnMouseLeave();
    EXPECT_FALSE(leader().IsActive());
}

TEST_F(ScaleWindowTest, AFollowersStripChangesWhatItFollows)
{
    host.popupChoice = fixedCommand;
    strip(0).OnContextMenu({0, 0});
    ASSERT_EQ(host.popups.size(), 1u);
    EXPECT_EQ(host.popups[0].size(), 14u) << "eight palettes, those of files, a separator, four modes";
    EXPECT_EQ(host.popupItems, 0u) << "there is no file palette";
    EXPECT_EQ(leader().GetAutoScaling(), 0);
    EXPECT_EQ(strip(0).GetAutoScaling(), 0);
    // The strip is 502 long: 125 and 377.
    strip(0).OnMouseMove(0, {3, 125});
    EXPECT_EQ(cursorOf(strip(0)), cursor_shape::sizeVertical);
    strip(0).OnLButtonDown(MK_LBUTTON, {3, 125});
    strip(0).OnMouseMove(MK_LBUTTON, {3, 251}); // half of 252
    EXPECT_EQ(strip(0).getFixedSize(), 500.0) << "the reload has not taken it back";
    EXPECT_EQ(leader().getFixedSize(), 500.0);
    EXPECT_EQ(leader().getFixedStart(), 0.0);
    strip(0).OnLButtonUp(0, {3, 251});

    strip(0).syncPalette = false;
    host.popupChoice = 12005;
    strip(0).OnContextMenu({0, 0});
    EXPECT_EQ(strip(0).GetPaletteId(), 4);
    EXPECT_EQ(leader().GetPaletteId(), 3);
    strip(0).active = false;
    strip(0).OnContextMenu({0, 0});
    EXPECT_EQ(host.popups.size(), 2u) << "an inactive strip has no menu";
}

TEST_F(ScaleWindowTest, APressThatMovesNothingBelongsToTheView)
{
    strip(0).OnLButtonDown(MK_LBUTTON | MK_SHIFT, {3, 20});
    ASSERT_EQ(view(0).presses.size(), 1u);
    EXPECT_EQ(view(0).presses[0], (std::pair{unsigned{MK_LBUTTON | MK_SHIFT}, CPoint{652 - 21 + 3, 15 + 20}}));
    leader().OnLButtonDown(MK_LBUTTON, {3, 20}); // has no parent window
    EXPECT_EQ(view(0).presses.size(), 1u);
}

TEST_F(ScaleWindowTest, TheEditorBeginsWithThePaletteInUse)
{
    const color_table zebra = *CScale::getPalette(5), brown = *CScale::getPalette(3), custom = {1, 2, 3};
    leader().SetPaletteId(5);
    host.onForm = [&](CDialog& shown) {
        EXPECT_EQ(*CScale::getPalette(0), zebra);
        shown.OnCommand(5191);
        EXPECT_EQ(*CScale::getPalette(0), zebra) << "there was no custom palette to restore";
        shown.OnCommand(1);
    };
    leader().OnCmdMsg(customCommand, nullptr);
    EXPECT_EQ(leader().GetPaletteId(), 0);
    EXPECT_EQ(*CScale::getPalette(0), zebra);

    const unsigned long colors[] = {1, 2, 3};
    leader().SetCustomPalette(colors, 3);
    leader().SetPaletteId(3);
    host.onForm = [&](CDialog& shown) {
        EXPECT_EQ(*CScale::getPalette(0), brown);
        shown.OnCommand(2);
        EXPECT_EQ(*CScale::getPalette(0), custom) << "cancelled";
    };
    leader().OnCmdMsg(customCommand, nullptr);
    EXPECT_EQ(leader().GetPaletteId(), 3);
    host.onForm = [&](CDialog& shown) {
        shown.OnCommand(5191);
        shown.OnCommand(1);
    };
    leader().OnCmdMsg(customCommand, nullptr);
    EXPECT_EQ(*CScale::getPalette(0), custom) << "restored";
}

TEST_F(ScaleWindowTest, ADragThatDoesNotEndIsRenderedMeanwhile)
{
    auto& timers = CHeadlessHost::windowOf(view(0)).timers;
    view(0).RefreshDisplay();
    EXPECT_EQ(timers.at(5), 10u);
    timers[5] = 3; // so much is left
    view(0).RefreshDisplay();
    EXPECT_EQ(timers.at(5), 3u) << "does not begin anew";
    view(0).flushTimers();
    EXPECT_FALSE(timers.contains(5));
    view(0).RefreshDisplay();
    EXPECT_EQ(timers.at(5), 10u);
}

TEST_F(ScaleWindowTest, TheBarKeepsItsStateAsBytes)
{
    CPaletteBar source;
    source.scale().SetDimensions(300, 30);
    source.OnOrientationChanged(false);
    source.scale().SetPaletteId(6);
    source.scale().SetAutoScaling(2);
    source.scale().setFixedSize(1.5);
    source.scale().setFixedStart(-2.0);
    source.scale().setRelativeMeanOffset(0.25);
    source.scale().setFixedUnits("µm");
    const std::vector<std::byte> bytes = source.Serialize();
    ASSERT_EQ(bytes.size(), 5 * 4 + 3 * 8 + 4 + 3u);
    EXPECT_EQ(bytes[0], std::byte{30}) << "the width of the upright strip";
    EXPECT_EQ(bytes[4], std::byte{300 - 256});
    CPaletteBar target;
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(target.Serialize(std::span(bytes).first(length)));
    std::vector<std::byte> hostile = bytes;
    hostile[12] = std::byte{9}; // direction
    EXPECT_FALSE(target.Serialize(hostile));
    EXPECT_EQ(target.scale().GetSize(), (CSize{256, 27})) << "nothing changed";
    ASSERT_TRUE(target.Serialize(bytes));
    EXPECT_EQ(target.scale().GetPaletteId(), 6);
    EXPECT_EQ(target.scale().getFixedStart(), -2.0);
    EXPECT_EQ(target.scale().getRelativeMeanOffset(), 0.25);
    EXPECT_EQ(target.scale().GetDirection(), tdVertical);
    EXPECT_STREQ(target.scale().getFixedUnits(), "µm");
    CPaletteBar copy;
    copy.CopyFrom(source);
    EXPECT_EQ(copy.scale().GetPaletteId(), 6);
    EXPECT_EQ(copy.scale().getFixedStart(), -2.0);
    EXPECT_EQ(copy.OnCalculateSize({40, 50}, false), (CSize{40, 256}));
    EXPECT_EQ(bar.OnCalculateSize({40, 50}, true), (CSize{256, 50}));
}

} // namespace
