#include "surface/surface_fixture.h"

#include "base/text.h"
#include "document/update_hints.h"
#include "support/RecordingDC.h"
#include "view/dialogs/resolution.h"

#include <cstring>
#include <set>

namespace {

std::vector<std::string> texts_of(const RecordingDC& dc)
{
    std::vector<std::string> out;
    for (const drawn& each : dc.all(drawn::kind::text)) out.push_back(each.text);
    return out;
}

std::vector<std::string> legend_of(CSurfMathView& view)
{
    RecordingDC dc(view.GetClientRect().Size());
    view.OnDrawLegend(dc);
    return texts_of(dc);
}

/// The colour of the first pixel of the lowest row, which holds raw 0 of a slope.
std::uint32_t lowest_of(CSurfMathView& view)
{
    view.flushTimers();
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, view.image.bits().data(), sizeof pixel);
    return pixel & 0xffffffu;
}

bool holds(const std::vector<std::string>& all, const std::string& text)
{
    return std::ranges::find(all, text) != all.end();
}

TEST_F(SurfaceTest, ThePictureKeepsItsShapeAndSizeWhenLegendsComeAndGo)
{
    CSurfMathView& view = open();
    EXPECT_EQ(view.displayRect, CRect(50, 10, 50 + 512, 10 + 256));
    const CSize frame = app.frames()[0]->GetWindowRect().Size();
    view.OnCmdMsg(10082, nullptr);
    host.pump();
    EXPECT_EQ(view.displayRect, CRect(0, 0, 512, 256));
    EXPECT_TRUE(isChecked(view, 10082));
    view.OnCmdMsg(10082, nullptr);
    host.pump();
    EXPECT_EQ(app.frames()[0]->GetWindowRect().Size(), frame);
    // In a frame of another shape the picture stands in the middle of its room.
    app.frames()[0]->MoveWindow(CRect(0, 0, 512 + 140 + 8, 256 + 100 + 75 + 28));
    host.pump();
    EXPECT_EQ(view.displayRect, CRect(50, 10 + 50, 50 + 512, 10 + 50 + 256));
}

TEST_F(SurfaceTest, RendersTheWindowOnShowUpright)
{
    CSurfMathView& view = open();
    const auto lightness = [&](int x, int y) { // from the lower left corner of the picture
        const std::byte* const pixel =
            view.GetBits().data() + static_cast<std::size_t>(y) * view.image.stride() + static_cast<std::size_t>(x) * 4;
        return int(pixel[0]) + int(pixel[1]) + int(pixel[2]);
    };
    EXPECT_LT(lightness(2, 100), lightness(500, 100));
    EXPECT_LE(lightness(500, 2), lightness(500, 250)) << "row 0 is the lowest";
    const int whole = lightness(255, 100);
    // Two notches towards the user with Ctrl show more, away less: 40 / 1.2 = 33 columns, 16 rows.
    view.OnMouseWheel(MK_CONTROL, 120, {50, 10 + 255});
    EXPECT_EQ(view.sourceRect, CRect(0, 0, 33, 16)) << "around the lower left corner";
    view.OnMouseWheel(MK_CONTROL, -120, {50, 10 + 255});
    EXPECT_EQ(view.sourceRect, CRect(0, 0, 39, 19));
    view.OnMouseWheel(MK_CONTROL | MK_SHIFT, 120, {50, 100});
    EXPECT_EQ(view.sourceRect, CRect(0, 0, 39, 19)) << "both keys are another thing";
    for (int i = 0; i < 20; ++i) view.OnMouseWheel(MK_CONTROL, -120, {50, 10});
    EXPECT_EQ(view.sourceRect, CRect(0, 0, 40, 20));
    view.flushTimers();
    EXPECT_EQ(lightness(255, 100), whole);
    for (int i = 0; i < 40; ++i) view.OnMouseWheel(MK_CONTROL, 120, {50, 10});
    EXPECT_EQ(view.sourceRect.Size(), (CSize{1, 1}));
    for (int i = 0; i < 40; ++i) view.OnMouseWheel(MK_CONTROL, -120, {50, 10});
    EXPECT_EQ(view.sourceRect, CRect(0, 0, 40, 20)) << "there is a way back";
}

