// The view around the mouse: sections, shared selections, the zoom window, files of drawings, commands.
#include "resources/commands.h"
#include "surface/surface_fixture.h"

#include "document/update_hints.h"
#include "platform/app/DocTemplate.h"
#include "surface/views/zoom_window.h"

namespace {

constexpr CRuntimeClass sectionClass = {"CSectionView", nullptr, create_object<plain_section>};

class SurfaceMouseTest : public SurfaceTest {
protected:
    CSurfMathView& view = open();

    CPoint client(CPoint sample) { return SurfaceTest::client(view, sample); }
    void choose(unsigned mode) { SurfaceTest::choose(view, mode); }
    void draw(CPoint from, CPoint to) { SurfaceTest::draw(view, from, to); }
    std::vector<plain_section*> sections() const
    {
        std::vector<plain_section*> found;
        for (CView* const each : document->views())
            if (auto* const section = dynamic_cast<plain_section*>(each)) found.push_back(section);
        return found;
    }
};

TEST_F(SurfaceMouseTest, TheStatusTellsOfAPlaceAsLongAsItIsUnderThePointer)
{
    const auto point = [this](CPoint sample) {
        view.OnMouseMove(0, client(sample));
        EXPECT_NE(host.statusText.find(L"X="), std::wstring::npos) << base::narrow(host.statusText);
    };
    point({5, 4});
    view.OnMouseWheel(MK_SHIFT, 120, client({5, 4}));
    host.pump();
    EXPECT_EQ(host.statusText, L"") << "another size";
    point({5, 4});
    view.showPart({10, 5, 30, 15});
    EXPECT_EQ(host.statusText, L"") << "another part";
    point({12, 8});
    view.OnMouseLeave();
    EXPECT_EQ(host.statusText, L"") << "the pointer has left";
    point({12, 8});
    app.setActiveFrame(nullptr);
    EXPECT_EQ(host.statusText, L"") << "another window is the active one";
    point({12, 8});
    view.SetMessageText(L"a notice");
    view.showPart({0, 0, 40, 20});
    EXPECT_EQ(host.statusText, L"a notice") << "which speaks of no place";
    point({5, 4});
    app.frames()[0]->DestroyFrame();
    app.freeClosed();
    EXPECT_EQ(host.statusText, L"") << "closed";
}

TEST_F(SurfaceMouseTest, ADragSelectsAndTheStatusFollows)
{
    view.OnLButtonDown(MK_LBUTTON, client({5, 4}));
    view.OnMouseMove(MK_LBUTTON, client({20, 9}));
    EXPECT_TRUE(CHeadlessHost::windowOf(view).timers.empty()) << "the picture is not rendered again";
    view.OnCaptureChanged();
    EXPECT_FALSE(view.getDrawn().tracking);
    draw({5, 4}, {14, 9});
    EXPECT_EQ(view.getDrawn().region.GetRgnBox(), CRect(5, 4, 15, 10));
    EXPECT_FALSE(CHeadlessHost::windowOf(view).captured);
    EXPECT_NE(host.statusText.find(L"W=9 nm, H=10 nm"), std::wstring::npos) << "2 nm a row";

    VLPluginDataSelection selected{};
    ASSERT_EQ(view.GetDataSelection(nullptr, 0), 1);
    ASSERT_EQ(view.GetDataSelection(&selected, 1), 1);
    EXPECT_EQ(selected.kind, SELECTION_RECTANGLE);
    SPMDataStream copy;
    CImageView::copy_image(copy, view);
    EXPECT_EQ(copy.get_dimension(0).length, 10u);
    EXPECT_EQ(copy.get_dimension(1).length, 6u);
    EXPECT_EQ(copy.get_dimension(1).get_axis(0).start, 100 + 4 * 2.0);
    EXPECT_EQ(static_cast<const short*>(copy.array_data())[0], 54) << "10 * 5 + 4";

    view.OnCmdMsg(10101, nullptr);
    EXPECT_TRUE(view.getDrawn().roiActive);
    EXPECT_TRUE(isEnabled(view, 10143));
    view.OnCmdMsg(10143, nullptr);
    EXPECT_FALSE(view.getDrawn().region.PtInRegion({7, 7}));
    EXPECT_TRUE(view.getDrawn().region.PtInRegion({30, 15}));
}

TEST_F(SurfaceMouseTest, OtherViewsOfTheDocumentTakeTheSelectionOver)
{
    const SPMDataStream phase = [] {
        SPMDataStream stream = slope();
        stream.set_name("phase");
        return stream;
    }();
    document->AddNewImages(&phase, 1);
    surfaces.ShowAllViews(document, true);
    host.pump();
    ASSERT_EQ(app.frames().size(), 2u);
    auto& other = dynamic_cast<CSurfMathView&>(*app.frames()[1]->GetActiveView());
    SurfaceTest::choose(other, 3); // a distance
    SurfaceTest::draw(other, {2, 2}, {9, 9});
    ASSERT_TRUE(other.getDrawn().measure.isVisible);
    choose(1);
    draw({5, 4}, {14, 9});
    EXPECT_FALSE(other.getDrawn().measure.isVisible) << "its line is gone";
    EXPECT_EQ(other.getDrawn().mode, surface::cursor_mode::ellipse);
    EXPECT_EQ(other.getDrawn().region, view.getDrawn().region);
    view.setOption("SelectionSynchr", "false");
    draw({20, 4}, {30, 9});
    EXPECT_NE(other.getDrawn().region, view.getDrawn().region);
}

TEST_F(SurfaceMouseTest, CurvesBecomeSectionsAndComeBackFromAFile)
{
    register_runtime_class(sectionClass);
    CMultiDocTemplate maker{101, "CStorageDoc", "CChildFrame", "CSectionView"};
    app.AddDocTemplate(&maker);
    choose(2);
    draw({2, 3}, {30, 15});
    ASSERT_EQ(sections().size(), 1u);
    EXPECT_EQ(sections()[0]->points, (std::vector<CPoint>{{2, 3}, {30, 15}}));
    EXPECT_EQ(sections()[0]->getParentView(), &view);
    EXPECT_FALSE(view.getDrawn().selectionActive);

    choose(6);
    EXPECT_FALSE(isEnabled(view, 10088));
    for (const CPoint corner : {CPoint{20, 2}, {25, 4}, {20, 8}}) draw(corner, corner);
    EXPECT_TRUE(isEnabled(view, 10096));
    view.OnCmdMsg(10088, nullptr);
    ASSERT_EQ(sections().size(), 2u);
    EXPECT_EQ(sections()[1]->points.size(), 3u);
    EXPECT_TRUE(view.getDrawn().curves.empty());
    choose(5);
    draw({35, 18}, {35, 18});

    const std::filesystem::path file = folder / "a.dec";
    host.savePaths = {file.wstring()};
    view.OnCmdMsg(10094, nullptr);
    EXPECT_EQ(std::filesystem::path(host.savePrompts.back().suggestedPath).filename(), "a.dec");
    EXPECT_EQ(file_content(file),
              "\\Marks: 35,18;\r\n\\Curve profile 1: 2,3;30,15;\r\n\\Curve profile 2: 20,2;25,4;20,8;\r\n");
    host.openPaths = {file.wstring()};
    view.OnCmdMsg(10095, nullptr);
    EXPECT_EQ(view.getDrawn().marks.size(), 2u) << "appended";
    EXPECT_EQ(sections().size(), 4u);

    host.openPaths = {(folder / "none.dec").wstring()};
    view.OnCmdMsg(10095, nullptr);
    ASSERT_FALSE(host.messages.empty());
    EXPECT_TRUE(host.messages.back().starts_with("Failed to load decorations from file \"")) << host.messages.back();
    EXPECT_NE(host.messages.back().find("No such file"), std::string::npos);
}

TEST_F(SurfaceMouseTest, TheZoomWindowFollowsTheSelectionAndLeavesWithTheSurface)
{
    draw({5, 4}, {14, 9});
    view.storageDoc()->setString("\\Void points", "7", 0);
    view.storageDoc()->setString("\\Void samples", "of 800: 210-216", 0); // row 5, columns 10 to 16
    EXPECT_TRUE(isEnabled(view, 10145));
    view.OnCmdMsg(10145, nullptr);
    host.pump();
    EXPECT_FALSE(isEnabled(view, 10145));
    CStorageDoc* const zoom = surface::zoom_document(view);
    ASSERT_NE(zoom, nullptr);
    EXPECT_STREQ(zoom->getString("\\Void points", 0), "5") << "columns 10 to 14 of 5 to 14";
    EXPECT_STREQ(zoom->getString("\\Void samples", 0), "of 60: 15-19");
    EXPECT_EQ(zoom->getImage(0).get_dimension(0).length, 10u);
    EXPECT_EQ(zoom->getAxis(0, 0, 0).start, 105);
    EXPECT_EQ(zoom->getDataPoint2S(0, 0, 0, 0), 54);

    draw({20, 1}, {22, 18}); // a drag of its own replaces the region
    host.pump();
    EXPECT_EQ(zoom->getImage(0).get_dimension(0).length, 10u) << "below 3 columns nothing is selected";
    draw({20, 1}, {26, 18});
    host.pump();
    EXPECT_EQ(zoom->getImage(0).get_dimension(0).length, 7u);
    EXPECT_EQ(zoom->getImage(0).get_dimension(1).length, 18u);
    EXPECT_FALSE(zoom->strings(0).contains("\\Void samples")) << "all of them lie outside";
    EXPECT_EQ(zoom->getDataPoint2S(0, 6, 17, 0), 278);
    document->getDataPoint2S(0, 26, 18, 0) = 1234;
    document->UpdateAllViews(nullptr, document::data_hint(0));
    EXPECT_EQ(zoom->getDataPoint2S(0, 6, 17, 0), 1234) << "and the data";
    zoom->pushUndo(0, true);
    draw({5, 4}, {14, 9});
    host.pump();
    EXPECT_EQ(zoom->getDataPoint2S(0, 6, 17, 0), 1234) << "what the user works on is not written over";
    app.frames()[0]->DestroyFrame();
    app.freeClosed();
    EXPECT_TRUE(app.frames().empty()) << "it closes with the surface";
}

TEST_F(SurfaceMouseTest, TheZoomWindowStaysInTheWorkArea)
{
    draw({5, 4}, {9, 8});
    view.OnCmdMsg(10145, nullptr);
    host.pump();
    CFrameWnd& frame = *app.frames().back();
    auto& zoom = dynamic_cast<CSurfMathView&>(*frame.GetActiveView());
    EXPECT_EQ(zoom.displayRect.Size(), (CSize{512, 512})) << "5 by 5 samples";
    draw({0, 0}, {38, 18}); // at 102.4 pixels a sample this would be 3994 by 1946
    host.pump();
    const CRect place = frame.GetWindowRect();
    EXPECT_EQ(place.Width(), 1600) << "as large as there is room";
    EXPECT_GE(place.left, host.area.left);
    EXPECT_LE(place.right, host.area.right);
    EXPECT_LE(place.bottom, host.area.bottom);
    EXPECT_NEAR(static_cast<double>(zoom.displayRect.Width()) / zoom.displayRect.Height(), 39.0 / 19.0, 0.01);
    EXPECT_LE(zoom.image.width(), 1600);
}

TEST_F(SurfaceMouseTest, DistanceAndHeightGoToTheClipboardWithAMark)
{
    choose(3);
    EXPECT_TRUE(isEnabled(view, 10100));
    draw({10, 5}, {13, 7}); // 3 nm and 4 nm: 5 nm; 32 steps of 0.5 nm
    view.OnCmdMsg(10100, nullptr);
    EXPECT_EQ(host.clips.content.value_or(L""), L"Distance, nm\tHeight, nm\r\n   5\t  16\r\n");
    EXPECT_EQ(view.getDrawn().marks, (std::vector<CPoint>{{13, 7}}));
    EXPECT_EQ(view.getDrawn().mode, surface::cursor_mode::distance);
    view.OnCmdMsg(10100, nullptr);
    EXPECT_TRUE(host.clips.content->ends_with(L"nm\r\n   5\t  16\r\n   5\t  16\r\n")) << "one heading";
}

TEST_F(SurfaceMouseTest, ATracedObjectIsKeptAsAMaskAndDrawn)
{
    choose(9);
    draw({5, 10}, {30, 10});
    const auto& drawings = document->decorations(0).all();
    ASSERT_TRUE(drawings.contains("lengthy_mask"));
    const document::decoration& mask = drawings.at("lengthy_mask").members.front();
    EXPECT_EQ(mask.elements.front().width, 40u);
    const auto& bytes = mask.elements.front().bytes;
    EXPECT_GE(std::ranges::count(bytes, 1), 26) << "a sample a column at least";

    view.flushTimers();
    RecordingDC dc(view.GetClientRect().Size());
    view.OnDrawData(dc);
    CRect filled;
    for (const drawn& each : dc.operations)
        if (each.what == drawn::kind::region) filled.UnionRect(filled, each.box);
    const CRect expected(client({5, 0}).x - 7, 0, client({30, 0}).x + 7, 10000);
    EXPECT_FALSE(filled.IsRectEmpty());
    EXPECT_GE(filled.left, expected.left);
    EXPECT_LE(filled.right, expected.right);

    ASSERT_TRUE(view.getDrawn().measure.isVisible);
    view.OnCmdMsg(commands::clearDecorations, nullptr);
    EXPECT_FALSE(view.getDrawn().measure.isVisible) << "it told of what is gone";
    EXPECT_TRUE(view.getDrawn().lengthy.path.empty()) << "nothing to go on from";
}

TEST_F(SurfaceMouseTest, KeysChangeThePointerAndProfilesMove)
{
    HeadlessWindow& window = CHeadlessHost::windowOf(view);
    host.display.place = view.ClientToScreen(client({20, 10}));
    view.OnMouseMove(0, client({20, 10}));
    EXPECT_EQ(window.cursor, cursor_shape::crossRectangle);
    host.display.keys = {VK_CONTROL};
    view.OnKeyDown(VK_CONTROL);
    EXPECT_EQ(window.cursor, cursor_shape::crossPlus);
    host.display.keys = {VK_MENU};
    view.OnKeyDown(VK_MENU);
    EXPECT_EQ(window.cursor, cursor_shape::crossMinus);
    host.display.keys = {VK_CONTROL, VK_SHIFT};
    view.OnKeyDown(VK_SHIFT);
    EXPECT_EQ(window.cursor, cursor_shape::grab);
    host.display.keys.clear();
    view.OnKeyUp(VK_SHIFT);
    EXPECT_EQ(window.cursor, cursor_shape::crossRectangle);
}

} // namespace
