// The windows on the features of an image: how they are distributed, and the table of them.
#include "spectra/views/FeaturesHistogramView.h"

#include "document/StorageDocTemplate.h"
#include "document/update_hints.h"
#include "platform/app/RuntimeClass.h"
#include "platform/app/keys.h"
#include "resources/commands.h"
#include "resources/frame_templates.h"
#include "spectra/figures/features/feature_overlay.h"
#include "spectra/views/FeaturesTableView.h"
#include "spectra/views/ItemsHistogramView.h"
#include "spectra/views/ItemsTableView.h"
#include "support/HeadlessHost.h"
#include "support/streams.h"
#include "view/ChildFrame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cwchar>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr int width = 20, height = 12;
/// Rises of 1000 on a plane of 0: three rectangles of 4, 6 and 12 samples, one of 4 on the border, and a single sample.
const CRect blocks[] = {{2, 2, 4, 4}, {8, 2, 11, 4}, {13, 6, 17, 9}, {0, 5, 2, 7}, {4, 9, 5, 10}};

class FeaturesViewTest : public testing::Test {
protected:
    FeaturesViewTest()
    {
        static constexpr CRuntimeClass classes[] = {
            {"CStorageDoc", nullptr, create_object<CStorageDoc>},
            {"CChildFrame", nullptr, create_object<CChildFrame>},
            {"CFeaturesHistogramView", nullptr, create_object<CFeaturesHistogramView>},
            {"CFeaturesTableView", nullptr, create_object<CFeaturesTableView>},
            {"CItemsHistogramView", nullptr, create_object<CItemsHistogramView>},
            {"CItemsTableView", nullptr, create_object<CItemsTableView>},
        };
        for (const CRuntimeClass& each : classes) register_runtime_class(each);
        app.AddDocTemplate(&histograms);
        app.AddDocTemplate(&tables);
        app.AddDocTemplate(&items);
        app.AddDocTemplate(&itemTables);
        document = dynamic_cast<CStorageDoc*>(histograms.CreateNewDocument());
        const SPMDataStream image = test_support::made_stream(
            "Height", {{width, VLAxis(0, 2, "nm")}, {height, VLAxis(0, 2, "nm")}}, VLAxis(0, 0.5, "nm"),
            [](unsigned i) { return heightAt({static_cast<int>(i) % width, static_cast<int>(i) / width}); });
        document->AddNewImages(&image, 1);
        CFrameWnd* const frame = histograms.CreateNewFrame(document, nullptr);
        histograms.InitialUpdateFrame(frame, document, true);
        host.pump();
        view = dynamic_cast<CFeaturesHistogramView*>(frame->GetActiveView());
        view->OnCmdMsg(commands::featuresTable, nullptr);
        table = shown<CFeaturesTableView>();
        view->setOption("threshold.mode", "Manual");
        view->setOption("threshold.manual.level", "0.5");
        view->OnTimer(2);
    }
    ~FeaturesViewTest() override
    {
        while (!app.frames().empty()) app.frames().back()->DestroyFrame();
        app.freeClosed();
    }
    template <class View>
    View* shown() const
    {
        for (CView* const each : document->views())
            if (auto* const found = dynamic_cast<View*>(each)) return found;
        return nullptr;
    }
    static int heightAt(CPoint at)
    {
        return std::ranges::any_of(blocks, [at](const CRect& each) { return each.PtInRect(at); }) ? 1000 : 0;
    }
    int sample(int x, int y) { return document->getDataPoint1S(0, y * width + x, 0); }
    void tell(document::feature_hint code, CPoint at)
    {
        document->UpdateAllViews(nullptr, document::hint{code, 0}.packed(), at);
    }
    void stroke(CPoint from, CPoint to, bool includes)
    {
        using namespace document;
        tell(includes ? hintIncludePress : hintExcludePress, from);
        tell(includes ? hintIncludeDrag : hintExcludeDrag, to);
        tell(includes ? hintIncludeRelease : hintExcludeRelease, to);
    }
    /// The column of the table, as numbers.
    std::vector<double> column(std::size_t number) const
    {
        std::vector<double> values;
        for (std::size_t row = 0; row < table->gridRows(); ++row)
            values.push_back(std::wcstod(table->gridCell(row, number).c_str(), nullptr));
        return values;
    }
    std::vector<double> areas() const { return column(2); }