TEST_F(SurfaceTest, PreferencesOfferOnlyWhatHasAnEffect)
{
    CSurfMathView& view = open();
    std::set<std::string> offered;
    host.onDialog = [&](CVarListDlg& dialog) {
        for (unsigned i = 0; i < dialog.rowCount(); ++i) offered.insert(dialog.row(i).get_name());
        dialog.EndDialog(CVarListDlg::resultCancel);
    };
    view.OnCmdMsg(10118, nullptr);
    EXPECT_TRUE(offered.contains("CompactLegend.z_scale.size") && offered.contains("highlight"));
    for (const char* idle :
         {"CompactLegend.z_scale", "CompactLegend.z_scale.direction", "highlight.x", "highlight.y"}) {
        EXPECT_FALSE(offered.contains(idle)) << idle;
        EXPECT_STRNE(view.options[idle].get_description(), "") << idle << " is kept in files of options";
    }
}

TEST_F(SurfaceTest, TheRangeIsThatOfTheSamplesWhateverTheWindow)
{
    // Ground of 0 on the left and 100 on the right, where one sample in 600 x 300 stands at 400.
    SPMDataStream spike = slope(600, 300);
    auto* const samples = static_cast<short*>(spike.array_data());
    for (int i = 0; i < 600 * 300; ++i) samples[i] = i % 600 < 300 ? 0 : 100;
    samples[600 * 200 + 450] = 400;
    CSurfMathView& view = open(spike);
    view.getScale().SetPaletteId(1); // gray
    view.getScale().SetAutoScaling(view::autoScale);
    const auto ground = [&view] { // of the lower right corner
        view.RefreshDisplay();
        view.flushTimers();
        return int(view.GetBits()[static_cast<std::size_t>(view.image.width() - 3) * 4]);
    };
    constexpr int quarter = 64; // 100 of 400 is byte 63.75
    for (const int width : {300, 512, 600, 900, 1300}) {
        view.OnSize({width + 140, width / 2 + 75});
        EXPECT_EQ(ground(), quarter) << width;
    }
    view.getScale().SetAutoScaling(view::fixedScale);
    view.getScale().setFixedUnits("nm");
    view.getScale().setRelativeMeanOffset(0.0);
    constexpr double nearlyTooLarge = 250 * 400 * 0.5; // 256 times the range is; four samples' mean has half of it
    view.getScale().setFixedSize(nearlyTooLarge);
    view.setOption("scaling.z", "Relative");
    view.OnSize({300 + 140, 150 + 75});
    EXPECT_EQ(ground(), 0);
    EXPECT_EQ(view.getScale().getFixedSize(), nearlyTooLarge) << "it suits the samples";
    view.getScale().SetAutoScaling(view::autoScale);
    view.showPart({400, 0, 600, 150}); // the spike is out of sight
    EXPECT_EQ(ground(), 0);
    view.showPart({200, 100, 600, 300});
    EXPECT_EQ(ground(), quarter);
    view.setRegionOfInterest({440, 190, 460, 210});
    EXPECT_EQ(ground(), 0) << "from 100 to 400";
}

TEST_F(SurfaceTest, AxesCountFromTheEdgeOrFromTheirStart)
{
    CSurfMathView& view = open();
    EXPECT_TRUE(holds(legend_of(view), "24")) << "relative: X runs from 0 to 40 in steps of 8";
    EXPECT_FALSE(holds(legend_of(view), "112"));
    view.setOption("scaling.x", "Absolute");
    EXPECT_TRUE(holds(legend_of(view), "112"));
}

