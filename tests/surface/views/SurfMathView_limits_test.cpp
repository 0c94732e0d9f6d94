// The view at its limits: images of odd shapes, and what closes or changes in the middle of a drag.
#include "surface/surface_fixture.h"

#include "document/update_hints.h"
#include "support/RecordingDC.h"
#include "surface/figures/resampling.h"
#include "surface/views/zoom_window.h"

#include <fstream>

namespace {

using points = std::vector<CPoint>;

class SurfaceLimits : public SurfaceTest {
protected:
    /// Another picture in the document's first image.
    void replace(const SPMDataStream& stream)
    {
        document->getImage(0) = stream;
        document->revalidateImage(0);
        document->UpdateAllViews(nullptr, document::shape_hint(0));
        document->UpdateAllViews(nullptr, document::data_hint(0));
        host.pump();
    }
    void paint(CSurfMathView& view)
    {
        view.flushTimers();
        RecordingDC dc(view.GetClientRect().Size());
        view.OnDraw(dc);
    }
};

/// A stream with these sides.
SPMDataStream shaped(const std::vector<unsigned>& lengths, SPMVarArrayType type = SPM_ARRAY_INT16)
{
    std::vector<test_support::stream_side> sides;
    for (const unsigned length : lengths) sides.push_back({length, VLAxis(0, 0, "nm")}); // no step either
    SPMDataStream stream =
        test_support::made_stream("height", sides, VLAxis(0, 1, "nm"), [](unsigned i) { return i % 7; });
    if (type != SPM_ARRAY_INT16) stream.convert_stream(type);
    return stream;
}

TEST_F(SurfaceLimits, ImagesOfAnyShapeAreShownAndDrawnOn)
{
    struct {
        const char* name;
        SPMDataStream image;
        CSize size;
    } const cases[] = {{"one row", shaped({30, 1}), {30, 1}},  {"one column", shaped({1, 30}), {1, 30}},
                       {"one sample", shaped({1, 1}), {1, 1}}, {"a line", shaped({30}), {30, 1}},
                       {"no sides", shaped({}), {1, 1}},       {"floats", shaped({8, 6}, SPM_ARRAY_FLOAT32), {1, 1}},
                       {"a volume", shaped({8, 6, 5}), {8, 6}}};
    CSurfMathView& view = open();
    view.setOption("ShowStatistics", "true");
    view.setOption("cursor_snap", "To Maximum");
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        replace(each.image);
        EXPECT_EQ(CSize(static_cast<int>(view.getSourceWidth()), static_cast<int>(view.getSourceHeight())), each.size);
        EXPECT_EQ(view.sourceRect, CRect({0, 0}, each.size));
        for (unsigned mode = 0; mode < 13; ++mode) {
            choose(view, mode);
            draw(view, {0, 0}, {each.size.cx - 1, each.size.cy - 1});
            paint(view);
            view.GetClipboardText(true);
        }
        for (const bool isCompact : {true, false}) {
            view.setOption("CompactLegend", isCompact ? "true" : "false");
            host.pump();
            paint(view);
        }
        for (const CPoint mark : view.getDrawn().marks) EXPECT_TRUE(CRect({0, 0}, each.size).PtInRect(mark));
        view.OnMouseWheel(MK_CONTROL, 120, {60, 60});
        EXPECT_FALSE(view.sourceRect.IsRectEmpty());
        view.OnCmdMsg(10101, nullptr);
        paint(view);
        view.OnCmdMsg(10102, nullptr);
    }
}

TEST_F(SurfaceLimits, ADragEndsWhenItsImageGetsAnotherShape)
{
    CSurfMathView& view = open();
    for (const CPoint mark : {CPoint{30, 15}, CPoint{5, 5}, CPoint{8, 8}})
        document->UpdateAllViews(nullptr, document::hintAddMark, mark);
    press(view, {5, 5}, MK_SHIFT);
    ASSERT_EQ(view.getDrawn().hotAction, surface::hot_action::moveMark);
    replace(slope(20, 10)); // the first mark goes, and the second becomes the first
    EXPECT_FALSE(view.getDrawn().tracking);
    EXPECT_FALSE(CHeadlessHost::windowOf(view).captured);
    EXPECT_FALSE(view.getDrawn().measure.isVisible) << "it told of three";
    drag(view, {15, 2}, MK_SHIFT);
    release(view, {15, 2}, MK_SHIFT);
    EXPECT_EQ(view.getDrawn().marks, points({{5, 5}, {8, 8}}));
}

TEST_F(SurfaceLimits, FramesAndImagesMayCloseInADrag)
{
    for (unsigned mode = 0; mode < 13; ++mode)
        for (const bool removesImage : {false, true}) {
            CSurfMathView& view = open();
            choose(view, mode);
            press(view, {5, 4});
            drag(view, {20, 15});
            if (removesImage)
                document->RemoveImage(0);
            else
                view.closeFrame();
            // Events that were on their way come late; the frame is freed after them.
            drag(view, {25, 15});
            release(view, {25, 15});
            view.OnKeyDown(VK_SHIFT);
            view.OnTimer(213);
            host.pump();
            EXPECT_TRUE(app.frames().empty()) << mode;
            if (removesImage) document->OnCloseDocument();
            host.pump();
        }
}

