// Windows on distributions, spectra and features as the desktop's painter draws them.
#include "document/StorageDoc.h"
#include "golden_picture.h"
#include "paint/QtDC.h"
#include "platform/app/keys.h"
#include "spectra/views/FeaturesHistogramView.h"
#include "spectra/views/FourierView.h"
#include "support/HeadlessHost.h"
#include "support/streams.h"
#include "surface/views/SurfMathView.h"

#include <cmath>

namespace {

constexpr int side = 64;
constexpr double pi = 3.14159265358979323846;

class SpectraPictures : public testing::Test {
protected:
    SpectraPictures() { document.autoDelete = false; }
    template <class SampleAt>
    void setImage(const SampleAt& sampleAt)
    {
        const SPMDataStream image = test_support::made_stream(
            "Height", {{side, VLAxis(0, 2, "nm")}, {side, VLAxis(0, 2, "nm")}}, VLAxis(0, 0.1, "nm"),
            [&](unsigned i) { return sampleAt(static_cast<int>(i) % side, static_cast<int>(i) / side); });
        document.AddNewImages(&image, 1);
    }
    void show(CImageView& view, CSize size)
    {
        document.AddView(&view);
        view.Create(nullptr, view.kind());
        view.OnInitialUpdate();
        view.image.Init(&reference); // pictures are painted there first
        view.setOption("text_face_list", "Liberation Sans");
        view.MoveWindow(CRect({0, 0}, size));
        host.pump();
    }
    golden_picture drawing(CImageView& view)
    {
        view.RefreshDisplay();
        view.flushTimers();
        return golden_picture(view.GetClientRect().Size(), [&](CDC& dc) {
            view.OnEraseBkgnd(dc);
            view.DrawView(&dc);
        });
    }

    CHeadlessHost host;
    CWinApp app{host};
    CStorageDoc document;
    paint::CQtDC reference{CSize{96, 96}};
};

TEST_F(SpectraPictures, AHistogramWithItsCumulativeCurve)
{
    setImage([](int x, int) { return x < side / 2 ? 0 : x; }); // half of the samples are 0, the others 32 to 63
    CHistogramView view;
    show(view, {400, 220});
    view.setOption("NBars", "Manual");
    view.setOption("NBars.manual.count", "64");
    view.setOption("ShowCumulative", "true");
    const golden_picture picture = drawing(view);
    EXPECT_TRUE(picture.equals("histogram"));
    const CRect pane = view.displayRect;
    EXPECT_GT(picture.count(0x000000, CRect(pane.left, pane.top + 2, pane.left + 4, pane.top + 4)), 0) << "the fullest";
    // Behind 32 of 63 there is a 32nd of the fullest bar, and half of all samples before.
    const int from = pane.left + pane.Width() * 34 / 63;
    EXPECT_EQ(picture.count(0x000000, CRect(from, pane.top + pane.Height() / 4, pane.right - 4, pane.bottom - 12)), 0);
    EXPECT_GT(picture.count(0x008000, CRect(pane.left + 20, pane.top + pane.Height() / 2 - 3,
                                            pane.left + pane.Width() / 2 - 5, pane.top + pane.Height() / 2 + 4)),
              50);
    document.RemoveView(&view);
}

TEST_F(SpectraPictures, ASpectrumWithAnAreaAndAMark)
{
    setImage([](int x, int y) {
        return static_cast<int>(std::lround(3000.0 * std::cos(2.0 * pi * (8 * x + 4 * y) / side)));
    });
    CFourierView view;
    show(view, {320, 320});
    const auto at = [&](int u, int v) { return CPoint{view.xsrc2clnt(u + side / 2), view.ysrc2clnt(v + side / 2)}; };
    const auto drag = [&](CPoint from, CPoint to) {
        view.OnMouseMove(0, from);
        view.OnLButtonDown(MK_LBUTTON, from);
        view.OnMouseMove(MK_LBUTTON, to);
        view.OnLButtonUp(0, to);
    };
    drag(at(12, -12), at(20, -20));
    const golden_picture picture = drawing(view);
    EXPECT_TRUE(picture.equals("fourier"));
    // The wave and its mirror image are bright, the bin beside is not.
    const auto isBright = [&](CPoint pixel) { return (picture.at(pixel.x, pixel.y) >> 8 & 255) > 128; };
    EXPECT_TRUE(isBright(at(8, 4)) && isBright(at(-8, -4)));
    EXPECT_FALSE(isBright(at(8, -4)) || isBright(at(10, 4)) || isBright(at(0, 0)));
    document.RemoveView(&view);
}

TEST_F(SpectraPictures, FeaturesAndWhatIsDrawnOfThemOnTheSurface)
{
    // Four discs with areas of about 28, 79, 154 and 254 samples; the second and the third pass.
    setImage([](int x, int y) {
        constexpr CPoint middles[] = {{10, 10}, {30, 10}, {12, 40}, {44, 44}};
        int height = 0;
        for (int i = 0; i < 4; ++i)
            if (std::hypot(x - middles[i].x, y - middles[i].y) <= 3.0 + 2.0 * i) height = 500;
        return height;
    });
    CSurfMathView surface;
    show(surface, {320, 320});
    surface.setOption("CompactLegend", "true");
    CFeaturesHistogramView view;
    show(view, {330, 190});
    ASSERT_EQ(view.features().size(), 4u);
    EXPECT_TRUE(drawing(view).equals("features"));
    const golden_picture picture = drawing(surface);
    EXPECT_TRUE(picture.equals("features_overlay"));
    const auto at = [&](int x, int y) {
        const CPoint pixel{surface.xsrc2clnt(x), surface.ysrc2clnt(y)};
        return picture.at(pixel.x, pixel.y);
    };
    // Of a disc of radius 7 around 12, 40 the outermost sample along X is on the contour, as 0xBBGGRR 0x007F00.
    EXPECT_EQ(at(19, 40), 0x007F00u);
    EXPECT_EQ(at(12 - 7, 40), 0x007F00u);
    EXPECT_NE(at(12, 40), 0x007F00u);
    EXPECT_EQ(at(44 + 9, 44), 0xC00000u) << "does not pass";
    document.RemoveView(&view);
    document.RemoveView(&surface);
}

} // namespace