TEST_F(SurfaceTest, TheCompactLegendStandsOnThePicture)
{
    CSurfMathView& view = open();
    view.setOption("CompactLegend", "true");
    host.pump();
    host.profile().writeString("SurfMathView", "ParametersList", "operator+|\\Date-|");
    document->setString("operator", "Ada", unsigned(-1));
    document->setString("\\Date", "Monday", 0);
    view.setOption("ShowParameters", "true");
    RecordingDC dc(view.GetClientRect().Size());
    view.OnDrawLegend(dc);
    const std::vector<std::string> texts = texts_of(dc);
    ASSERT_GE(texts.size(), 7u);
    EXPECT_EQ(texts[0], "X: \t Y: ") << "without numbers";
    EXPECT_EQ(texts[1], "Image data: Height");
    EXPECT_EQ(texts[4], "\\Date: Monday") << "the last one is the lowest";
    EXPECT_EQ(texts[5], "operator: Ada");
    EXPECT_EQ(texts[6], "30 nm") << "the bar: three quarters of 40 nm";
    EXPECT_EQ(dc.all(drawn::kind::text)[0].box.bottom, view.GetClientRect().bottom);
}

TEST_F(SurfaceTest, TheBarIsTheSameOnAnAxisThatRunsBackwards)
{
    CSurfMathView& view = open();
    view.setOption("CompactLegend", "true");
    host.pump();
    for (const char* const direction : {"Vertical", "Horizontal"}) {
        view.setOption("CompactLegend.scale_mark.direction", direction);
        const auto drawnBar = [&view] {
            RecordingDC dc(view.GetClientRect().Size());
            view.OnDrawLegend(dc);
            std::vector<std::vector<CPoint>> lines;
            for (const drawn& each : dc.all(drawn::kind::lines)) lines.push_back(each.points);
            const std::vector<std::string> texts = texts_of(dc);
            return std::pair(std::ranges::count(texts, "30 nm"), lines);
        };
        const auto forwards = drawnBar();
        EXPECT_EQ(forwards.first, 1) << "three quarters of 40 nm";
        EXPECT_FALSE(forwards.second.empty());
        for (unsigned side = 0; side < 2; ++side) document->setAxis(0, 0, VLAxis(100, -1.0 - side, "nm"), side);
        EXPECT_EQ(drawnBar(), forwards);
        for (unsigned side = 0; side < 2; ++side) document->setAxis(0, 0, VLAxis(100, 1.0 + side, "nm"), side);
    }
}

TEST_F(SurfaceTest, HeightsOverAnAxisThatFallsLookTheSame)
{
    const auto shown = [this](const SPMDataStream& stream) {
        CSurfMathView& view = open(stream);
        view.setOption("ShowStatistics", "true");
        view.setRegionOfInterest({3, 4, 30, 15});
        view.flushTimers();
        std::vector<std::string> all = legend_of(view);
        double low = 0.0, high = 0.0;
        view.getBestScale(&low, &high, nullptr);
        EXPECT_LT(low, high);
        all.push_back(std::to_string(low) + ' ' + std::to_string(high));
        all.push_back(base::narrow(view.GetMouseText({7, 8})));
        const std::span<std::byte> bits = view.GetBits();
        all.emplace_back(reinterpret_cast<const char*>(bits.data()), bits.size());
        closeFrames();
        return all;
    };
    SPMDataStream falling = slope();
    auto* const samples = static_cast<short*>(falling.array_data());
    for (int i = 0; i < 40 * 20; ++i) samples[i] = static_cast<short>(-1 - samples[i]);
    falling.values.set_axis(0, VLAxis(2.5, -0.5, "nm")); // 2.5 - 0.5 (-1 - raw) = 3 + 0.5 raw
    EXPECT_EQ(shown(falling), shown(slope()));
}

