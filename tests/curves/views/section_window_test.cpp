// What the window on curves shows of them, what stands under the pointer, and what dialogs it opens.
#include "base/text.h"
#include "curves/views/section_view_fixture.h"
#include "platform/files/paths.h"
#include "resources/commands.h"
#include "view/frame/option_rows.h"
#include "view/image/VolumeSource.h"

#include <cmath>
#include <gmock/gmock.h>

namespace {

using namespace vldv::curves;
using testing::HasSubstr;

class SectionWindowTest : public SectionViewTest {
protected:
    void answer(std::vector<std::pair<const char*, const char*>> edits)
    {
        host.onDialog = [edits](CVarListDlg& dialog) {
            for (const auto& [name, text] : edits) {
                bool isThere = false;
                for (unsigned i = 0; i < dialog.rowCount() && !isThere; ++i)
                    if (std::string(dialog.row(i).get_name()) == name) isThere = dialog.edit(i, text);
                EXPECT_TRUE(isThere) << name;
            }
            dialog.EndDialog(CVarListDlg::resultOk);
        };
    }
};

TEST_F(SectionWindowTest, TheWheelZoomsAroundThePointerAndADragOnTheAxisPans)
{
    CSectionView& view = open(ramps());
    const CRect pane = view.displayRect;
    const auto markAt = [&](double x) { // the fraction of the curve that a press there marks
        const CPoint at{pane.left + static_cast<int>(x), pane.top + 20};
        drag(view, at, at);
        return view.getMarks()[secondMark].x;
    };
    const double before = markAt(128);
    EXPECT_NEAR(before, 0.25, 0.001);
    for (int i = 0; i < 3; ++i) view.OnMouseWheel(MK_CONTROL, 120, {pane.left + 128, pane.top + 5});
    EXPECT_NEAR(markAt(128), before, 0.001) << "what is under the pointer stays";
    const double width = 1.0 / (1.25 * 1.25 * 1.25);
    EXPECT_NEAR(markAt(384) - markAt(128), 0.5 * width, 0.001);
    EXPECT_NEAR(markAt(384), 0.25 + 0.5 * width, 0.001);
    const CPoint axis{pane.left + 200, pane.bottom + 8};
    drag(view, axis, {axis.x - 64, axis.y});
    EXPECT_NEAR(markAt(128), 0.25 + 0.125 * width, 0.001) << "an eighth of what is shown";
    drag(view, axis, {axis.x - 5000, axis.y});
    EXPECT_NEAR(markAt(511.9), 1.0, 0.003) << "up to the end";
    view.OnLButtonDblClk(0, axis);
    EXPECT_NEAR(markAt(128), 0.25, 0.001) << "all again";
    EXPECT_EQ(view.displayRect.Size(), pane.Size());
    drag(view, axis, {axis.x - 64, axis.y});
    EXPECT_NEAR(markAt(128), 0.25, 0.001) << "the whole curve has nowhere to go";
}

TEST_F(SectionWindowTest, ThePointerTellsPositionAndValue)
{
    CSectionView& view = open(ramps());
    const auto told = [&](CPoint at) {
        view.OnMouseMove(0, at);
        return base::narrow(host.statusText);
    };
    const CRect pane = view.displayRect;
    EXPECT_EQ(told({pane.right - 1, pane.top + 3}), "X: 200 nm  Y: 150 nN");
    EXPECT_EQ(told({pane.left, pane.top + 3}), "X: 0 nm  Y: 0 nN");
    view.setActiveSubimage(1);
    EXPECT_EQ(told({pane.left, pane.top + 3}), "X: 0 nm  Y: 150 nN") << "of the active curve";
    EXPECT_EQ(told({pane.left + 5, pane.bottom + 30}), "");
}

TEST_F(SectionWindowTest, MarksAreTyped)
{
    CSectionView& view = open(ramps());
    const CPoint text{view.displayRect.left + 30, view.displayRect.bottom + 25};
    answer({{"mark.first", "20"}, {"mark.second", "999"}});
    view.OnLButtonDblClk(0, text);
    EXPECT_EQ(base::narrow(view.getText()), "dX: 180 nm\tdY: 135 nN\r\n") << "the second one beyond the end";
    view.setOption("marks_mode", "Crossbar");
    answer({{"mark.x", "50"}, {"mark.y", "30"}});
    view.OnLButtonDblClk(0, text);
    EXPECT_EQ(base::narrow(view.getText()), "X: 50 nm\tY: 30 nN\r\n");
    const section_mark_set before = view.getMarks();
    host.onDialog = [](CVarListDlg& dialog) { dialog.EndDialog(CVarListDlg::resultCancel); };
    view.OnLButtonDblClk(0, text);
    EXPECT_EQ(view.getMarks()[positionMark].x, before[positionMark].x);
    EXPECT_EQ(view.displayRect.Height(), 160);
}

TEST_F(SectionWindowTest, ResolutionFollowsADistanceBetweenTheMarks)
{
    CSectionView& view = open(ramps());
    answer({{"mark.first", "20"}, {"mark.second", "100"}}); // samples 10 and 50: 120 steps apart in height
    view.OnLButtonDblClk(0, {view.displayRect.left + 30, view.displayRect.bottom + 25});
    answer({{"distance", "20"}, {"height", "240"}});
    view.OnCmdMsg(commands::resolution, nullptr);
    EXPECT_EQ(document->getAxis(0, 0, 0), VLAxis(0, 0.5, "nm"));
    EXPECT_EQ(document->getAxis(0, 0, unsigned(-1)), VLAxis(0, 2, "nN"));
    EXPECT_EQ(base::narrow(view.getText()), "dX: 20 nm\tdY: 240 nN\r\n");
    document->undo(0);
    EXPECT_EQ(base::narrow(view.getText()), "dX: 80 nm\tdY: 60 nN\r\n");
}

TEST_F(SectionWindowTest, ItsSizeIsWhatTheUserMadeIt)
{
    CSectionView& view = open(ramps());
    view.setOption("ShowSpectrum", "true");
    host.pump();
    const CSize before = view.GetClientRect().Size();
    for (int i = 0; i < 2; ++i) {
        view.SwitchFullScreen();
        host.pump();
    }
    EXPECT_EQ(view.GetClientRect().Size(), before) << "of both panes, behind full screen";
    EXPECT_EQ(view.displayRect.Size(), (CSize{512, 160}));
    view.setOption("HorizontalAxis", "Fixed Scale");
    host.pump();
    EXPECT_EQ(view.displayRect.Width(), 101);
    view.setOption("HorizontalAxis", "Fixed Width");
    host.pump();
    EXPECT_EQ(view.displayRect.Size(), (CSize{512, 160}));
    EXPECT_EQ(host.readInt("SectionView", "DefaultWidth"), 512);
}

TEST_F(SectionWindowTest, AddedTextsBeginRowsOfTheirOwn)
{
    CSectionView& view = open(ramps());
    view.setOption("ShowSpectrum", "true");
    view.OnCmdMsg(commands::copyText, nullptr);
    const std::wstring one = host.clips.content.value_or(L"");
    view.OnCmdMsg(commands::addText, nullptr);
    EXPECT_EQ(host.clips.content, one + L"\r\n" + one);
}

TEST_F(SectionWindowTest, ExportsInTheFormatThatIsChosenWithItsParameters)
{
    CSectionView& view = open(ramps());
    host.savePaths = {(folder / "a.txt").wstring()};
    view.OnCmdMsg(commands::exportView, nullptr);
    ASSERT_EQ(host.savePrompts.size(), 1u);
    EXPECT_EQ(host.savePrompts[0].filters->first, 3u) << "the last of four at first";
    EXPECT_EQ(platform::file_name(host.savePrompts[0].suggestedPath), document->GetTitle() + L".txt");
    EXPECT_THAT(file_content(folder / "a.txt"), HasSubstr("\n"));
    host.savePaths = {(folder / "b.jpeg").wstring()};
    host.onSave = [](const save_prompt& prompt) {
        EXPECT_EQ(prompt.filters->nameFor(L"b.txt", 1), L"b.jpeg");
        EXPECT_EQ(prompt.filters->nameFor(L"b 1.5", 2), L"b 1.5.tif") << "no extension of a format";
        prompt.filters->variables[1][1]->from_string("80");
        prompt.filters->taken(1);
    };
    view.OnCmdMsg(commands::exportView, nullptr);
    EXPECT_TRUE(file_content(folder / "b.jpeg").starts_with("\xFF\xD8"));
    EXPECT_EQ(host.readInt("SectionView", "ExportIndex"), 2);
    EXPECT_EQ(host.readString("SectionView", "jpgQality"), "80");
    EXPECT_EQ(host.readString("MRU", "Save"), folder.path.string());
    host.savePaths = {(folder / "c.jpk-force").wstring()};
    view.OnCmdMsg(commands::exportView, nullptr);
    EXPECT_FALSE(std::filesystem::exists(folder / "c.jpk-force"));
    EXPECT_EQ(host.messages.size(), 1u);
}

TEST_F(SectionWindowTest, AShorterCurveHasItsOwnFrequenciesAndEnd)
{
    // A wave of 10 nm in 200 samples, and in 100.
    const auto wave = [](unsigned i) {
        return static_cast<int>(std::lround(1000.0 * std::sin(2.0 * M_PI * i / 10.0)));
    };
    CSectionView& view = open(test_support::made_stream("w", {{200, VLAxis(0, 1, "nm")}}, VLAxis(0, 1, "nN"), wave, 2));
    document->setString("\\Curve lengths", "200 100", 0);
    view.setOption("ShowSpectrum", "true");
    view.LoadData();
    const CRect pane = view.displayRect;
    const int top = pane.bottom + view.intOption("BottomMargin") + 5;
    for (const unsigned sub : {0u, 1u}) {
        view.setActiveSubimage(sub);
        const double bin = sub == 0 ? 20.0 : 10.0, most = sub == 0 ? 100.0 : 50.0;
        view.OnMouseMove(0, {pane.left + static_cast<int>(std::lround(bin / most * (pane.Width() - 1))), top});
        EXPECT_THAT(base::narrow(host.statusText), HasSubstr("X: 10")) << sub;
        EXPECT_THAT(base::narrow(host.statusText), HasSubstr(" nm")) << sub;
    }
    drag(view, {pane.left + 10, pane.top + 5}, {pane.right - 1, pane.top + 5});
    EXPECT_THAT(base::narrow(view.getText()), testing::StartsWith("dX: 95")) << "from sample 4 to 99, where it ends";
}

TEST_F(SectionWindowTest, WhatLooksAtNeighboursLeavesCurvesWithGapsOut)
{
    CSectionView& view = open(ramps());
    const unsigned length = view.getSection().length, curves = view.getSection().curves;
    ASSERT_GE(curves, 2u);
    const std::string total = std::to_string(length * curves);
    document->setString("\\Void samples", ("of " + total + ": 3-5").c_str(), 0);
    document->setString("\\Void points", "3", 0);
    view.setOption("ShowSpectrum", "true");
    view.LoadData();
    EXPECT_EQ(view.getSpectrumText(), L"No spectrum: not measured throughout");
    view.OnCmdMsg(commands::differentiate, nullptr);
    host.pump();
    auto* const made = dynamic_cast<CSectionView*>(app.frames().back()->GetActiveView());
    ASSERT_TRUE(made && made != &view);
    const CStorageDoc& result = *made->storageDoc();
    EXPECT_EQ(std::string(result.getString("\\Void samples", 0)), "of " + total + ": 0-" + std::to_string(length - 1));
    EXPECT_STREQ(result.getString("\\Void points", 0), std::to_string(length).c_str()) << "all of that curve";
    const std::size_t frames = app.frames().size();
    document->setString("\\Void samples", ("of " + total + ": 0-" + std::to_string(length * curves - 1)).c_str(), 0);
    view.LoadData();
    view.OnCmdMsg(commands::autocorrelationFinite, nullptr);
    EXPECT_EQ(app.frames().size(), frames);
    EXPECT_EQ(host.messages.size(), 1u);
}

TEST_F(SectionWindowTest, AllCurvesGiveARowEachUntilTheUserCancels)
{
    SPMDataStream many = test_support::made_stream(
        "force", {{64, VLAxis(0, 1, "nm")}}, VLAxis(0, 0.1, "nN"),
        [](unsigned i) { return i % 64 < 20 ? 400 - 20 * static_cast<int>(i % 64) : static_cast<int>(i % 2); }, 5);
    CSectionView& view = open(many);
    view.OnCmdMsg(commands::forceAnalysisOfAll, nullptr);
    const auto rows = [this] {
        const std::wstring text = GetTextView(nullptr, document)->getText();
        return std::ranges::count(text, L'\n') + 1;
    };
    EXPECT_EQ(rows(), 6) << "a heading and five curves";
    EXPECT_THAT(base::narrow(GetTextView(nullptr, document)->getText()), HasSubstr("\r\n5\t"));
    host.progressTold.clear();
    host.cancelAfter = 3;
    view.OnCmdMsg(commands::forceAnalysisOfAll, nullptr);
    EXPECT_EQ(rows(), 8) << "two more";
    EXPECT_EQ(host.waiting, 0);
}

/// A volume as far as its curves know it.
class volume_view : public CImageView, public IVolumeSource {
public:
    volume_view() { LoadOptions(nullptr); }
    void GetOptionsList(SPMVar* vars, unsigned* count) override
    {
        static constexpr view::option_row rows[] = {{"mark.x,double,0,1", "0"}, {"mark.y,double,0,1", "0"}};
        unsigned before = 0;
        CImageView::GetOptionsList(nullptr, &before);
        if (vars) CImageView::GetOptionsList(vars, count);
        view::list_options(rows, before, vars, count);
    }
    const SPMDataStream& getVolume() const override { return samples; }
    unsigned getVolumeImage() const override { return 0; }

