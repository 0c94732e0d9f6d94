// The window on a curve over measured positions.
#include "base/text.h"
#include "curves/views/ParametricCurveView.h"
#include "curves/views/SectionView.h"
#include "document/StorageDocTemplate.h"
#include "document/update_hints.h"
#include "platform/app/RuntimeClass.h"
#include "platform/app/keys.h"
#include "platform/dialogs/PictureChooser.h"
#include "resources/commands.h"
#include "support/HeadlessHost.h"
#include "support/RecordingDC.h"
#include "support/streams.h"
#include "support/temporary_folder.h"
#include "view/ChildFrame.h"
#include "view/image/picture_export.h"
#include "view/panes/TextView.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace {

using namespace vldv::curves;
using test_support::made_stream;
using testing::HasSubstr;

class ParametricViewTest : public testing::Test {
protected:
    ParametricViewTest()
    {
        static constexpr CRuntimeClass classes[] = {
            {"CStorageDoc", nullptr, create_object<CStorageDoc>},
            {"CChildFrame", nullptr, create_object<CChildFrame>},
            {"CSectionView", nullptr, create_object<CSectionView>},
            {"CParametricCurveView", nullptr, create_object<CParametricCurveView>},
            {"CTextView", nullptr, create_object<CTextView>},
        };
        for (const CRuntimeClass& each : classes) register_runtime_class(each);
        app.AddDocTemplate(&sections);
        app.AddDocTemplate(&pairs);
        app.AddDocTemplate(&texts);
    }
    ~ParametricViewTest() override
    {
        while (!app.frames().empty()) app.frames().back()->DestroyFrame();
        app.freeClosed();
    }
    /// 101 positions that fall from 200 nm by 2, and a force that rises by 5 nN a sample, and the same once more ten
    /// times as high.
    CParametricCurveView& open()
    {
        SPMDataStream images[] = {
            made_stream(
                "Force", {{101}}, VLAxis(0, 0.5, "nN"), [](unsigned i) { return i < 101 ? 10 * i : 100 * (i - 101); },
                2),
            made_stream("Sep", {{101}}, VLAxis(200, -2, "nm"), [](unsigned i) { return i; }),
        };
        images[0].set_parameter_stream("Sep");
        CStorageDoc saved;
        saved.AddNewImages(images, 2);
        const std::wstring path = (folder / "a.spm").wstring();
        EXPECT_TRUE(saved.OnSaveDocument(path.c_str()));
        document = dynamic_cast<CStorageDoc*>(app.OpenDocumentFile(path.c_str()));
        host.pump();
        return *dynamic_cast<CParametricCurveView*>(app.frames().back()->GetActiveView());
    }
    static void drag(CParametricCurveView& view, CPoint from, CPoint to)
    {
        view.OnMouseMove(0, from);
        view.OnLButtonDown(MK_LBUTTON, from);
        view.OnMouseMove(MK_LBUTTON, to);
        view.OnLButtonUp(0, to);
    }
    static CPoint placeOf(const CParametricCurveView& view, int mark)
    {
        const CRect& pane = view.displayRect;
        return {pane.left + static_cast<int>(std::lround((pane.Width() - 1) * view.getMarks()[mark].x)),
                pane.bottom - 1 - static_cast<int>(std::lround((pane.Height() - 1) * view.getMarks()[mark].y))};
    }

    temporary_folder folder;
    CHeadlessHost host;
    CWinApp app{host};
    CStorageDocTemplate sections{101, "CStorageDoc", "CChildFrame", "CSectionView"};
    CMultiDocTemplate pairs{119, "CStorageDoc", "CChildFrame", "CParametricCurveView"};
    CMultiDocTemplate texts{115, "CDocument", "CChildFrame", "CTextView"};
    CStorageDoc* document = nullptr;
};