TEST_F(SurfaceTest, AnotherMeaningOfHeightsIsSeenInColoursAndFigures)
{
    SPMDataStream voltages = slope();
    voltages.values.set_axis(1, VLAxis(0.01, -0.002, "V")); // 0.01 to -0.808 V
    CSurfMathView& view = open(voltages);
    view.setOption("ShowStatistics", "true");
    const std::uint32_t dark = lowest_of(view);
    view.setOption("AxisZ", "V");
    view.OnCmdMsg(10021, nullptr); // the text is asked for before the panel is due
    EXPECT_NE(host.clips.text().value_or(L"").find(L"Zmax, mV"), std::wstring::npos);
    EXPECT_NE(lowest_of(view), dark) << "the highest voltage";
    view.setOption("AxisZ", "nm");
    EXPECT_EQ(lowest_of(view), dark);
    view.getScale().SetAutoScaling(view::fixedScale);
    view.getScale().setFixedStart(-100.0);
    view.getScale().setFixedSize(200.0);
    view.getScale().setRelativeMeanOffset(0.0);
    view.setOption("scaling.z", "Absolute");
    view.RefreshDisplay();
    EXPECT_NE(lowest_of(view), dark) << "3 nm in a window from -100 nm";
    view.setOption("scaling.z", "Relative");
    EXPECT_EQ(lowest_of(view), dark) << "the window starts at the lowest height";
}

TEST_F(SurfaceTest, MarksComeByHintsAndLeaveWithTheImage)
{
    CSurfMathView& view = open();
    document->UpdateAllViews(nullptr, 11, CPoint{3, 4});
    document->UpdateAllViews(nullptr, 11, CPoint{30, 4});
    EXPECT_EQ(view.getDrawn().marks.size(), 2u);
    EXPECT_EQ(view.getDrawn().measure.text, L"Total: 2");
    document->UpdateAllViews(nullptr, 11 | 1u << 16, CPoint{5, 5});
    EXPECT_EQ(view.getDrawn().marks.size(), 2u) << "of another image";
    const SPMDataStream small = slope(20, 20);
    document->getImage(0) = small;
    document->revalidateImage(0);
    document->UpdateAllViews(nullptr, document::shape_hint(0));
    EXPECT_EQ(view.getDrawn().marks, std::vector<CPoint>{CPoint(3, 4)}) << "the other lies outside now";
    EXPECT_EQ(view.sourceRect, CRect(0, 0, 20, 20));
    document->UpdateAllViews(nullptr, 12, std::string("L=3 nm"));
    EXPECT_EQ(view.getDrawn().measure.text, L"L=3 nm");
    document->UpdateAllViews(nullptr, 10);
    EXPECT_TRUE(view.getDrawn().marks.empty());
}

TEST_F(SurfaceTest, SettingsOfTheViewAreKeptAndTheContextMenuFollowsThem)
{
    CSurfMathView& view = open();
    EXPECT_TRUE(isChecked(view, 10014));
    view.OnCmdMsg(10014, nullptr);
    view.OnCmdMsg(6102, nullptr);
    EXPECT_EQ(host.readInt("SurfMathView", "AutoRefresh"), 0);
    EXPECT_EQ(host.readInt("SurfMathView", "MarksStyle"), 1);
    EXPECT_TRUE(isChecked(view, 6102));
    const CSurfMathView next;
    view.OnContextMenu({});
    EXPECT_EQ(host.dialogs, 1) << "no menu is wanted: the preferences";
    view.setOption("context_menu.file_operations", "true");
    view.OnContextMenu({});
    EXPECT_EQ(host.popups.size(), 1u);
}

TEST_F(SurfaceTest, StatisticsComeLateAndStandInThePanel)
{
    CSurfMathView& view = open();
    view.setOption("ShowStatistics", "true");
    view.flushTimers();
    const std::vector<std::string> texts = legend_of(view);
    EXPECT_TRUE(holds(texts, "Statistics:"));
    EXPECT_TRUE(holds(texts, "Rmax: 204.5 nm")) << "0.5 nm * (10 * 39 + 19)";
    EXPECT_TRUE(holds(texts, "Rq: 0.0 nm")) << "a plane";
    view.setOption("ParametersWidth", "79"); // 74 pixels are left, "Rmax: 204.5 nm" has 84
    EXPECT_TRUE(holds(legend_of(view), "Rmax: 205 nm"));
    view.setOption("CompactLegend", "true");
    host.pump();
    RecordingDC compact(view.GetClientRect().Size());
    view.OnDrawLegend(compact);
    int above = 0;
    for (const char* name : {"Statistics:", "Zmax", "Zmin", "Rmax", "Rq", "Ra", "Rsk", "Rku"})
        for (const drawn& each : compact.all(drawn::kind::text)) {
            if (!each.text.starts_with(name)) continue;
            EXPECT_GT(each.box.top, above) << name;
            above = each.box.top;
        }
    EXPECT_GT(above, 0);
    const std::wstring copied = view.GetClipboardText(true);
    EXPECT_NE(copied.find(L"Rmax, nm"), std::wstring::npos);
    EXPECT_NE(copied.find(L"204.5"), std::wstring::npos);
}