    SPMDataStream samples;
};

TEST_F(SectionWindowTest, ArrowsWalkFromCurveToCurveOfAVolume)
{
    // Samples tell their place: 100 x + 10 y + depth.
    const auto value = [](unsigned i) { return static_cast<int>(i % 8 + 100 * (i / 8 % 5) + 10 * (i / 40)); };
    CSectionView& view = open(ramps());
    const SPMDataStream image = test_support::made_stream("volume", {{8}, {5}, {3}}, VLAxis(0, 1, "nN"), value);
    document->AddNewImages(&image, 1);
    volume_view volume;
    document->AddView(&volume);
    view.SetParentView(&volume);
    view.setImageNumber(1);
    view.CDCView::LoadOptions(nullptr);
    view.SetPoint(0, 0, 2, 1);
    view.SetPoint(1, 7, 2, 1);
    view.reloadSection();
    EXPECT_EQ(view.getSection().curve(0)[7], 217);
    view.OnKeyDown(VK_RIGHT);
    EXPECT_EQ(view.getSection().curve(0)[7], 317);
    EXPECT_DOUBLE_EQ(volume.doubleOption("mark.x"), 0.75) << "3 of 4 steps";
    for (int i = 0; i < 3; ++i) view.OnKeyDown(VK_UP);
    EXPECT_EQ(view.getSection().curve(0)[0], 320) << "up to the last row";
    EXPECT_DOUBLE_EQ(volume.doubleOption("mark.y"), 1.0);
    view.SetParentView(nullptr);
    document->RemoveView(&volume);
}

TEST_F(SectionWindowTest, PartsOfAForceCurveAreNamed)
{
    SPMDataStream parts = ramps();
    const char* names[] = {"Approach", "Retract"};
    parts.set_subimage_names(names, 2);
    CSectionView& view = open(parts);
    const auto named = [&view] {
        RecordingDC dc(view.GetClientRect().Size());
        view.OnDraw(dc);
        std::string found;
        for (const drawn& each : dc.all(drawn::kind::text))
            if (each.text == "Approach" || each.text == "Retract") found += each.text + ' ';
        return found;
    };
    EXPECT_EQ(named(), "Approach Retract ");
    view.setOption("show_only", "Active line");
    view.setActiveSubimage(1);
    EXPECT_EQ(named(), "Retract ");
}

} // namespace
