// Dialogs and their parts without a window.
#include "document/StorageDoc.h"
#include "support/HeadlessHost.h"
#include "support/RecordingDC.h"
#include "support/streams.h"
#include "support/temporary_folder.h"
#include "view/axes/SizeLine.h"
#include "view/image/FilePreview.h"
#include "view/panes/ParDisplayDlg.h"

#include <gtest/gtest.h>

namespace {

/// Heights that rise to the right, 0 to `columns` - 1; those of the lowest quarter of the rows are 0. No rows: a curve.
SPMDataStream ramp(unsigned columns, unsigned rows)
{
    const VLAxis axis(0, 0.25, "nm");
    const std::vector<test_support::stream_side> sides = {{columns, axis}, {rows, axis}};
    return test_support::made_stream("ramp", {sides.begin(), sides.end() - (rows == 0)}, VLAxis(0, 0.5, "nm"),
                                     [=](unsigned i) { return i < columns * (rows / 4) ? 0 : i % columns; });
}

TEST(ParDisplayDlg, TakesParametersOfBothTablesInTheUsersOrder)
{
    CStorageDoc document;
    const SPMDataStream stream = ramp(2, 2);
    document.AddNewImages(&stream, 1);
    for (const char* name : {"Date", "Operator", "a|b"}) document.setString(name, "x", unsigned(-1));
    for (const char* name : {"Date", "Gain"}) document.setString(name, "x", 0);
    CParDisplayDlg dialog(document, 0, "Gone+|Gain-|+|");
    EXPECT_EQ(dialog.sources[CParDisplayDlg::global].entries, (std::vector<std::string>{"Date", "Operator"}))
        << "a name with the separator cannot be kept";
    EXPECT_EQ(dialog.sources[CParDisplayDlg::local].entries, (std::vector<std::string>{"Date", "Gain"}));
    EXPECT_EQ(dialog.chosenText(1), "Gain (local)");
    const std::size_t second[] = {1}, first[] = {0};
    dialog.add(CParDisplayDlg::global, second);
    dialog.addAll(CParDisplayDlg::local); // "Gain" is there already
    EXPECT_EQ(dialog.listText(), "Gone+|Gain-|Operator+|Date-|");
    EXPECT_EQ(dialog.move(3, -1), 2u);
    EXPECT_EQ(dialog.move(0, -1), 0u);
    dialog.remove(first);
    EXPECT_EQ(dialog.listText(), "Gain-|Date-|Operator+|");
    dialog.removeAll();
    EXPECT_EQ(dialog.listText(), "");
}

TEST(FilePreview, ShowsTheFirstSurfaceUprightAndAllImagesByName)
{
    CHeadlessHost host;
    const CWinApp app{host};
    const temporary_folder folder;
    CStorageDoc document;
    SPMDataStream curve = ramp(5, 0);
    curve.set_name("curve");
    const SPMDataStream streams[] = {curve, ramp(400, 200)};
    document.AddNewImages(streams, 2);
    const std::wstring path = (folder / "a.spm").wstring();
    ASSERT_TRUE(document.OnSaveDocument(path.c_str()));
    const file_preview shown = view::preview_file(path, 100);
    ASSERT_EQ(shown.size, (CSize{100, 50}));
    ASSERT_EQ(shown.pixels.size(), 5000u);
    const auto lightness = [&](std::size_t x, std::size_t y) {
        const std::uint32_t pixel = shown.pixels[y * 100 + x];
        return (pixel & 255u) + (pixel >> 8 & 255u) + (pixel >> 16 & 255u);
    };
    EXPECT_GT(lightness(99, 0), lightness(1, 0) + 200);
    EXPECT_EQ(lightness(50, 0), lightness(50, 30));
    EXPECT_LT(lightness(99, 49), 100u) << "the lowest row lies below";
    EXPECT_EQ(shown.text, "Height: 5, 1.25 nm\nHeight: 400 x 200, 100 nm x 50 nm\n");

    write_file(folder / "broken.spm", "PK\003\004 nothing of worth");
    const file_preview refused = view::preview_file((folder / "broken.spm").wstring(), 100);
    EXPECT_TRUE(refused.pixels.empty());
    EXPECT_NE(refused.text.find("broken.spm"), std::string::npos);
    EXPECT_TRUE(host.messages.empty()) << "no box for a glance";
    EXPECT_TRUE(view::preview_file((folder / "none").wstring(), 100).text.empty());
}

TEST(SizeLine, MeasuresTheWindowWithTwoArrows)
{
    CHeadlessHost host;
    const CWinApp app{host};
    CSizeLine line;
    ASSERT_TRUE(line.Create(nullptr, window_kind::overlay));
    line.MoveWindow({0, 0, 300, 150});
    RecordingDC dc;
    line.OnPaint(dc);
    const auto onDevice = [](const drawn& each, std::size_t point) {
        const CPoint p = each.points[point];
        const XFORM map = each.tools.mapping.toDevice();
        return CPoint{static_cast<int>(map.m11 * p.x + map.m21 * p.y + map.dx),
                      static_cast<int>(map.m12 * p.x + map.m22 * p.y + map.dy)};
    };
    const std::vector<drawn> strokes = dc.all(drawn::kind::lines), texts = dc.all(drawn::kind::text);
    ASSERT_EQ(strokes.size(), 10u);
    EXPECT_EQ(onDevice(strokes[0], 1), (CPoint{300, 50}));
    EXPECT_EQ(onDevice(strokes[1], 1), (CPoint{10, 45}));
    EXPECT_EQ(onDevice(strokes[5], 1), (CPoint{100, -1}));
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0].text, " 300 ");
    EXPECT_EQ(texts[1].text, " 150 ");
    EXPECT_EQ(onDevice(texts[1], 0).y, 149 - (150 - 30) / 2) << "its middle is the window's";
}

} // namespace
