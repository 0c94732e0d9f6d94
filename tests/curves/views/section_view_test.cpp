// The window on curves: what mouse, keys, options and commands do, and what is drawn.
#include "base/text.h"
#include "curves/views/section_view_fixture.h"
#include "document/update_hints.h"
#include "resources/commands.h"
#include "view/image/picture_export.h"

#include <fstream>
#include <gmock/gmock.h>

namespace {

using namespace vldv::curves;
using testing::HasSubstr;

TEST_F(SectionViewTest, MarksTellWhatLiesBetweenThem)
{
    CSectionView& view = open(ramps());
    EXPECT_EQ(view.getSection().curves, 2u);
    EXPECT_EQ(view.displayRect.Size(), (CSize{512, 160}));
    // Thirds of 100 steps of 2 nm; 33.3 * 3 and 66.7 * 3 raw steps of 0.5 nN, rounded
    EXPECT_EQ(view.getText(), L"dX: 66.6667 nm\tdY: 50 nN\r\n");
    drag(view, over(view, 20), over(view, 70));
    EXPECT_NEAR(view.getMarks()[firstMark].x, 0.2, 0.002);
    drag(view, over(view, 45), over(view, 45));
    EXPECT_EQ(view.getText(), L"dX: 0 nm\tdY: 0 nN\r\n");
    drag(view, over(view, 20), over(view, 70));
    EXPECT_NEAR(view.getMarks()[secondMark].x, 0.7, 0.002);
    drag(view, over(view, 70), {view.displayRect.right + 50, 20}); // beyond the end
    EXPECT_EQ(view.getMarks()[secondMark].x, 1.0);
    drag(view, over(view, 20), {view.displayRect.left - 50, 20});
    EXPECT_EQ(view.getText(), L"dX: 200 nm\tdY: 150 nN\r\n");
    view.setOption("VerticalValue", "Angle");
    EXPECT_EQ(view.getText(), L"dX: 200 nm\tAngle: 0 deg\r\n") << "forces over lengths have none";
    view.setActiveSubimage(1);
    view.setOption("VerticalValue", "Height");
    EXPECT_EQ(view.getText(), L"dX: 200 nm\tdY: -150 nN\r\n") << "of the active curve";
    view.setOption("Values", "Absolute");
    EXPECT_EQ(view.GetClipboardText(true), L"dX: 200 nm\tdY: 150 nN\r\n");
    view.OnLButtonDblClk(0, over(view, 50));
    EXPECT_EQ(view.displayRect.Size(), (CSize{512, 320}));
    EXPECT_EQ(host.readInt("SectionView", "DefaultHeight"), 320);
}

TEST_F(SectionViewTest, TheCrossbarGoesFromSampleToSample)
{
    CSectionView& view = open(ramps());
    view.setOption("marks_mode", "Crossbar");
    for (int i = 0; i < 3; ++i) view.OnKeyDown(VK_RIGHT);
    EXPECT_DOUBLE_EQ(view.getMarks()[positionMark].x, 0.53);
    EXPECT_THAT(base::narrow(view.getText()), HasSubstr("X: 106 nm\tY: 75 nN"));
    view.OnKeyDown(VK_UP);
    EXPECT_NEAR(view.getMarks()[levelMark].y, (256 + 1) / 511.0, 1e-12) << "a part of the width";
    const double level = view.getMarks()[levelMark].y;
    view.RefreshDisplay();
    EXPECT_EQ(view.getMarks()[levelMark].y, level);
    EXPECT_NEAR(view.getMarks()[positionMark].y, 0.53, 0.002) << "on the curve";
    drag(view, {view.displayRect.left + 5, view.displayRect.bottom - 1 - static_cast<int>(level * 159)},
         {view.displayRect.left + 5, view.displayRect.bottom - 1});
    EXPECT_THAT(base::narrow(view.getText()), HasSubstr("Y: 0 nN"));
}

TEST_F(SectionViewTest, AFixedScaleHoldsInUnitsOfItsOwn)
{
    CSectionView& view = open(ramps());
    const auto rowOfEnd = [&view] { return view.getMarks()[secondMark].y; };
    view.setActiveSubimage(0);
    drag(view, over(view, 50), {view.displayRect.right + 50, 20});
    EXPECT_DOUBLE_EQ(rowOfEnd(), 1.0);
    view.setOption("ZScale.Scaling", "Fixed");
    EXPECT_EQ(double(view.options["ZScale.Scaling.fixed.value"]), 150.0) << "that of the curves at first";
    EXPECT_EQ(std::string(view.options["ZScale.Scaling.fixed.units"].as_string().c_str()), "nN");
    view.setOption("ZScale.Scaling.fixed.units", "µN");
    view.setOption("ZScale.Scaling.fixed.value", "0.3");
    EXPECT_DOUBLE_EQ(rowOfEnd(), 0.5);
    view.setOption("ZScale.Scaling.fixed.units", "V");
    EXPECT_DOUBLE_EQ(rowOfEnd(), 1.0) << "volts say nothing of forces";
    view.OnCommandMessage("match_scale", nullptr);
    EXPECT_EQ(std::string(view.options["ZScale.Scaling.fixed.units"].as_string().c_str()), "nN");
}

TEST_F(SectionViewTest, CurvesAreDrawnInOrderAndTheActiveOneLast)
{
    CSectionView& view = open(ramps());
    view.CountDisplayRect();
    const auto colors = [&] {
        RecordingDC dc(view.GetClientRect().Size());
        view.drawCurvesOn(dc);
        std::vector<colorEntry> out;
        for (const drawn& each : dc.all(drawn::kind::lines)) out.push_back(each.tools.pen.color);
        return out;
    };
    EXPECT_EQ(colors(), (std::vector<colorEntry>{0x0000ff, 0x008000}));
    view.setActiveSubimage(1);
    EXPECT_EQ(colors(), (std::vector<colorEntry>{0x008000, 0x0000ff}));
    view.setOption("show_only", "Active line");
    EXPECT_EQ(colors(), (std::vector<colorEntry>{0x0000ff}));
}

TEST_F(SectionViewTest, TheSpectrumStandsBelowInAPaneOfItsOwn)
{
    CSectionView& view = open(ramps());
    const int alone = view.GetClientRect().Height();
    view.setOption("ShowSpectrum", "true");
    EXPECT_EQ(view.GetClientRect().Height(), alone + 160 + 45);
    EXPECT_EQ(view.displayRect.Height(), 160);
    EXPECT_THAT(base::narrow(view.getSpectrumText()), HasSubstr("X: 8.08 nm\tS: ")) << "202 nm in 25 periods";
    EXPECT_THAT(base::narrow(view.GetClipboardText(true)), HasSubstr("\tX: 8.08 nm"));
    const CPoint mark{view.displayRect.left + 256, view.displayRect.bottom + 45 + 50};
    drag(view, mark, {view.displayRect.left - 9, mark.y});
    EXPECT_THAT(base::narrow(view.getSpectrumText()), HasSubstr("(DC)"));
    view.setOption("ShowSpectrum", "false");
    EXPECT_EQ(view.GetClientRect().Height(), alone);
}

TEST_F(SectionViewTest, CalculationsTablesAndFiles)
{
    CSectionView& view = open(ramps());
    view.OnCmdMsg(commands::copyData, nullptr);
    EXPECT_THAT(base::narrow(host.clips.content.value_or(L"")), HasSubstr("X,nm\tY,nN"));
    view.Export(CountExportFormats(view.GetExportFilters().c_str()), (folder / "a.txt").wstring().c_str());
    std::ifstream file(folder / "a.txt");
    const std::string written((std::istreambuf_iterator<char>(file)), {});
    EXPECT_THAT(written, HasSubstr("Dependency\nSubimage 1\nX,nm\tY,nN\n0\t0\n2\t1.5\n"));
    view.Export(CountExportFormats(view.GetExportFilters().c_str()), L"/nowhere/a.txt");
    EXPECT_EQ(host.messages.back(), "Can't open file /nowhere/a.txt to export data.");
    view.OnCmdMsg(commands::differentiate, nullptr);
    host.pump();
    ASSERT_EQ(app.frames().size(), 2u);
    const profile& made = shown().getSection();
    EXPECT_EQ(made.curves, 2u);
    const VLAxis& values = made.values.get_axis(0);
    EXPECT_NEAR(values.at(made.curve(0)[50]), 3.0, 1e-3) << "six steps of 0.5 nN from the one before to the next";
    EXPECT_NEAR(values.at(made.curve(1)[0]), -3.0, 1e-3);
}

TEST_F(SectionViewTest, AForceCurveShowsItsLinesAndGivesItsRow)
{
    // Contact: 40 samples that fall by 20; then a dip of 60 below a level stretch of noise of a step.
    CSectionView& view =
        open(test_support::made_stream("force", {{256, VLAxis(0, 1, "nm")}}, VLAxis(0, 0.1, "nN"), [](unsigned i) {
            const int noise = static_cast<int>(i * 7919 % 5) - 2;
            return i < 40 ? 800 - 20 * static_cast<int>(i) : i < 60 ? -60 + noise : noise;
        }));
    view.setOption("ShowForceCurveStats", "true");
    EXPECT_THAT(base::narrow(view.getText()), HasSubstr("dF/dZ: -2"));
    EXPECT_THAT(base::narrow(view.getText()), HasSubstr("Fmin: -6."));
    const std::size_t linesBefore = paintedLines(view).size();
    view.setOption("ShowForceCurveStats", "false");
    EXPECT_EQ(linesBefore, paintedLines(view).size() + 2) << "contact and free stretch";
    view.setOption("ShowTrendLine", "true");
    EXPECT_THAT(base::narrow(view.getText()), HasSubstr("R^2: "));
    for (int i = 0; i < 2; ++i) view.OnCmdMsg(commands::forceAnalysis, nullptr);
    bool isNew = true;
    const std::string table = base::narrow(GetTextView(&isNew, document)->getText());
    EXPECT_FALSE(isNew);
    EXPECT_EQ(table.find("Curve\tdF/dZ\tAng., deg"), 0u);
    EXPECT_EQ(table.find("Curve", 1), std::string::npos) << "one heading";
    EXPECT_EQ(std::ranges::count(table, '\n'), 2);
}

TEST_F(SectionViewTest, SectionsWalkThroughTheirSurface)
{
    CSectionView& view = open(ramps());
    const SPMDataStream image = surface();
    document->AddNewImages(&image, 1);
    view.setImageNumber(1);
    view.CDCView::LoadOptions(nullptr);
    view.SetPoint(0, 0, 5);
    view.SetPoint(1, 39, 5);
    view.reloadSection();
    EXPECT_THAT(base::narrow(view.getText()), HasSubstr("\tLine: 5"));
    EXPECT_EQ(view.getSection().curve(0)[39], 395);
    view.OnKeyDown(VK_UP);
    EXPECT_EQ(view.getSectionPoint(0), (CPoint{0, 6}));
    EXPECT_EQ(view.getSection().curve(0)[39], 396);
    view.OnKeyDown(VK_RIGHT);
    EXPECT_EQ(view.getSectionPoint(0), (CPoint{0, 6})) << "along the line there is nothing to walk";
    view.SetPoint(2, 39, 19); // a joint
    view.reloadSection();
    EXPECT_EQ(view.getSection().length, 40u + 13u);
    EXPECT_EQ(base::narrow(view.getText()).find("Line"), std::string::npos);
    std::int32_t at[3] = {-1, -1, -1};
    view.GetPoint(2, at, 3);
    EXPECT_EQ(at[1], 19);
    EXPECT_EQ(at[2], -1);
    EXPECT_EQ(view.GetDataSelection(nullptr, 0), 1) << "both marks lie before the joint, at samples 17 and 35 of 39";
    drag(view, over(view, 66.6), {view.displayRect.right + 50, 20});
    EXPECT_EQ(view.GetDataSelection(nullptr, 0), 3) << "from mark to mark over the joint";
}

} // namespace
