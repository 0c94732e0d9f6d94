// Windows on curves as the desktop's painter draws them. The pane of the curves has 512 x 160 pixels, its upper left
// corner at 50, 10.
#include "curves/views/LineView.h"
#include "curves/views/ParametricCurveView.h"
#include "curves/views/section_view_fixture.h"
#include "document/contact_model.h"
#include "document/examples/examples.h"
#include "golden_picture.h"
#include "paint/QtDC.h"

#include <cmath>

namespace {

using namespace vldv::curves;

constexpr unsigned red = 0xFF0000, green = 0x008000, blue = 0x0000FF, grey = 0xC0C0C0;

class CurvePictures : public SectionViewTest {
protected:
    CurvePictures()
    {
        static constexpr CRuntimeClass lineView = {"CLineView", nullptr, create_object<CLineView>};
        register_runtime_class(lineView);
        app.AddDocTemplate(&lines);
    }
    golden_picture drawing(CImageView& view)
    {
        view.image.Init(&reference); // curves are painted there first
        view.setOption("text_face_list", "Liberation Sans");
        view.RefreshDisplay();
        view.flushTimers();
        return golden_picture(view.GetClientRect().Size(), [&](CDC& dc) {
            view.OnEraseBkgnd(dc);
            view.DrawView(&dc);
        });
    }
    /// Of the bundled force curve, whose model is known.
    static SPMDataStream force()
    {
        for (const document::example& each : document::make_examples())
            if (each.fileName == "force-curve.spm")
                return std::get<formats::recorded_image>(each.content.items.front()).stream;
        return {};
    }