TEST_F(ParametricViewTest, OpensOnceForBothImagesAndMeasuresBetweenItsMarks)
{
    CParametricCurveView& view = open();
    EXPECT_EQ(app.frames().size(), 1u) << "positions have no window of their own";
    ASSERT_TRUE(view.IsGood());
    EXPECT_EQ(view.getParamImageNumber(), 1u);
    EXPECT_EQ(view.getText(), L"dX: 0 nm\tdY: 0 nN");
    EXPECT_NEAR(view.FindMarkY(0), 250.0, 5.0) << "half way";
    view.OnMouseMove(0, {view.displayRect.left, view.displayRect.bottom - 1});
    EXPECT_EQ(host.statusText, L"X: 0 nm  Y: 500 nN") << "of the last pair";
    const CPoint middle = placeOf(view, 0);
    const auto sample = view.getMarks()[0].sample;
    for (int i = 0; i < 3; ++i) view.OnMouseWheel(MK_CONTROL, 120, {view.displayRect.left, middle.y});
    EXPECT_EQ(view.getMarks()[0].sample, sample) << "marks stay on their pairs";
    EXPECT_NEAR(view.getMarks()[0].x, 0.5 * 1.25 * 1.25 * 1.25, 0.01) << "of a part that begins where all begins";
    const CPoint axis{view.displayRect.left + 300, view.displayRect.bottom + 6};
    drag(view, axis, {view.displayRect.left - 2000, axis.y});
    view.OnMouseMove(0, {view.displayRect.right - 1, view.displayRect.top});
    EXPECT_THAT(base::narrow(host.statusText), HasSubstr("X: 200 nm  Y: ")) << "dragged to the other end";
    view.OnLButtonDblClk(0, axis);
    EXPECT_EQ(placeOf(view, 0), middle);
    int mark = 9;
    EXPECT_FALSE(view.FindMarkXY({middle.x, middle.y - 6}, 4, &mark));
    EXPECT_EQ(mark, -1);
    drag(view, middle, {view.displayRect.left - 30, 0});
    drag(view, middle, {view.displayRect.right + 30, 0});
    // From 0 nm, at the end of the record, to 200 nm at its begin.
    EXPECT_EQ(view.getText(), L"dX: 200 nm\tdY: -500 nN");
    EXPECT_EQ(view.FindMarkY(0), 500.0);
    VLPluginDataSelection told[2];
    ASSERT_EQ(view.GetDataSelection(told, 2), 2);
    EXPECT_EQ(told[1].kind, SELECTION_RANGE);
    EXPECT_EQ(told[1].data[0], 101);
    EXPECT_EQ(told[1].data[1], 201);
    view.setActiveSubimage(1);
    EXPECT_EQ(view.getText(), L"dX: 200 nm\tdY: -5 µN");
    view.setOption("marks_mode", "Crossbar");
    view.OnKeyDown(VK_RIGHT);
    EXPECT_EQ(view.getMarks()[pair_mark_set::bar].sample, 49u) << "to the right, where positions fall";
    view.setOption("ShowMarks", "false");
    EXPECT_EQ(view.getText(), L"");
    EXPECT_FALSE(view.FindMarkXY(placeOf(view, 2), 4, nullptr));
}

TEST_F(ParametricViewTest, DrawsFallingPositionsFromLeftToRight)
{
    CParametricCurveView& view = open();
    view.setOption("show_only", "Active line");
    RecordingDC dc(view.GetClientRect().Size());
    view.OnPrepareDC(dc, false);
    view.OnDrawData(dc);
    EXPECT_EQ(dc.all(drawn::kind::pixels).size(), 1u) << "the kept picture";
    const CRect& pane = view.displayRect;
    const auto dots = dc.all(drawn::kind::lines);
    ASSERT_EQ(dots.size(), 4u) << "two marks, a line and a dot each";
    EXPECT_EQ(dots[1].points[0], placeOf(view, 0));
    EXPECT_EQ(view.getActiveCurve().size(), 101u);
    EXPECT_EQ(placeOf(view, 0).x, pane.left + (pane.Width() - 1) / 2 + 1) << "100 nm of 0 to 200";
}

