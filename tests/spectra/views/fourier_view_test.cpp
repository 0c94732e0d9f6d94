// The window on a spectrum: what is selected goes out of the image and comes back.
#include "spectra/views/FourierView.h"

#include "base/text.h"
#include "document/StorageDocTemplate.h"
#include "document/update_hints.h"
#include "platform/app/RuntimeClass.h"
#include "platform/app/keys.h"
#include "resources/commands.h"
#include "support/HeadlessHost.h"
#include "support/streams.h"
#include "view/ChildFrame.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using testing::HasSubstr;

constexpr int side = 64;
constexpr double turn = 2.0 * std::numbers::pi;

/// A wave that is even around the middle of the image: its best plane is level, so that none takes of it.
double wave_at(int x, int y, int u, int v)
{
    return std::cos(turn * (u * (x - 0.5 * (side - 1)) + v * (y - 0.5 * (side - 1))) / side);
}

int two_waves(unsigned i)
{
    const int x = static_cast<int>(i) % side, y = static_cast<int>(i) / side;
    return static_cast<int>(std::lround(4000.0 * wave_at(x, y, 8, 0) + 2000.0 * wave_at(x, y, 5, -10)));
}

class FourierViewTest : public testing::Test {
protected:
    FourierViewTest()
    {
        static constexpr CRuntimeClass classes[] = {
            {"CStorageDoc", nullptr, create_object<CStorageDoc>},
            {"CChildFrame", nullptr, create_object<CChildFrame>},
            {"CFourierView", nullptr, create_object<CFourierView>},
        };
        for (const CRuntimeClass& each : classes) register_runtime_class(each);
        app.AddDocTemplate(&fouriers);
    }
    ~FourierViewTest() override
    {
        while (!app.frames().empty()) app.frames().back()->DestroyFrame();
        app.freeClosed();
    }
    CFourierView& open(int (*heights)(unsigned) = two_waves)
    {
        document = dynamic_cast<CStorageDoc*>(fouriers.CreateNewDocument());
        const SPMDataStream image = test_support::made_stream(
            "Height", {{side, VLAxis(0, 2, "nm")}, {side, VLAxis(0, 2, "nm")}}, VLAxis(0, 0.5, "nm"), heights);
        document->AddNewImages(&image, 1);
        CFrameWnd* const frame = fouriers.CreateNewFrame(document, nullptr);
        fouriers.InitialUpdateFrame(frame, document, true);
        auto& view = *dynamic_cast<CFourierView*>(frame->GetActiveView());
        view.MoveWindow(CRect(0, 0, 4 * side, 4 * side));
        host.pump();
        return view;
    }
    /// The middle of the pixels that show a bin.
    static CPoint at(CFourierView& view, int u, int v)
    {
        return {view.xsrc2clnt(u + side / 2), view.ysrc2clnt(v + side / 2)};
    }
    static void drag(CFourierView& view, CPoint from, CPoint to, unsigned keys = 0)
    {
        view.OnMouseMove(keys, from);
        view.OnLButtonDown(MK_LBUTTON | keys, from);
        view.OnMouseMove(MK_LBUTTON | keys, to);
        view.OnLButtonUp(keys, to);
    }
    short sample(int x, int y) { return document->getDataPoint1S(0, y * side + x, 0); }
    int farthestFrom(double (*wanted)(int x, int y))
    {
        double worst = 0.0;
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) worst = std::max(worst, std::fabs(sample(x, y) - wanted(x, y)));
        return static_cast<int>(std::ceil(worst));
    }
    static double both(int x, int y) { return 4000.0 * wave_at(x, y, 8, 0) + 2000.0 * wave_at(x, y, 5, -10); }

    CHeadlessHost host;
    CWinApp app{host};
    CMultiDocTemplate fouriers{109, "CStorageDoc", "CChildFrame", "CFourierView"};
    CStorageDoc* document = nullptr;
};

TEST_F(FourierViewTest, TakesOneWaveOutAndBack)
{
    CFourierView& view = open();
    ASSERT_TRUE(view.IsGood());
    view.OnCmdMsg(commands::zeroOuter, nullptr);
    EXPECT_FALSE(document->canUndo(0)) << "nothing is selected";

    // Drawn at the mirror image of the first wave: it is the same wave.
    drag(view, at(view, -9, -1), at(view, -7, 1));
    ASSERT_EQ(view.getControl().areas(), (std::vector<CRect>{{-9, -1, -7, 1}}));
    view.OnCmdMsg(commands::zeroInner, nullptr);
    EXPECT_LE(farthestFrom([](int x, int y) { return 2000.0 * wave_at(x, y, 5, -10); }), 1);
    EXPECT_TRUE(document->isChanged());
    view.OnCmdMsg(commands::undo, nullptr);
    EXPECT_LE(farthestFrom(both), 1);
    EXPECT_FALSE(document->canUndo(0));

    view.OnCmdMsg(commands::zeroOuter, nullptr);
    EXPECT_LE(farthestFrom([](int x, int y) { return 4000.0 * wave_at(x, y, 8, 0); }), 1);
    view.OnCmdMsg(commands::undo, nullptr);
    view.OnCmdMsg(commands::increase, nullptr);
    EXPECT_LE(farthestFrom([](int x, int y) { return both(x, y) + 4000.0 * wave_at(x, y, 8, 0); }), 2);
    view.OnCmdMsg(commands::decrease, nullptr);
    EXPECT_LE(farthestFrom(both), 1);
}