    CHeadlessHost host;
    CWinApp app{host};
    CMultiDocTemplate histograms{featuresFrame, "CStorageDoc", "CChildFrame", "CFeaturesHistogramView"};
    CMultiDocTemplate tables{featuresTableFrame, "CStorageDoc", "CChildFrame", "CFeaturesTableView"};
    CMultiDocTemplate items{itemsFrame, "CStorageDoc", "CChildFrame", "CItemsHistogramView"};
    CMultiDocTemplate itemTables{itemsTableFrame, "CStorageDoc", "CChildFrame", "CItemsTableView"};
    CStorageDoc* document = nullptr;
    CFeaturesHistogramView* view = nullptr;
    CFeaturesTableView* table = nullptr;
};

TEST_F(FeaturesViewTest, ListsWhatRisesAboveTheLevel)
{
    ASSERT_TRUE(table);
    // 4 nm^2 a sample; the bars of both delimiters, 1 and 2 of 4, hold the area of 24 alone.
    EXPECT_THAT(areas(), ElementsAre(16, 16, 24, 48));
    EXPECT_EQ(table->gridHeadings()[2], L"S_px, nm^2 \u25B2");
    EXPECT_EQ(view->countsText(), "Features: 4   filtered: 1   on the border: 1   single samples, dropped: 1");
    EXPECT_TRUE(table->isGridRowGrey(2));
    EXPECT_FALSE(table->isGridRowGrey(3));
    const auto footer = table->gridFooter();
    ASSERT_EQ(footer.size(), 6u); // count, mean, deviation, sum, lowest, highest
    EXPECT_EQ(footer[0][3], L"4");
    EXPECT_EQ(footer[1][3], L"26");
    EXPECT_NEAR(std::wcstod(footer[2][3].c_str(), nullptr), std::sqrt((2 * 100.0 + 4.0 + 484.0) / 4), 1e-3);
    EXPECT_EQ(footer[3][3], L"104");

    view->setOption("keep_inner", "false");
    EXPECT_THAT(view->countsText(), HasSubstr("filtered: 3 "));
    view->setOption("exclude_border", "true");
    EXPECT_THAT(areas(), ElementsAre(16, 24, 48));
    EXPECT_THAT(view->countsText(), HasSubstr("on the border, left out: 1"));
    table->OnTableHeading(2); // the same again turns the order
    EXPECT_THAT(areas(), ElementsAre(48, 24, 16));
    table->OnTableHeading(1); // around the samples on the border: 2, 3 and 4 samples in a row of steps of 2 nm
    EXPECT_THAT(column(1), ElementsAre(20, 12, 8));
}

TEST_F(FeaturesViewTest, FlattensAndFillsTheImageAndGoesBack)
{
    view->OnCmdMsg(commands::filteredFeatures, nullptr);
    EXPECT_EQ(sample(9, 3), 0);
    EXPECT_EQ(sample(3, 3), 1000);
    EXPECT_THAT(areas(), ElementsAre(16, 16, 48));
    view->OnCmdMsg(commands::undo, nullptr);
    EXPECT_EQ(sample(9, 3), 1000);
    EXPECT_THAT(areas(), ElementsAre(16, 16, 24, 48));
    view->OnCmdMsg(commands::selectedFeatures, nullptr);
    EXPECT_THAT(areas(), ElementsAre(24));
    EXPECT_EQ(sample(4, 9), 1000) << "no feature, a single sample";
    view->OnCmdMsg(commands::undo, nullptr);
    view->OnCmdMsg(commands::excludeFiltered, nullptr);
    EXPECT_THAT(areas(), ElementsAre(16, 16, 48));
    EXPECT_EQ(sample(9, 3), 1000);
    view->OnCmdMsg(commands::undo, nullptr);
    EXPECT_THAT(areas(), ElementsAre(16, 16, 24, 48));
    view->setOption("keep_inner", "true");
    view->OnCmdMsg(commands::profileHeight, nullptr);
    ASSERT_EQ(host.outputLines.size(), 1u);
    EXPECT_EQ(host.outputLines[0], "<H>, nm: 500");
}