TEST_F(ParametricViewTest, FollowsPositionsThatAreReplacedAndUndone)
{
    CParametricCurveView& view = open();
    const SPMDataStream before = document->getImage(1);
    SPMDataStream other = before;
    other.values.set_axis(0, VLAxis(0, 3, "nm"));
    ASSERT_TRUE(view.setXDataStream(other));
    EXPECT_EQ(document->getImagesNumber(), 2u) << "of one name and title";
    EXPECT_EQ(std::string(document->getString("global.curve.xscale", unsigned(-1))), "3");
    drag(view, placeOf(view, 0), {view.displayRect.left - 30, 0});
    drag(view, placeOf(view, 1), {view.displayRect.right + 30, 0});
    EXPECT_EQ(view.getText(), L"dX: 300 nm\tdY: 500 nN");
    view.OnCmdMsg(commands::undo, nullptr);
    EXPECT_EQ(document->getImage(1).values, before.values) << "with one step of the window that chose";
    EXPECT_EQ(std::string(document->getString("global.curve.xscale", unsigned(-1))), "-2");
    EXPECT_EQ(view.getText(), L"dX: 200 nm\tdY: -500 nN") << "the window knows";
    SPMDataStream third = before; // of the name of X and another title
    third.set_description("Third");
    third.set_parameter_stream("elsewhere");
    ASSERT_TRUE(view.setXDataStream(third));
    EXPECT_EQ(document->getImagesNumber(), 3u);
    EXPECT_EQ(view.getParamImageNumber(), 2u);
    EXPECT_STREQ(document->getImage(0).get_parameter_stream(), "Sep (2)") << "found again in a file, too";
    EXPECT_STREQ(document->getImage(2).get_name(), "Sep (2)");
    EXPECT_EQ(document->getImage(2).get_parameter_stream(), nullptr) << "that image is not here";
    view.OnCmdMsg(commands::undo, nullptr);
    EXPECT_STREQ(document->getImage(0).get_parameter_stream(), "Sep");
    EXPECT_EQ(view.getParamImageNumber(), 1u);
    document->getImage(0).set_parameter_stream("gone");
    view.LoadData();
    EXPECT_FALSE(view.IsGood());
    RecordingDC dc;
    view.OnDraw(dc);
    EXPECT_EQ(view.GetDataSelection(nullptr, 0), 0);
}

TEST_F(ParametricViewTest, XIsChosenByItsPicture)
{
    open();
    SPMDataStream other = made_stream("Time", {{101}}, VLAxis(0, 1, "s"), [](unsigned i) { return i * i / 2; });
    other.set_description("Time");
    auto* const copy = dynamic_cast<CStorageDoc*>(sections.CreateNewDocument());
    copy->AddNewImages(&other, 1);
    sections.setOpeningImage(0);
    sections.InitialUpdateFrame(sections.CreateNewFrame(copy, nullptr), copy, true);
    SPMDataStream force = document->getImage(0);
    force.set_parameter_stream("");
    document->getImage(0) = force;
    CFrameWnd* const frame = sections.CreateNewFrame(document, nullptr);
    sections.InitialUpdateFrame(frame, document, true);
    host.pump();
    auto& section = *dynamic_cast<CSectionView*>(frame->GetActiveView());
    host.onPictures = [](CPictureChooser& chooser) {
        EXPECT_EQ(chooser.title, "Select curve for X series");
        EXPECT_EQ(chooser.entries.size(), 1u) << "neither the curve itself nor another window on it";
        EXPECT_EQ(chooser.entries[0].size, (CSize{128, 40})) << "512 x 160";
        EXPECT_EQ(chooser.entries[0].pixels.size(), 128u * 40u);
        chooser.chosen = {0};
        return true;
    };
    section.OnCmdMsg(commands::selectX, nullptr);
    host.pump();
    auto* const made = dynamic_cast<CParametricCurveView*>(app.frames().back()->GetActiveView());
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(document->getImagesNumber(), 3u) << "of another document: a copy";
    EXPECT_STREQ(document->getImage(0).get_parameter_stream(), "Time");
    EXPECT_EQ(made->getActiveCurve().x[100], 5000.0);
    made->OnCmdMsg(commands::duplicate, nullptr);
    host.pump();
    const auto* const duplicate = dynamic_cast<CParametricCurveView*>(app.frames().back()->GetActiveView());
    ASSERT_NE(duplicate, nullptr) << "positions go with it";
    EXPECT_NE(duplicate->storageDoc(), document);
    EXPECT_TRUE(duplicate->IsGood());
}