TEST_F(FourierViewTest, ShowsTheSpectrumOfTheImageOfNow)
{
    CFourierView& view = open();
    const auto told = [&](int u, int v) {
        view.OnMouseMove(0, at(view, u, v));
        return base::narrow(host.statusText);
    };
    // 64 samples of 2 nm: bin 8 is 16 nm. The two bins of a wave have half its amplitude each: 2000 steps of 0.5 nm.
    EXPECT_THAT(told(8, 0), HasSubstr("T: 16 nm  F: 0.0625 1/nm  A: 0.00"));
    view.setOption("spectrum_mode", "Magnitude");
    EXPECT_NEAR(std::stod(told(8, 0).substr(told(8, 0).find("M: ") + 3)), 1000.0, 0.5);
    EXPECT_NEAR(std::stod(told(-5, 10).substr(told(-5, 10).find("M: ") + 3)), 500.0, 0.5);
    EXPECT_THAT(told(-5, 10), HasSubstr("A: -63.43")) << "of (5, -10)";
    EXPECT_THAT(told(0, 0), HasSubstr("F: 0 "));

    document->pushUndo(0, true);
    std::vector<short> flat(side * side, 7);
    document->setImageDataS(0, flat.data(), side * side, 0, 0);
    document->UpdateAllViews(nullptr, document::data_hint(0));
    EXPECT_NEAR(std::stod(told(8, 0).substr(told(8, 0).find("M: ") + 3)), 0.0, 1e-3);
    view.OnCmdMsg(commands::undo, nullptr);
    EXPECT_NEAR(std::stod(told(8, 0).substr(told(8, 0).find("M: ") + 3)), 1000.0, 0.5);

    // Twice 25,000 does not fit into 16 bits: what is shown is the spectrum of what is left.
    CFourierView& strong = open([](unsigned i) {
        return static_cast<int>(std::lround(25000.0 * wave_at(static_cast<int>(i) % side, 0, 8, 0)));
    });
    strong.setOption("spectrum_mode", "Magnitude");
    drag(strong, at(strong, 7, -1), at(strong, 9, 1));
    strong.OnCmdMsg(commands::increase, nullptr);
    EXPECT_EQ(sample(31, 0), 32767) << "at a crest";
    strong.OnMouseMove(0, at(strong, 24, 0));
    const std::string third = base::narrow(host.statusText);
    EXPECT_GT(std::stod(third.substr(third.find("M: ") + 3)), 100.0) << "a cut wave has a third harmonic";
}

TEST_F(FourierViewTest, MovesSizesAndDeletesAreas)
{
    CFourierView& view = open();
    const auto areas = [&] { return view.getControl().areas(); };
    drag(view, at(view, 4, 4), at(view, 10, 8));
    ASSERT_EQ(areas(), (std::vector<CRect>{{4, 4, 10, 8}}));
    drag(view, at(view, 7, 6), at(view, 9, 5));
    EXPECT_EQ(areas(), (std::vector<CRect>{{6, 3, 12, 7}})) << "moved";
    drag(view, at(view, -9, -5), at(view, -8, -5));
    EXPECT_EQ(areas(), (std::vector<CRect>{{5, 3, 11, 7}})) << "moved by its mirror image";
    const CPoint corner = at(view, 11, 7);
    const int half = view.displayRect.Width() / side / 2 - 1;
    drag(view, {corner.x + half, corner.y - half}, at(view, 15, 20));
    EXPECT_EQ(areas(), (std::vector<CRect>{{5, 3, 15, 20}})) << "sized";
    drag(view, at(view, 10, 10), at(view, 90, 90));
    EXPECT_EQ(areas(), (std::vector<CRect>{{21, 14, 31, 31}})) << "as far as the spectrum goes";
    drag(view, at(view, -20, 20), at(view, -20, 20));
    EXPECT_EQ(areas().size(), 1u) << "a click selects nothing";
    view.OnLButtonDown(MK_LBUTTON, at(view, -20, 20));
    view.OnMouseMove(MK_LBUTTON, at(view, -10, 10));
    EXPECT_EQ(areas().size(), 2u);
    view.OnKeyDown(VK_ESCAPE);
    EXPECT_EQ(areas().size(), 1u) << "given up";
    drag(view, at(view, 25, 20), at(view, 25, 20), MK_CONTROL);
    EXPECT_TRUE(areas().empty()) << "deleted";

    view.OnCmdMsg(commands::markSpectrum, nullptr);
    drag(view, at(view, 8, 0), at(view, 8, 0));
    drag(view, at(view, 5, -10), at(view, 5, -10));
    EXPECT_EQ(view.getControl().marks(), (std::vector<CPoint>{{8, 0}, {5, -10}}));
    drag(view, at(view, 8, 0), at(view, 9, 1), MK_SHIFT);
    EXPECT_EQ(view.getControl().marks().front(), (CPoint{9, 1}));
    EXPECT_THAT(base::narrow(view.GetClipboardText(true)), HasSubstr("2\t5\t-10\t11.4487\t0.0873464\t-63.43"));
    drag(view, at(view, 9, 1), at(view, 9, 1));
    EXPECT_EQ(view.getControl().marks().size(), 1u) << "deleted by a click";
    view.OnKeyDown(VK_DELETE);
    EXPECT_TRUE(view.getControl().marks().empty());
}

} // namespace
