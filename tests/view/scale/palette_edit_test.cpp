#include "view/scale/palette_edit.h"

#include "platform/app/WinApp.h"
#include "support/HeadlessHost.h"
#include "support/temporary_folder.h"
#include "view/scale/CustomPaletteDialog.h"
#include "view/scale/palette_file.h"
#include "view/scale/palette_folder.h"

#include <gtest/gtest.h>

namespace {

using view::color_channel;

/// 11 entries over 110 by 256 pixels at (100, 50): column 10 n shows entry n, and a pixel up is one more.
const CRect pane({100, 50}, CSize{110, 255});
CPoint at(int entry, int value) { return {pane.left + 11 * entry, pane.bottom - value}; }

std::vector<int> channel(const color_table& table, color_channel which)
{
    std::vector<int> out;
    for (const colorEntry color : table) out.push_back(view::channel_of(color, which));
    return out;
}

struct stroke_case {
    const char* name;
    CPoint from, to;
    std::vector<int> result; ///< of entries that were all 40
};

class PaletteStroke : public testing::TestWithParam<stroke_case> {};

TEST_P(PaletteStroke, DrawsStraightToThePen)
{
    color_table table(11, view::color_of(7, 40, 9) | 0xff000000u);
    view::draw_stroke(table, color_channel::green, GetParam().from, GetParam().to, pane);
    EXPECT_EQ(channel(table, color_channel::green), GetParam().result);
    EXPECT_EQ(channel(table, color_channel::red), std::vector<int>(11, 7));
    EXPECT_EQ(channel(table, color_channel::blue), std::vector<int>(11, 9));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PaletteStroke,
    testing::Values(
        stroke_case{"WithinAnEntry", at(3, 10), at(3, 90), {40, 40, 40, 90, 40, 40, 40, 40, 40, 40, 40}},
        stroke_case{"Rightwards", at(2, 200), at(6, 80), {40, 40, 40, 50, 60, 70, 80, 40, 40, 40, 40}},
        stroke_case{"Leftwards", at(6, 0), at(2, 80), {40, 40, 80, 70, 60, 50, 40, 40, 40, 40, 40}},
        // 40 to 43 over 2: 43 - round(1.5) = 41; to 37: 37 - round(-1.5) = 38, halves up
        stroke_case{"HalvesGoUp", at(0, 0), at(2, 43), {40, 41, 43, 40, 40, 40, 40, 40, 40, 40, 40}},
        stroke_case{"HalvesGoUpBelowZero", at(0, 0), at(2, 37), {40, 38, 37, 40, 40, 40, 40, 40, 40, 40, 40}},
        // towards 440: 140, 240, then past the top
        stroke_case{"AboveThePane", at(0, 0), at(4, 440), {40, 140, 240, 255, 255, 40, 40, 40, 40, 40, 40}},
        stroke_case{"BelowThePane", at(0, 0), at(2, -100), {40, 0, 0, 40, 40, 40, 40, 40, 40, 40, 40}},
        stroke_case{"LeftOfThePane", {-900, 0}, {-50, pane.bottom - 12}, {12, 40, 40, 40, 40, 40, 40, 40, 40, 40, 40}},
        stroke_case{
            "RightOfThePane", at(9, 0), {9999, pane.bottom - 50}, {40, 40, 40, 40, 40, 40, 40, 40, 40, 40, 50}}),
    [](const auto& each) { return each.param.name; });

TEST(PaletteStroke, OnlyARampClearsTheTopByte)
{
    color_table table(11, 0xff000000u);
    view::draw_stroke(table, color_channel::red, at(3, 0), at(3, 9), pane);
    EXPECT_EQ(table[3], 0xff000009u);
    view::draw_stroke(table, color_channel::red, at(3, 0), at(4, 9), pane);
    EXPECT_EQ(table[3], 0x9u);
    EXPECT_EQ(table[5], 0xff000000u);
}

TEST(PaletteSmooth, AveragesOverThreeThenFive)
{
    // Of 0 0 90 0 0 0 0 the means of three are 0 30 30 30 0 0 0, of five of those (90/5, 90/5, 60/5) in the middle.
    color_table table = {0, 0, 90, 0, 0, 0, 0};
    view::smooth(table);
    EXPECT_EQ(table, (color_table{0, 30, 18, 18, 12, 0, 0}));
}

TEST(PaletteSmooth, KeepsBothEndsOfShortTables)
{
    color_table one = {0x123456}, two = {0x123456, 7}, three = {0xff000009, 0xff000000, 0x3}, four = {9, 0, 3, 100};
    view::smooth(one);
    view::smooth(two);
    view::smooth(three);
    view::smooth(four);
    EXPECT_EQ(one, (color_table{0x123456}));
    EXPECT_EQ(two, (color_table{0x123456, 7}));
    EXPECT_EQ(three, (color_table{0xff000009, 4, 3}));
    EXPECT_EQ(four, (color_table{9, 4, 34, 100})) << "103 / 3 = 34.3";
}

TEST(PaletteLines, RunFromTheFirstEntryToTheOneBeforeTheLastColumn)
{
    const color_table table = {0, 0x80, 0xff}; // 3 entries over 4 columns: 2 x / 4 = 0, 0, 1, 1
    EXPECT_EQ(view::channel_line(table, color_channel::red, {4, 101}),
              (std::vector<CPoint>{{0, 100}, {1, 100}, {2, 100 - 128 * 100 / 255}, {3, 100 - 128 * 100 / 255}}));
    EXPECT_EQ(view::column_color(table, 3, 4), 0x80u);
}

struct counting_sync : IScaleSync {
    explicit counting_sync(const color_table& table_) : table(table_) {}
    void SyncScale() override { seen.push_back(table); }
    const color_table& table;
    std::vector<color_table> seen; ///< the table each time
};

class PaletteEditorTest : public testing::Test {
protected:
    PaletteEditorTest()
    {
        for (const unsigned id : {CCustomPaletteDialog::linesPane, CCustomPaletteDialog::samplePane}) {
            CWnd& pane_ = *dialog.pane(id);
            pane_.Create(nullptr, window_kind::child);
            pane_.MoveWindow({0, 0, 4, 256}); // four columns; row 255 is value 0
        }
    }
    CWnd& lines() { return *dialog.pane(CCustomPaletteDialog::linesPane); }