TEST_F(FeaturesViewTest, IsPaintedOnTheSurface)
{
    EXPECT_EQ(document->get_decorations_list(nullptr, 0, 0), 2u) << "what passes, and what does not";
    stroke({9, 10}, {11, 10}, true);
    EXPECT_THAT(areas(), ElementsAre(12, 16, 16, 24, 48));
    stroke({15, 5}, {15, 10}, false); // parts the largest into columns of 2 and 1
    EXPECT_THAT(areas(), ElementsAre(12, 12, 16, 16, 24, 24));
    EXPECT_FALSE(document->canUndo(0)) << "the image has not changed";
    view->OnCmdMsg(commands::undo, nullptr);
    EXPECT_THAT(areas(), ElementsAre(12, 16, 16, 24, 48));
    view->OnCmdMsg(commands::undo, nullptr);
    EXPECT_THAT(areas(), ElementsAre(16, 16, 24, 48));
    view->OnCmdMsg(commands::redo, nullptr);
    EXPECT_THAT(areas(), ElementsAre(12, 16, 16, 24, 48));

    // What is taken out of the list stays out of the mask.
    tell(document::hintMarkRemoved, {9, 3});
    EXPECT_THAT(areas(), ElementsAre(12, 16, 16, 48));
    stroke({19, 11}, {19, 10}, true);
    EXPECT_THAT(areas(), ElementsAre(8, 12, 16, 16, 48));
    view->OnCmdMsg(commands::undo, nullptr);
    view->OnCmdMsg(commands::undo, nullptr);
    EXPECT_THAT(areas(), ElementsAre(12, 16, 16, 24, 48));
    // Another image has another mask.
    document->UpdateAllViews(nullptr, document::data_hint(0));
    EXPECT_THAT(areas(), ElementsAre(16, 16, 24, 48));
    document->pushUndo(0, true);
    view->OnCmdMsg(commands::undo, nullptr);
    EXPECT_FALSE(document->canUndo(0));
}

TEST_F(FeaturesViewTest, GivesItsRowsToWindowsOfItems)
{
    view->OnCmdMsg(commands::tableItems, nullptr);
    auto* const histogram = shown<CItemsHistogramView>();
    auto* const rows = shown<CItemsTableView>();
    ASSERT_TRUE(histogram && rows);
    view->setOption("exclude_border", "true"); // they stay as they were
    EXPECT_EQ(rows->gridRows(), 4u);
    rows->OnTableHeading(2);
    EXPECT_EQ(rows->gridHeadings()[2], L"S_px, nm^2 \u25B2");
    EXPECT_EQ(rows->gridCell(3, 2), L"48");
    EXPECT_EQ(rows->gridFooter()[3][3], L"104");
    EXPECT_EQ(histogram->column(), 2u);
    EXPECT_EQ(histogram->getHistogram().valueMax, 48.0);
    EXPECT_THAT(histogram->getHistogram().bins, ElementsAre(2, 1, 0, 1)) << "16, 16, 24 and 48 in four bars";
    rows->OnTableHeading(2);
    EXPECT_EQ(rows->gridCell(0, 2), L"48");
}

TEST_F(FeaturesViewTest, SearchesOncePerPauseOfTheUser)
{
    for (const char* const level : {"0.6", "0.9", "1"}) view->setOption("threshold.manual.level", level);
    EXPECT_THAT(areas(), ElementsAre(16, 16, 24, 48));
    view->OnTimer(2); // others came while it ran
    EXPECT_THAT(areas(), ElementsAre(16, 16, 24, 48));
    view->OnTimer(2);
    EXPECT_TRUE(areas().empty()) << "nothing is above the highest";
    EXPECT_THAT(view->countsText(), HasSubstr("Features: 0 "));
}

} // namespace
