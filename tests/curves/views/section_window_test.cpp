// What the window on curves shows of them, what stands under the pointer, and what dialogs it opens.
#include "base/text.h"
#include "curves/views/section_view_fixture.h"
#include "resources/commands.h"
#include "view/frame/option_rows.h"
#include "view/image/VolumeSource.h"

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
