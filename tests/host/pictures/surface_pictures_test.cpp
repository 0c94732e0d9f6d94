// The surface view as the desktop's painter draws it. The image is 40 x 20 samples, four pixels each: sample (x, y) has
// its middle 4x + 2 right of and 80 - 4y - 2 below the upper left corner of the picture. Heights rise to the right and,
// a tenth as much, upwards.
#include "golden_picture.h"
#include "support/streams.h"
#include "surface/surface_fixture.h"
#include "view/image/VolumeSource.h"

namespace {

using surface::cursor_mode;

constexpr int pictureWidth = 160, pictureHeight = 80;
constexpr unsigned black = 0x000000, white = 0xFFFFFF, red = 0xFF0000, green = 0x00FF00, blue = 0x0000FF;

/// A profile between two samples of the image, drawn as profiles are: the gaps of the line first.
class CTestSection : public plain_section {
public:
    void drawOn(CImageView& surface, CDC& dc, int, int, const CPen& line, const CPen& under, bool) override
    {
        CPoint ends[] = {points[0], points[1]};
        surface.src2clnt(ends, 2);
        for (const CPen* pen : {&under, &line}) {
            dc.SelectObject(*pen);
            dc.Polyline(ends);
        }
    }
};

/// A volume of 11 x 11 curves with its mark in the middle of X and at the end of Y.
class CTestVolume : public CImageView, public IVolumeSource {
public:
    CTestVolume() { LoadOptions(nullptr); }
    void GetOptionsList(SPMVar* vars, unsigned* count) override
    {
        static constexpr view::option_row rows[] = {{"mark.x,double,0,1", "0.5"}, {"mark.y,double,0,1", "1"}};
        unsigned before = 0;
        CImageView::GetOptionsList(nullptr, &before);
        if (vars) CImageView::GetOptionsList(vars, count);
        view::list_options(rows, before, vars, count);
    }
    const SPMDataStream& getVolume() const override { return volume; }
    unsigned getVolumeImage() const override { return 7; }

private:
    SPMDataStream volume = test_support::made_stream("volume", {{11}, {11}}, {}, [](unsigned) { return 0; });
};

class SurfacePictures : public SurfaceTest {
protected:
    /// The view in gray, of a window of this size.
    CSurfMathView& shown(CSize client)
    {
        CSurfMathView& view = open();
        document->SetPathName(L"/data/slope.spm", 0);
        view.getScale().SetPaletteId(1);
        view.setOption("text_face_list", "Liberation Sans");
        resized(view, client);
        return view;
    }
    /// Nothing but the picture and what is drawn over it.
    CSurfMathView& bare()
    {
        CSurfMathView& view = open();
        view.getScale().SetPaletteId(1);
        view.setOption("CompactLegend", "true");
        view.setOption("ShowLegend", "false");
        resized(view, {pictureWidth, pictureHeight});
        return view;
    }
    void resized(CSurfMathView& view, CSize client)
    {
        host.pump();
        view.MoveWindow(CRect({0, 0}, client));
        host.pump();
        view.flushTimers();
    }
    static golden_picture drawing(CSurfMathView& view)
    {
        return golden_picture(view.GetClientRect().Size(), [&](CDC& dc) {
            view.OnEraseBkgnd(dc);
            view.DrawView(&dc);
        });
    }
    /// What the user has drawn, to be set without a mouse.
    static surface::selection_state& state(CSurfMathView& view)
    {
        return const_cast<surface::selection_state&>(view.getDrawn());
    }
};

TEST_F(SurfacePictures, FullLegend)
{
    CSurfMathView& view = shown({pictureWidth + 140, pictureHeight + 75});
    ASSERT_EQ(view.displayRect, CRect(50, 10, 210, 90));
    const golden_picture picture = drawing(view);
    EXPECT_TRUE(picture.equals("full_legend"));
    EXPECT_LT(picture.at(51, 88), 0x101010u) << "the lowest sample is at the lower left";
    EXPECT_GT(picture.at(208, 11), 0xf0f0f0u) << "the highest at the upper right";
    EXPECT_EQ(picture.count(black, CRect(49, 10, 50, 90)), 80) << "the left axis";
    EXPECT_EQ(picture.count(black, CRect(49, 91, 212, 92)), 163) << "the lower axis, which keeps one pixel away";
    // 40 nm along X make 160 pixels: 24 nm stand 96 pixels from the left, in the middle of their label.
    const CRect label = picture.textBox(L"24");
    EXPECT_NEAR((label.left + label.right) / 2.0, 50 + 96, 1.0);
    EXPECT_GE(label.top, 91);
    // The strip of 5 pixels ends 5 before the right edge; it is as high as the margins leave, less 5 at both ends.
    EXPECT_GT(picture.at(292, 17), 0xf0f0f0u);
    EXPECT_LT(picture.at(292, 83), 0x101010u);
    EXPECT_EQ(picture.textBox(L"File: /data/slope.spm").bottom, 155 - 65 + 40);
    EXPECT_EQ(picture.textBox(L"File: /data/slope.spm").left, 0);
    EXPECT_EQ(picture.textBox(L"Image data: Height").top, 155 - 65 + 40) << "the next line";
}

TEST_F(SurfacePictures, FullLegendWithScaleMarkGridAndPanel)
{
    CSurfMathView& view = shown({pictureWidth + 240, 2 * pictureHeight + 75});
    view.setOption("FullLegend.scale_mark", "true");
    view.setOption("CompactLegend.scale_mark.direction", "Horizontal");
    view.setOption("CompactLegend.scale_mark.position", "Bottom left");
    view.setOption("CompactLegend.scale_mark.margin", "0.1");
    view.setOption("CompactLegend.scale_mark.size", "20");
    view.setOption("grid.show", "Both");
    view.setOption("grid.line.width", "1");
    view.setOption("ShowStatistics", "true");
    resized(view, {pictureWidth + 240, 2 * pictureHeight + 75});
    // 160 x 160 pixels of room: the picture keeps its shape in the middle.
    ASSERT_EQ(view.displayRect, CRect(50, 10 + 40, 210, 10 + 120));
    const golden_picture picture = drawing(view);
    EXPECT_TRUE(picture.equals("full_legend_panel"));
    EXPECT_EQ(picture.textBox(L"Rmax: 205 nm").left, 400 - 100 + 5) << "with decimals \"Zmax: 207.5 nm\" would be cut";
    // 20 nm are 80 pixels from 16 right of the left edge on, 8 above the lower one: two rows of white, two of black.
    EXPECT_EQ(picture.count(white, CRect(66, 121, 82, 122)), 16);
    EXPECT_EQ(picture.count(white, CRect(83, 121, 114, 122)), 31) << "up to the next line of the grid";
    EXPECT_EQ(picture.count(black, CRect(67, 123, 147, 124)), 80);
    EXPECT_EQ(picture.textBox(L"20 nm").bottom, 122 - 4) << "two widths of the bar above it";
    EXPECT_EQ(picture.textBox(L"20 nm").left, 66);
    EXPECT_EQ(picture.textBox(L"24"), CRect()) << "the bar stands for the labels";
    EXPECT_EQ(picture.textBox(L"Statistics:").TopLeft(), CPoint(400 - 100 + 5, 10));
}

TEST_F(SurfacePictures, CompactLegend)
{
    CSurfMathView& view = shown({2 * pictureWidth, 2 * pictureHeight});
    view.setOption("CompactLegend", "true");
    resized(view, {2 * pictureWidth, 2 * pictureHeight});
    ASSERT_EQ(view.displayRect, CRect(0, 0, 320, 160));
    const golden_picture picture = drawing(view);
    EXPECT_TRUE(picture.equals("compact_legend"));
    // 30 nm of 40 are 120 of 160 pixels, from 5 % below the upper edge on, 16 left of the right one.
    EXPECT_EQ(picture.count(white, CRect(303, 8, 304, 128)), 120);
    EXPECT_EQ(picture.count(black, CRect(305, 9, 306, 129)), 120);
    EXPECT_NE(picture.at(303, 128), white);
    EXPECT_EQ(picture.textBox(L"30 nm").right, 304 - 4);
    EXPECT_EQ(picture.textBox(L"30 nm").top, 8);
    // The strip: 5 % of 320 and 160 from the corner, 6.25 % wide and a quarter high, its labels to the right.
    EXPECT_GT(picture.at(20, 9), 0xf0f0f0u);
    EXPECT_LT(picture.at(20, 46), 0x101010u);
    EXPECT_GE(picture.textBox(L"50").left, 16 + 20);
    EXPECT_EQ(picture.textBox(L"File: /data/slope.spm").left, 0);
    EXPECT_LT(picture.textBox(L"File: /data/slope.spm").bottom, picture.textBox(L"Image data: Height").bottom);
}

TEST_F(SurfacePictures, MarksInBothStyles)
{
    for (const auto& [style, name] : {std::pair{6101u, "marks_arrows"}, {6102u, "marks_ticks"}}) {
        CSurfMathView& view = bare();
        state(view).marks.clear();
        const golden_picture before = drawing(view);
        view.OnCmdMsg(style, nullptr);
        state(view).marks = {{5, 10}, {35, 15}, {39, 0}};
        const golden_picture picture = drawing(view);
        EXPECT_TRUE(picture.equals(name));
        // Sample (5, 10) lies at 22, 38.
        if (style == 6102) {
            EXPECT_EQ(picture.at(22, 38), green) << "the corner of the V";
            EXPECT_EQ(picture.at(18, 35), green);
            EXPECT_EQ(picture.at(26, 33), green);
        } else {
            for (const int x : {14, 18, 21})
                EXPECT_EQ(picture.at(x, 38), white - before.at(x, 38)) << "the shaft " << x;
            EXPECT_EQ(picture.at(13, 37), white - before.at(13, 37)) << "the outline";
        }
        const CRect first = picture.textBox(L"1"), last = picture.textBox(L"3");
        EXPECT_EQ(first.TopLeft(), CPoint(22 + 4, 38 + 1));
        EXPECT_EQ(last.BottomRight(), CPoint(160, 80)) << "kept inside";
    }
}

TEST_F(SurfacePictures, RegionOfInterestGridOfCurvesAndCross)
{
    CSurfMathView& view = bare();
    state(view).roi = {5, 2, 30, 15};
    state(view).roiActive = true;
    state(view).curves = {{{2, 2}, {10, 12}, {20, 4}}, {{25, 2}, {38, 2}}};
    CTestVolume volume;
    document->AddView(&volume);
    const golden_picture picture = drawing(view);
    document->RemoveView(&volume);
    EXPECT_TRUE(picture.equals("overlays"));
    // From 22 to 122 and, 15 being above 2, from 18 to 70.
    EXPECT_EQ(picture.at(22, 18), red);
    EXPECT_EQ(picture.at(121, 69), red);
    EXPECT_NE(picture.at(122, 70), red);
    EXPECT_EQ(picture.at(8, 71), red) << "the first vertex, at 10, 70";
    EXPECT_EQ(picture.at(42, 28), green) << "the second, at 42, 30";
    // The mark: 5 of 10 steps along X, 10 of 10 along Y. 5 * 40 / 11 = 18 and 10 * 20 / 11 = 18: at 74, 6.
    EXPECT_EQ(picture.count(green, CRect(66, 6, 83, 7)), 17);
    EXPECT_EQ(picture.at(74, 0), green);
    EXPECT_EQ(picture.at(70, 7), 0x7F7F7Fu);
    EXPECT_EQ(picture.at(70, 5), 0xC0C0C0u);
}

TEST_F(SurfacePictures, SectionsAreSeenOnLightAndDark)
{
    CSurfMathView& view = bare();
    CTestSection section;
    section.points = {{0, 10}, {39, 10}};
    document->AddView(&section);
    const golden_picture dotted = drawing(view);
    EXPECT_TRUE(dotted.equals("section_dots"));
    // From 2 to 158 in row 38: a red pixel, two white ones, and so on.
    for (int x = 2; x < 157; ++x) EXPECT_EQ(dotted.at(x, 38), (x - 2) % 3 == 0 ? red : white) << x;
    view.setOption("section.line.style", "Dash-Dot");
    view.setOption("section.line.solid.width", "3");
    section.points[1] = {39, 18};
    const golden_picture dashes = drawing(view);
    document->RemoveView(&section);
    EXPECT_TRUE(dashes.equals("section_dashes"));
    EXPECT_GT(dashes.count(red, CRect(0, 0, 160, 80)), 100);
    EXPECT_GT(dashes.count(white, CRect(0, 0, 160, 80)), 100);
}

TEST_F(SurfacePictures, SelectionsWhileTheyAreDrawnAndAfterwards)
{
    CSurfMathView& view = bare();
    surface::selection_state& drawn = state(view);
    drawn.selectionActive = true;
    drawn.selection = {5, 2, 30, 15};
    const auto picture_of = [&](cursor_mode mode, bool tracking) {
        drawn.mode = mode;
        drawn.tracking = tracking;
        return drawing(view);
    };
    // The start, at 22, 70, and the moving end, at 122, 18, have squares of 4 pixels around them.
    const auto has_handles = [](const golden_picture& picture) {
        return picture.count(red, CRect(20, 68, 24, 72)) == 16 && picture.count(green, CRect(120, 16, 124, 20)) == 16;
    };
    const golden_picture rectangle = picture_of(cursor_mode::rectangle, true);
    EXPECT_TRUE(rectangle.equals("rectangle_drag"));
    EXPECT_TRUE(has_handles(rectangle));
    EXPECT_GT(rectangle.count(blue, CRect(22, 20, 23, 68)), 0) << "hatched";
    EXPECT_GT(rectangle.count(white, CRect(22, 20, 23, 68)), 0) << "on white";
    EXPECT_TRUE(picture_of(cursor_mode::ellipse, true).equals("ellipse_drag"));
    const golden_picture distance = picture_of(cursor_mode::distance, true);
    EXPECT_TRUE(distance.equals("distance"));
    EXPECT_TRUE(has_handles(distance));
    drawn.firstArm = {5, 2, 36, 4};
    drawn.angleFirstArmPending = false;
    EXPECT_TRUE(picture_of(cursor_mode::angle, true).equals("angle"));
    drawn.region = CRgn(CRect(5, 2, 30, 15));
    const golden_picture outside = picture_of(cursor_mode::rectangle, false);
    EXPECT_TRUE(outside.equals("rectangle_outer"));
    // The region covers 20 to 120 and 20 to 72; around it lines fall to the left in the selection's colour.
    const unsigned color = 0x00c864;
    EXPECT_EQ(outside.count(color, CRect(21, 21, 119, 71)), 0);
    EXPECT_NEAR(outside.count(color, CRect(124, 0, 156, 80)), 32 * 80 / 8, 32) << "every eighth pixel";
    view.setOption("SelectionFill", "Inner");
    const golden_picture inside = picture_of(cursor_mode::rectangle, false);
    EXPECT_TRUE(inside.equals("rectangle_inner"));
    EXPECT_EQ(inside.count(color, CRect(121, 0, 160, 80)), 0);
    EXPECT_GT(inside.count(color, CRect(21, 21, 119, 71)), 98 * 50 / 10);
}

} // namespace