TEST_F(SurfaceTest, StatisticsLeaveOutWhatWasNotMeasured)
{
    SPMDataStream stream = slope(); // a plane
    auto* const samples = static_cast<short*>(stream.array_data());
    for (const int spoilt : {100, 101, 417}) samples[spoilt] = 0;
    CSurfMathView& view = open(stream);
    view.storageDoc()->setString("\\Void points", "3", 0);
    view.storageDoc()->setString("\\Void samples", "of 800: 100-101 417-417", 0);
    view.setOption("ShowStatistics", "true");
    view.flushTimers();
    const std::vector<std::string> texts = legend_of(view);
    EXPECT_TRUE(holds(texts, "Rq: 0.0 nm")) << "nothing beside the plane";
    EXPECT_TRUE(holds(texts, "Not measured: 3"));
    EXPECT_NE(view.GetClipboardText(true).find(L"Not measured"), std::wstring::npos);
}

TEST_F(SurfaceTest, LegendsFollowTheFileUnderAnotherName)
{
    CSurfMathView& view = open();
    HeadlessWindow& window = CHeadlessHost::windowOf(view);
    window.invalid = CRgn();
    ASSERT_TRUE(document->DoSave((folder / "other.spm").wstring().c_str(), true));
    EXPECT_TRUE(window.invalid.RectInRegion(view.GetClientRect()));
}

TEST_F(SurfaceTest, ARegionOutOfSightLeavesTheColoursOfWhatIsShown)
{
    CSurfMathView& view = open();
    view.storageDoc()->setString("\\Void points", "1", 0);
    view.storageDoc()->setString("\\Void samples", "of 800: 799-799", 0); // the point of the last row and column
    view.storageDoc()->UpdateAllViews(nullptr, document::data_hint(0));
    view.showPart({0, 0, 40, 10});
    view.flushTimers();
    const std::vector<std::byte> before(view.GetBits().begin(), view.GetBits().end());
    view.setRegionOfInterest({0, 15, 10, 20});
    view.flushTimers();
    EXPECT_TRUE(std::ranges::equal(view.GetBits(), before));
}

TEST_F(SurfaceTest, ThePanelFollowsEveryMeasurement)
{
    CSurfMathView& view = open();
    view.setOption("ShowStatistics", "true");
    view.setOption("text.compact_length", "5");
    host.pump();
    view.flushTimers();
    HeadlessWindow& window = CHeadlessHost::windowOf(view);
    const auto panel = [&] { // what is written from the rows of the measurement on; the panel was to be repainted
        const CRect client = view.GetClientRect();
        const CRgn missing =
            CRgn::combined(CRgn(CRect(client.right - 100, 0, client.right, client.bottom)), window.invalid, RGN_DIFF);
        EXPECT_TRUE(missing.isEmpty());
        window.invalid = CRgn();
        std::vector<std::string> texts = legend_of(view);
        const auto heading = std::ranges::find(texts, "Text:");
        return heading == texts.end() ? std::vector<std::string>{} : std::vector(heading + 1, texts.end());
    };
    const auto rowsHold = [&](const char* text) {
        return std::ranges::any_of(panel(), [text](const std::string& each) { return each.starts_with(text); });
    };
    view.OnCmdMsg(6005, nullptr); // angle
    draw(view, {5, 5}, {25, 5});
    draw(view, {5, 5}, {5, 15});
    EXPECT_TRUE(rowsHold("Angle: 90 deg"));
    EXPECT_NE(view.GetClipboardText(true).find(L"Angle, deg"), std::wstring::npos);
    draw(view, {5, 5}, {25, 5});
    draw(view, {5, 5}, {25, 5});
    EXPECT_TRUE(rowsHold("Angle: 0 deg"));
    view.OnCmdMsg(6007, nullptr); // curve
    EXPECT_TRUE(panel().empty()) << "what it told of is gone";
    EXPECT_EQ(view.GetClipboardText(true).find(L"Angle"), std::wstring::npos);
    draw(view, {10, 10}, {10, 10});
    draw(view, {20, 10}, {20, 10});
    EXPECT_TRUE(rowsHold("L: 10 nm"));
    document->UpdateAllViews(nullptr, 12, std::string("L=3 nm"));
    EXPECT_TRUE(rowsHold("L: 3 nm"));
    view.OnCmdMsg(10029, nullptr);
    EXPECT_TRUE(panel().empty());
}