    CMultiDocTemplate lines{103, "CStorageDoc", "CChildFrame", "CLineView"};
    paint::CQtDC reference{CSize{96, 96}};
};

TEST_F(CurvePictures, AForceCurveWithItsLinesAndValleys)
{
    CSectionView& view = open(force());
    view.setActiveSubimage(1);
    view.setOption("BottomMarginOpt", "60");
    view.setOption("ShowForceCurveStats", "true");
    view.setOption("ShowForceCurveSquares", "true");
    view.setOption("ShowForceCurveMin", "true");
    const golden_picture picture = drawing(view);
    ASSERT_EQ(view.displayRect, CRect(50, 10, 562, 170));
    EXPECT_TRUE(picture.equals("force_curve"));
    // Marks at thirds of 511 pixels: every second pixel of their lines is blue.
    for (const int x : {220, 391}) EXPECT_NEAR(picture.count(blue, CRect(x, 10, x + 1, 170)), 160 / 2, 2) << x;
    // 1024 samples of 0.3 nm from -105 nm on; the retract leaves the surface where its model says.
    const document::contact pair;
    const double leaves = (document::snap_off_position(pair) + 105.0) / 0.3 / 1023.0 * 511.0;
    const CRect label = picture.textBox(L"S1");
    EXPECT_NEAR(label.left, 50 + leaves, 40) << "over the valley that ends there";
    EXPECT_GT(picture.count(red, CRect(50 + static_cast<int>(leaves) + 20, 10, 562, 170)), 250) << "the free stretch";
    EXPECT_GT(picture.count(red, CRect(50, 10, 50 + static_cast<int>(leaves), 100)), 60) << "the contact";
    EXPECT_EQ(picture.count(red, CRect(50 + static_cast<int>(leaves) + 20, 30, 562, 60)), 0);
}

TEST_F(CurvePictures, APolylineOverASurfaceWithItsJoints)
{
    CSectionView& view = open(ramps());
    const SPMDataStream image = surface();
    document->AddNewImages(&image, 1);
    view.setImageNumber(1);
    view.CDCView::LoadOptions(nullptr);
    view.SetPoint(0, 0, 5);
    view.SetPoint(1, 39, 5);
    view.SetPoint(2, 39, 19);
    view.SetPoint(3, 10, 19);
    view.reloadSection();
    ASSERT_EQ(view.getSection().length, 40u + 15u + 30u - 2u);
    const golden_picture picture = drawing(view);
    EXPECT_TRUE(picture.equals("polyline"));
    // Joints at samples 39 and 53 of 82: 243 and 330 pixels from the left edge; of dashes two of six pixels are drawn.
    for (const int x : {50 + 243, 50 + 330}) EXPECT_NEAR(picture.count(red, CRect(x, 10, x + 1, 170)), 160 / 3, 8) << x;
    // From 5 up to 395, 409 at the second joint, down to 119.
    EXPECT_GE(picture.count(green, CRect(50 + 241, 10 + 4, 50 + 243, 10 + 8)), 1) << "395 of 5 to 409";
}

TEST_F(CurvePictures, ASpectrumWithItsPhase)
{
    CSectionView& view =
        open(test_support::made_stream("wave", {{128, VLAxis(0, 1, "nm")}}, VLAxis(0, 1, "nm"), [](unsigned i) {
            return static_cast<int>(std::lround(1000.0 * std::cos(2.0 * 3.14159265358979 * 16.0 * i / 128.0)));
        }));
    view.setOption("ShowSpectrum", "true");
    const golden_picture picture = drawing(view);
    EXPECT_TRUE(picture.equals("spectrum"));
    // Bin 16 of 64: a quarter of 511 pixels from the left; the peak reaches the top of the lower pane.
    const CRect below(50, 10 + 160 + 45, 562, 10 + 160 + 45 + 160);
    EXPECT_GE(picture.count(red, CRect(below.left + 127, below.top, below.left + 130, below.top + 3)), 1);
    EXPECT_EQ(picture.count(red, CRect(below.left + 150, below.top, below.right, below.top + 140)), 0);
    EXPECT_GT(picture.count(grey, below), 100) << "the phase";
    EXPECT_NEAR(picture.count(blue, CRect(below.left + 256, below.top, below.left + 257, below.bottom)), 160 / 2, 2);
}

TEST_F(CurvePictures, ACrossbarOnTwoNamedCurves)
{
    SPMDataStream parts = ramps();
    const char* names[] = {"Approach", "Retract"};
    parts.set_subimage_names(names, 2);
    CSectionView& view = open(parts);
    view.setOption("marks_mode", "Crossbar");
    view.OnMouseWheel(MK_CONTROL, 120, {view.displayRect.left, view.displayRect.top + 5});
    const golden_picture picture = drawing(view);
    EXPECT_TRUE(picture.equals("crossbar"));
    // Of 0 to 0.8 the middle stands at 0.625 of 511 pixels; half way up are 79.5 rows.
    EXPECT_NEAR(picture.count(blue, CRect(50 + 319, 10, 50 + 320, 170)), 160 / 2, 2);
    EXPECT_NEAR(picture.count(blue, CRect(50, 10 + 80, 562, 10 + 81)), 512 / 2, 4);
    EXPECT_EQ(picture.textBox(L"Retract").right, 562 - 4 - 10) << "the last name";
    EXPECT_LT(picture.textBox(L"Approach").right, picture.textBox(L"Retract").left);
}

TEST_F(CurvePictures, ALineThatAStepLeads)
{
    open(ramps());
    const SPMDataStream image = surface();
    document->AddNewImages(&image, 1);
    // On row i of 20 the step crosses column 5 + i / 2, counted from the left.
    SPMDataStream step = test_support::made_stream("step0", {{20, VLAxis(0, 2, "nm")}}, VLAxis(0, 1, "nm"),
                                                   [](unsigned i) { return static_cast<int>(5 + i / 2); });
    step.values.set_axis(1, VLAxis(0, 1, "line"));
    SPMDataStream::dimension rows = step.get_dimension(0);
    rows.set_axis(1, VLAxis(0, 1, "line"));
    step.set_dimension(0, rows);
    document->AddNewImages(&step, 1);
    document->setString("stepsearch.invert", "Left to Right", 2);
    sections.setOpeningImage(2);
    sections.InitialUpdateFrame(sections.CreateNewFrame(document, nullptr), document, true);
    host.pump();
    CSectionView& view = shown();
    ASSERT_EQ(view.getImageNumber(), 2u);
    view.OnKeyDown(VK_RIGHT); // from the middle, 9.5, to row 11
    host.pump();
    CLineView* line = nullptr;
    for (CView* const each : document->views())
        if (auto* const found = dynamic_cast<CLineView*>(each)) line = found;
    ASSERT_TRUE(line);
    const golden_picture step_picture = drawing(view), picture = drawing(*line);
    EXPECT_TRUE(step_picture.equals("step"));
    EXPECT_TRUE(picture.equals("step_line"));
    // Row 11 of 19 of the step, column 10 of 39 of the line, of 511 pixels; every second pixel is drawn.
    const auto upright = [](int x) { return CRect(50 + x, 10, 50 + x + 1, 170); };
    EXPECT_NEAR(step_picture.count(blue, upright(static_cast<int>(std::lround(511.0 * 11 / 19)))), 160 / 2, 3);
    EXPECT_NEAR(picture.count(blue, upright(static_cast<int>(std::lround(511.0 * 10 / 39)))), 160 / 2, 3);
}

TEST_F(CurvePictures, ACurveOverItsPositionsWithACrossbar)
{
    // A ring: 61 pairs at 6 degrees, of 3 nm and 2 nN steps around a middle.
    const auto ring = [](double (*side)(double)) {
        return [side](unsigned i) {
            return static_cast<int>(std::lround(100.0 * side(i * 6.0 / 180.0 * 3.14159265358979)));
        };
    };
    SPMDataStream images[] = {
        test_support::made_stream("Force", {{61}}, VLAxis(0, 2, "nN"), ring([](double a) { return std::sin(a); })),
        test_support::made_stream("Height", {{61}}, VLAxis(0, 3, "nm"), ring([](double a) { return std::cos(a); })),
    };
    images[0].set_parameter_stream("Height");
    CStorageDoc pairs;
    pairs.autoDelete = false;
    pairs.AddNewImages(images, 2);
    CParametricCurveView view;
    pairs.AddView(&view);
    view.Create(nullptr, view.kind());
    view.OnInitialUpdate();
    view.MoveWindow(CRect(0, 0, 587, 385));
    host.pump();
    view.setOption("marks_mode", "Crossbar");
    const golden_picture picture = drawing(view);
    EXPECT_TRUE(picture.equals("parametric"));
    const CRect pane = view.displayRect;
    const int middle = (pane.left + pane.right) / 2;
    // The rightmost pair is the first: 300 nm, 0 nN, half way up; the lowest one 45 pairs on.
    EXPECT_GE(picture.count(green, CRect(pane.right - 3, (pane.top + pane.bottom) / 2 - 3, pane.right,
                                         (pane.top + pane.bottom) / 2 + 3)),
              2);
    EXPECT_GE(picture.count(green, CRect(middle - 20, pane.bottom - 2, middle + 20, pane.bottom)), 5) << "the lowest";
    EXPECT_EQ(picture.count(green, CRect(middle - 60, pane.top + 60, middle + 60, pane.bottom - 60)), 0) << "a hole";
    EXPECT_GT(picture.count(blue, CRect(pane.left, pane.top, pane.right, pane.bottom)), 250) << "both lines, dotted";
    pairs.RemoveView(&view);
}

} // namespace