    CHeadlessHost host;
    CWinApp app{host};
    const color_table before = {0, 0, 0, 0};
    color_table table = before;
    counting_sync sync{table};
    CCustomPaletteDialog dialog{table, &sync, nullptr};
};

TEST_F(PaletteEditorTest, EveryMoveOfThePenReachesTheTableAndItsFollowers)
{
    lines().OnMouseMove(0, {1, 10});
    EXPECT_EQ(CHeadlessHost::windowOf(lines()).cursor, cursor_shape::pen);
    lines().OnLButtonDown(MK_LBUTTON, {0, 200});
    EXPECT_TRUE(lines().hasCapture());
    EXPECT_EQ(table, before) << "nothing changes before the first move";
    EXPECT_TRUE(sync.seen.empty());
    lines().OnMouseMove(MK_LBUTTON, {0, 156}); // 100 above the lower side
    ASSERT_EQ(sync.seen.size(), 1u);
    EXPECT_EQ(sync.seen[0], (color_table{99, 0, 0, 0})) << "100 * 255 / 256";
    dialog.OnCommand(5237); // blue
    EXPECT_TRUE(dialog.isChecked(5237));
    EXPECT_FALSE(dialog.isChecked(5235));
    lines().OnMouseMove(MK_LBUTTON, {3, -500});
    EXPECT_EQ(table[2] >> 16, 255u);
    lines().OnLButtonUp(0, {3, -500});
    EXPECT_FALSE(lines().hasCapture());
    EXPECT_EQ(sync.seen.size(), 3u) << "also with the release";
    const color_table drawn = table;
    lines().OnMouseMove(0, {2, 3});
    EXPECT_EQ(table, drawn);
    dialog.OnCommand(5191);
    EXPECT_EQ(table, before);
}

TEST_F(PaletteEditorTest, LoadsAndSavesPaletteFiles)
{
    temporary_folder folder;
    const auto bytes = view::write_palette_file({1, 2, 3});
    write_file(folder / "three.pal", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    write_file(folder / "broken.pal", "RIFF....");
    host.openPaths = {(folder / "broken.pal").wstring()};
    dialog.OnCommand(5230);
    EXPECT_EQ(host.messages, std::vector<std::string>{"Failed to load palette."});
    EXPECT_EQ(dialog.working(), before);
    EXPECT_EQ(host.openPrompts.back().filter, "Palette Files (*.pal)|*.pal||");
    host.openPaths = {(folder / "three.pal").wstring()};
    dialog.OnCommand(5230);
    EXPECT_EQ(table, (color_table{1, 2, 3})) << "of another length, at once";

    write_file(folder / "out.pal", "old");
    host.savePaths = {(folder / "out.pal").wstring(), (folder / "none" / "out.pal").wstring()};
    dialog.OnCommand(5231);
    EXPECT_EQ(file_content(folder / "out.pal"), file_content(folder / "three.pal"));
    EXPECT_EQ(host.savePrompts.back().extension, "pal");
    EXPECT_EQ(host.savePrompts.back().suggestedPath, (view::palette_folder() / "Custom.pal").wstring());
    const std::size_t files = folder.files();
    dialog.OnCommand(5231);
    EXPECT_EQ(host.messages.size(), 2u) << "the folder is not there";
    EXPECT_EQ(folder.files(), files) << "nothing half written stays";
}

} // namespace