TEST_F(SurfaceTest, AMeasurementFollowsTheStepsOfItsImage)
{
    SPMDataStream stream = slope();
    stream.get_dimension(0).set_axis(1, VLAxis(0, 3, "V"));
    CSurfMathView& view = open(stream);
    const auto told = [&view] { return base::narrow(view.getDrawn().measure.text); };
    const struct {
        unsigned command;
        const char *asOpened, *doubled, *overOther;
    } cases[] = {{6004, "L=14.1421 nm", "L=22.3607 nm", "L=31.6228 V"}, // 5 rows of 2 nm, 10 columns of 1, 2 and 3
                 {6005, "Angle=45.0 deg", "Angle=26.6 deg", "Angle=18.4 deg"},
                 {6007, "L=14.1421 nm", "L=22.3607 nm", "L=31.6228 V"}};
    for (const auto& each : cases) {
        view.OnCmdMsg(each.command, nullptr);
        if (each.command == 6005) draw(view, {5, 5}, {15, 5});
        if (each.command == 6007) draw(view, {5, 5}, {5, 5}), draw(view, {15, 10}, {15, 10});
        if (each.command != 6007) draw(view, {5, 5}, {15, 10});
        EXPECT_EQ(told(), each.asOpened);
        const VLAxis x = document->getAxis(0, 0, 0), y = document->getAxis(0, 0, 1);
        view::set_resolution(*document, 0, {0, 0, 0}, {x.start, 2 * x.scale, "nm"}, y, view.valueAxis());
        EXPECT_EQ(told(), each.doubled);
        document->undo(0);
        document->UpdateAllViews(nullptr, document::data_hint(0));
        EXPECT_EQ(told(), each.asOpened);
        view.setOption("AxisX", "V");
        EXPECT_EQ(told(), each.overOther);
        view.setOption("AxisX", "nm");
        view.OnCmdMsg(10029, nullptr);
    }
}

TEST_F(SurfaceTest, InvertedViewsTurnTheColoursButNotTheStoredPalette)
{
    CSurfMathView& view = open();
    const std::uint32_t before = lowest_of(view);
    view.OnCmdMsg(10192, nullptr);
    view.SaveOptions();
    EXPECT_FALSE(host.readString("SurfMathView", "invert")) << "of this view alone";
    EXPECT_TRUE(host.readString("SurfMathView", "SelectionFill"));
    EXPECT_TRUE(view.getScale().getInverse()) << "the strip tells what the colours mean";
    EXPECT_NE(lowest_of(view), before);
    view.OnCmdMsg(10112, nullptr);
    const std::string stored = document->getString("palette", 0);
    EXPECT_EQ(stored.substr(stored.find(',') + 1, 2), "0,");
    view.OnSetFocus();
    EXPECT_TRUE(view.getScale().getInverse());
    view.OnCmdMsg(10192, nullptr);
    EXPECT_FALSE(view.getScale().getInverse());
    EXPECT_EQ(lowest_of(view), before);
    EXPECT_TRUE(isChecked(view, 10112));
    view.OnCmdMsg(10112, nullptr);
    EXPECT_FALSE(isChecked(view, 10112)) << "the palette is forgotten again";
}

} // namespace
