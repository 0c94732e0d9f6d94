// The window on the distribution of heights.
#include "spectra/views/HistogramView.h"

#include "base/text.h"
#include "document/StorageDocTemplate.h"
#include "document/update_hints.h"
#include "platform/app/RuntimeClass.h"
#include "platform/app/keys.h"
#include "resources/commands.h"
#include "support/HeadlessHost.h"
#include "support/RecordingDC.h"
#include "support/streams.h"
#include "support/temporary_folder.h"
#include "view/ChildFrame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

class HistogramViewTest : public testing::Test {
protected:
    HistogramViewTest()
    {
        static constexpr CRuntimeClass classes[] = {
            {"CStorageDoc", nullptr, create_object<CStorageDoc>},
            {"CChildFrame", nullptr, create_object<CChildFrame>},
            {"CHistogramView", nullptr, create_object<CHistogramView>},
        };
        for (const CRuntimeClass& each : classes) register_runtime_class(each);
        app.AddDocTemplate(&histograms);
    }
    ~HistogramViewTest() override
    {
        while (!app.frames().empty()) app.frames().back()->DestroyFrame();
        app.freeClosed();
    }
    /// 10 x 10 samples, ten of each height from 0 to 9.
    CHistogramView& open(const VLAxis& values = VLAxis(0, 1, "nm"))
    {
        document = dynamic_cast<CStorageDoc*>(histograms.CreateNewDocument());
        const SPMDataStream image = test_support::made_stream("Height", {{10}, {10}}, values,
                                                              [](unsigned i) { return static_cast<int>(i % 10); });
        document->AddNewImages(&image, 1);
        CFrameWnd* const frame = histograms.CreateNewFrame(document, nullptr);
        histograms.InitialUpdateFrame(frame, document, true);
        host.pump();
        return *dynamic_cast<CHistogramView*>(frame->GetActiveView());
    }
    static void drag(CHistogramView& view, double from, double to)
    {
        const CRect& pane = view.displayRect;
        const auto at = [&](double share) {
            return CPoint{pane.left + static_cast<int>(share * pane.Width()), pane.top + 20};
        };
        view.OnMouseMove(0, at(from));
        view.OnLButtonDown(MK_LBUTTON, at(from));
        view.OnMouseMove(MK_LBUTTON, at(to));
        view.OnLButtonUp(0, at(to));
    }
    short sample(int at) { return document->getDataPoint1S(0, at, 0); }
    static std::vector<drawn> lines(CHistogramView& view)
    {
        RecordingDC dc(view.GetClientRect().Size());
        view.image.Init(nullptr);
        view.OnPrepareDC(dc, true);
        view.OnDraw(dc);
        return dc.all(drawn::kind::lines);
    }

    CHeadlessHost host;
    CWinApp app{host};
    CMultiDocTemplate histograms{106, "CStorageDoc", "CChildFrame", "CHistogramView"};
    CStorageDoc* document = nullptr;
};

TEST_F(HistogramViewTest, TellsTheShareBetweenItsDelimiters)
{
    CHistogramView& view = open();
    // 5 bars for 100 samples, two heights in each; bars 1 to 3 lie between a quarter and three quarters of 0 to 9.
    EXPECT_EQ(view.getHistogram().bins, (std::vector<std::uint32_t>{20, 20, 20, 20, 20}));
    EXPECT_EQ(view.getText(), L"X0: 2.2500 nm\tX1: 6.7500 nm\tX1-X0: 4.5000 nm %: 60.0");
    EXPECT_EQ(view.displayRect.Size(), (CSize{256, 128}));
    drag(view, 0.25, 0.9);
    EXPECT_NEAR(view.getDelimiters().f1, 0.9, 0.003);
    EXPECT_THAT(base::narrow(view.getText()), HasSubstr("X1-X0: -1.3")) << "crossed: from 8.1 back to 6.75";
    EXPECT_THAT(base::narrow(view.getText()), HasSubstr("%: 40.0")) << "bars 3 and 4";
    drag(view, 0.2, 0.1); // beside both: they go together
    EXPECT_NEAR(view.getDelimiters().f1, 0.8, 0.006);
    EXPECT_NEAR(view.getDelimiters().f2, 0.65, 0.006);
    drag(view, 0.2, 3.0);
    EXPECT_EQ(view.getDelimiters().f1, 1.0) << "as far as the chart goes";
    EXPECT_NEAR(view.getDelimiters().f2, 0.85, 0.006) << "in the same distance";
    view.setOption("NBars", "Manual");
    view.setOption("NBars.manual.count", "2");
    EXPECT_EQ(view.getHistogram().bins, (std::vector<std::uint32_t>{50, 50})) << "halves up";
    view.OnMouseMove(0, {view.displayRect.left, view.displayRect.top});
    EXPECT_EQ(host.statusText, L"X: 0 nm  N: 50");
}

TEST_F(HistogramViewTest, CutsOffBeyondTheDelimitersAndComesBack)
{
    for (const double step : {1.0, -1.0}) {
        CHistogramView& view = open(VLAxis(0, step, "nm"));
        view.OnCmdMsg(commands::cutoff, nullptr);
        for (int i = 0; i < 10; ++i) EXPECT_EQ(sample(i), std::clamp(i, 2, 7)) << step;
        EXPECT_EQ(view.getHistogram().valueMax - view.getHistogram().valueMin, 5.0) << "told at once";
        EXPECT_TRUE(document->isChanged());
        view.OnCmdMsg(commands::undo, nullptr);
        EXPECT_EQ(sample(0), 0);
        EXPECT_EQ(sample(9), 9);
    }
}

TEST_F(HistogramViewTest, CountsWhatWasMeasured)
{
    CHistogramView& view = open();
    document->setString("\\Void samples", "of 100: 10-99", 0);
    document->UpdateAllViews(nullptr, document::data_hint(0));
    EXPECT_EQ(view.getHistogram().totalCount, 10u);
    auto* const heights = static_cast<short*>(document->getImage(0).array_data());
    std::fill_n(heights, 10, short{4});
    document->UpdateAllViews(nullptr, document::data_hint(0));
    EXPECT_EQ(view.getHistogram().bins.size(), 2u) << "round(sqrt(10) / 2)";
    EXPECT_EQ(view.getHistogram().bins[0], 10u) << "one height";
    EXPECT_FALSE(view.getText().empty());
}

TEST_F(HistogramViewTest, DrawsBarsAndDelimitersAndZooms)
{
    CHistogramView& view = open();
    const std::size_t before = lines(view).size();
    view.setOption("ShowCumulative", "true");
    EXPECT_EQ(lines(view).size(), before + 1);
    view.setOption("CountScale", "Logarithmic");
    const CRect pane = view.displayRect;
    for (int i = 0; i < 3; ++i) view.OnMouseWheel(MK_CONTROL, 120, {pane.left, pane.top + 5});
    view.OnMouseMove(0, {pane.right - 1, pane.top + 5});
    EXPECT_THAT(base::narrow(host.statusText), HasSubstr("X: 4.608 nm")) << "9 / 1.25^3";
    view.OnLButtonDblClk(MK_LBUTTON, {pane.left + 9, pane.bottom + 4});
    view.OnMouseMove(0, {pane.right - 1, pane.top + 5});
    EXPECT_THAT(base::narrow(host.statusText), HasSubstr("X: 9 nm"));
}

} // namespace