TEST_F(SurfaceLimits, UndoOfAResampleDropsWhatLiesOutside)
{
    CSurfMathView& view = open();
    ASSERT_EQ(surface::resample_image(*document, 0, {80, 40, primitives::interpolation::nearest}), "");
    host.pump();
    EXPECT_EQ(view.sourceRect, CRect(0, 0, 80, 40));
    choose(view, 5);
    for (const CPoint at : {CPoint{70, 10}, CPoint{30, 10}}) draw(view, at, at);
    choose(view, 6);
    for (const CPoint at : {CPoint{10, 30}, CPoint{20, 5}}) draw(view, at, at);
    choose(view, 0);
    draw(view, {50, 25}, {70, 35});
    view.OnCmdMsg(10101, nullptr); // the region of interest lies outside as well
    EXPECT_TRUE(view.getDrawn().roiActive);
    document->undo(0);
    host.pump();
    EXPECT_EQ(view.sourceRect, CRect(0, 0, 40, 20));
    EXPECT_EQ(view.getDrawn().marks, points({{30, 10}}));
    EXPECT_EQ(view.getDrawn().curves, std::vector<points>({{{20, 5}}}));
    EXPECT_FALSE(view.getDrawn().selectionActive);
    EXPECT_EQ(view.GetDataSelection(nullptr, 0), 0);
    double low = 0, high = 0;
    view.getBestScale(&low, &high, nullptr);
    EXPECT_EQ(high, 207.5) << "of the whole: 3 + 0.5 * (10 * 39 + 19)";
    paint(view);
    draw(view, {2, 2}, {10, 10});
    EXPECT_EQ(view.getDrawn().region.GetRgnBox(), CRect(2, 2, 11, 11));
}

TEST_F(SurfaceLimits, AWindowStaysInsideTheMainOneAndComesBackWithItsImage)
{
    CSurfMathView& view = open();
    host.pump();
    const CSize before = view.displayRect.Size();
    ASSERT_EQ(surface::resample_image(*document, 0, {6000, 3000, primitives::interpolation::nearest}), "");
    host.pump();
    const CRect frame = view.GetParentFrame()->GetWindowRect();
    EXPECT_LE(frame.right, host.area.right);
    EXPECT_LE(frame.bottom, host.area.bottom);
    EXPECT_EQ(view.sourceRect, CRect(0, 0, 6000, 3000)) << "all of it, smaller";
    document->undo(0);
    host.pump();
    EXPECT_EQ(view.displayRect.Size(), before);
}

TEST_F(SurfaceLimits, TheZoomWindowOutlivesChangesOfItsSource)
{
    CSurfMathView& view = open();
    draw(view, {5, 4}, {14, 9});
    view.OnCmdMsg(10145, nullptr);
    host.pump();
    CStorageDoc* const zoom = surface::zoom_document(view);
    ASSERT_NE(zoom, nullptr);
    ASSERT_EQ(surface::resample_image(*document, 0, {20, 10, primitives::interpolation::nearest}), "");
    host.pump();
    draw(view, {12, 1}, {17, 6});
    host.pump();
    EXPECT_EQ(zoom->getImage(0).get_dimension(0).length, 6u);
    // Sample 12 of the new image lies in the middle of 24 and 25: 100 + 24.5 nm.
    EXPECT_EQ(zoom->getAxis(0, 0, 0).start, 124.5);
    replace(shaped({8, 6, 5}));
    draw(view, {1, 1}, {5, 5}); // a volume is not zoomed: the window keeps what it has
    EXPECT_EQ(zoom->getImage(0).get_dimension(0).length, 6u);
    document->RemoveImage(0);
    host.pump();
    EXPECT_TRUE(app.frames().empty()) << "the zoom window goes with the view";
}

TEST_F(SurfaceLimits, RemovingAnImageLeavesTheDrawingsOfTheOthers)
{
    open();
    const auto named = [](SPMDataStream stream, const char* name) {
        stream.set_name(name);
        return stream;
    };
    const SPMDataStream others[] = {named(slope(60, 30), "large"), named(slope(10, 10), "small")};
    document->AddNewImages(others, 2);
    surfaces.ShowAllViews(document, true);
    host.pump();
    ASSERT_EQ(document->views().size(), 3u);
    auto& large = dynamic_cast<CSurfMathView&>(*document->views()[1]);
    document->UpdateAllViews(nullptr, large.getImageNumber() << 16 | document::hintAddMark, CPoint{50, 25});
    document->setFirstView(document->views()[2]); // it is told of the removal first
    document->RemoveImage(0);
    host.pump();
    EXPECT_EQ(large.getImageNumber(), 0u);
    EXPECT_EQ(large.sourceRect, CRect(0, 0, 60, 30));
    EXPECT_EQ(large.getDrawn().marks, points({{50, 25}})) << "it never was a view of the small image";
}

TEST_F(SurfaceLimits, DrawingsOfALargerImageAreLoadedAsFarAsTheyFit)
{
    CSurfMathView& view = open();
    const std::filesystem::path file = folder / "large.dec";
    std::ofstream(file) << "\\Curve 1: 5,5;39,19;40,5;\n\\Curve 2: 900,900;\n\\Curve 3: 7,7;\n"
                           "\\Marks: -2147483648,3;3,2147483647;12,13;\n";
    host.openPaths = {file.wstring()};
    view.OnCmdMsg(10095, nullptr);
    EXPECT_EQ(view.getDrawn().curves, std::vector<points>({{{5, 5}, {39, 19}}, {{7, 7}}}));
    EXPECT_EQ(view.getDrawn().marks, points({{12, 13}}));
    EXPECT_TRUE(host.statusText.ends_with(L": 4")) << "points left out";
    paint(view);
}

TEST_F(SurfaceLimits, NormalizingGivesTheSizeOfTheStart)
{
    CSurfMathView& view = open();
    app.frames()[0]->MoveWindow(CRect(0, 0, 900, 300));
    host.pump();
    ASSERT_NE(view.displayRect.Size(), CSize(512, 256));
    view.OnCmdMsg(10017, nullptr);
    host.pump();
    EXPECT_EQ(view.displayRect, CRect(50, 10, 50 + 512, 10 + 256));
}

} // namespace