TEST_F(ParametricViewTest, WritesTablesAndShowsFigures)
{
    CParametricCurveView& view = open();
    view.OnCmdMsg(commands::copyData, nullptr);
    const std::string copied = base::narrow(host.clips.content.value_or(L""));
    EXPECT_THAT(copied, testing::StartsWith("Subimage1,X data,Sep\tSubimage1,Y data,Force\tSubimage2,X data,Sep\t"
                                            "Subimage2,Y data,Force\r\n200\t0\t200\t0\r\n198\t5\t198\t50\r\n"));
    view.Export(CountExportFormats(view.GetExportFilters().c_str()), (folder / "a.txt").wstring().c_str());
    std::ifstream file(folder / "a.txt", std::ios::binary);
    EXPECT_EQ(std::string((std::istreambuf_iterator<char>(file)), {}), copied);
    auto* const force = static_cast<short*>(document->getImage(0).array_data());
    for (int i = 0; i < 101; ++i) force[i] = static_cast<short>(i < 40 ? 800 - 20 * i : i * 7919 % 5 - 2);
    document->UpdateAllViews(nullptr, document::data_hint(0));
    view.setOption("ShowParametricCurveStats", "true");
    // 20 steps of 0.5 nN down while the position falls by 2 nm; the noise tilts the other line.
    const std::string told = base::narrow(view.getText());
    ASSERT_THAT(told, HasSubstr("\r\ndF/dZ: "));
    EXPECT_NEAR(std::stod(told.substr(told.find("dF/dZ: ") + 7)), 5.0, 0.05);
    EXPECT_THAT(told, HasSubstr(" nN/nm\tFmin: "));
    EXPECT_TRUE(view.getStatistics().hasZero());
    view.setOption("ShowParametricCurveStats", "false");
    EXPECT_EQ(base::narrow(view.getText()).find("dF"), std::string::npos);
}

TEST_F(ParametricViewTest, TheMenuAnalysesCurvesOverTheirPositions)
{
    CParametricCurveView& view = open();
    auto* const force = static_cast<short*>(document->getImage(0).array_data());
    for (int i = 0; i < 202; ++i) force[i] = static_cast<short>(i % 101 < 40 ? 800 - 20 * (i % 101) : i * 7919 % 5 - 2);
    force[80] = -60; // 30 nN below the zero line
    for (int i = 0; i < 5; ++i) force[101 + i] = -30000;
    document->setString("\\Void samples", "of 202: 101-105", 0);
    document->UpdateAllViews(nullptr, document::data_hint(0));
    view.OnCmdMsg(commands::forceAnalysis, nullptr);
    view.OnCmdMsg(commands::forceAnalysisOfAll, nullptr);
    std::istringstream table(base::narrow(GetTextView(nullptr, document)->getText()));
    std::vector<std::string> lines;
    for (std::string line; std::getline(table, line);) lines.push_back(line);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_THAT(lines[0], testing::StartsWith("Curve\tdF/dZ\tAng., deg\tLMS eq. A\t+B*X\tRMS, nN\tFmin, nN"));
    EXPECT_EQ(lines[1], lines[2]);
    double slope = 0, angle = 0, a = 0, b = 0, rms = 0, least = 0;
    ASSERT_EQ(std::sscanf(lines[1].c_str(), "1\t%lf\t%lf\t%lf\t%lf\t%lf\t%lf", &slope, &angle, &a, &b, &rms, &least),
              6);
    EXPECT_NEAR(slope, 5.0, 0.05) << "10 nN while the position falls by 2 nm";
    EXPECT_NEAR(angle, 78.7, 0.2) << "its arc tangent";
    EXPECT_NEAR(least, -30.0, 1.5);
    ASSERT_EQ(std::sscanf(lines[3].c_str(), "2\t%lf\t%lf\t%lf\t%lf\t%lf\t%lf", &slope, &angle, &a, &b, &rms, &least),
              6);
    EXPECT_NEAR(slope, 5.0, 0.05) << "of what was measured";
    EXPECT_GT(least, -3.0);
    view.setActiveSubimage(1);
    view.setOption("ShowParametricCurveStats", "true");
    EXPECT_GE(view.getStatistics().slant_first, 5) << "numbered in the whole curve";
    EXPECT_NEAR(view.getStatistics().slant_last, 39, 2);
}

TEST_F(ParametricViewTest, TypedMarksGoToTheNearestPairAndTheCurveHasAnAxisOfItsOwn)
{
    CParametricCurveView& view = open();
    host.onDialog = [](CVarListDlg& dialog) {
        EXPECT_EQ(dialog.rowText(1), "100");
        EXPECT_TRUE(dialog.edit(0, "50.7"));
        EXPECT_TRUE(dialog.edit(1, "1000"));
        dialog.EndDialog(CVarListDlg::resultOk);
    };
    view.OnCmdMsg(commands::typeMarks, nullptr);
    EXPECT_EQ(view.getText(), L"dX: 150 nm\tdY: -375 nN") << "50 nm is sample 75, the far end sample 0";
    view.OnCmdMsg(commands::ownAxis, nullptr);
    host.pump();
    auto* const section = dynamic_cast<CSectionView*>(app.frames().back()->GetActiveView());
    ASSERT_NE(section, nullptr);
    EXPECT_EQ(section->getSection().curve(0)[100], 1000);
}

} // namespace
