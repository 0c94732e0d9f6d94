#include "support/RecordingDC.h"

#include <gtest/gtest.h>

namespace {

using kind = drawn::kind;

TEST(DC, SettersGiveBackWhatWasSetAndSavedStatesReturnIt)
{
    RecordingDC dc;
    EXPECT_EQ(dc.SelectObject(CPen::dotted(0xFF0000)), CPen());
    EXPECT_EQ(dc.SetTextAlign(TA_CENTER | TA_BOTTOM), TA_LEFT | TA_TOP);
    EXPECT_EQ(dc.SaveDC(), 1);
    dc.SelectObject(CPen::null());
    EXPECT_EQ(dc.SaveDC(), 2);
    dc.SetTextAlign(TA_RIGHT);
    dc.IntersectClipRect({0, 0, 10, 10});
    EXPECT_FALSE(dc.RestoreDC(3));
    EXPECT_TRUE(dc.RestoreDC(1));
    EXPECT_EQ(dc.getCurrentPen(), CPen::dotted(0xFF0000));
    EXPECT_EQ(dc.GetTextAlign(), TA_CENTER | TA_BOTTOM);
    EXPECT_EQ(dc.GetClipBox(), CRect(0, 0, 1000, 1000));
    EXPECT_FALSE(dc.RestoreDC(-1)) << "the later states went with the first";
}

struct aligned_case {
    const char* name;
    std::uint32_t flags;
    CRect box; ///< of "abcd" at (100, 50): 24 by 12, the baseline 10 below the top
};

class TextAlign : public testing::TestWithParam<aligned_case> {};

TEST_P(TextAlign, PutsTheNamedPointOfTheTextAtThePosition)
{
    RecordingDC dc;
    dc.SetTextAlign(GetParam().flags);
    dc.TextOut(100, 50, L"abcd");
    ASSERT_EQ(dc.operations.size(), 2u) << "background and text";
    EXPECT_EQ(dc.operations[0].box, GetParam().box);
    EXPECT_EQ(dc.operations[1].box, GetParam().box);
    EXPECT_EQ(dc.operations[1].text, "abcd");
}

INSTANTIATE_TEST_SUITE_P(Flags, TextAlign,
                         testing::Values(aligned_case{"Top", TA_LEFT | TA_TOP, {100, 50, 124, 62}},
                                         aligned_case{"Centre", TA_CENTER, {88, 50, 112, 62}},
                                         aligned_case{"RightBottom", TA_RIGHT | TA_BOTTOM, {76, 38, 100, 50}},
                                         aligned_case{"Baseline", TA_BASELINE, {100, 40, 124, 52}}),
                         [](const auto& test) { return test.param.name; });

/// A rim is the text itself one unit to every side, in the background colour and below it.
class plain_dc : public RecordingDC {
protected:
    void drawTextRim(int left, int baseline, std::wstring_view text) override
    {
        CDC::drawTextRim(left, baseline, text);
    }
};

TEST(DC, TransparentTextMayHaveARim)
{
    plain_dc dc;
    dc.SetTextColor(0x111111);
    dc.SetBkColor(0xEEEEEE);
    EXPECT_FALSE(dc.setTextRim(true));
    dc.TextOut(100, 50, L"a");
    EXPECT_EQ(dc.all(kind::text).size(), 1u) << "opaque text covers what is below it";
    dc.operations.clear();
    dc.SetBkMode(TRANSPARENT);
    dc.TextOut(100, 50, L"a");
    const std::vector<drawn> runs = dc.all(kind::text);
    ASSERT_EQ(runs.size(), 9u);
    for (int i = 0; i < 8; ++i) {
        const CPoint place = {100 + (i + (i > 3)) % 3 - 1, 60 + (i + (i > 3)) / 3 - 1};
        EXPECT_EQ(runs[std::size_t(i)].points[0], place) << i;
        EXPECT_EQ(runs[std::size_t(i)].tools.textColor, 0xEEEEEEu) << i;
    }
    EXPECT_EQ(runs[8].points[0], (CPoint{100, 60}));
    EXPECT_EQ(runs[8].tools.textColor, 0x111111u);
}

TEST(DC, TabsGoToTheNextStop)
{
    RecordingDC dc;
    dc.SetBkMode(TRANSPARENT);
    const int stops[] = {20, 60};
    // Stops count from 10: "ab" ends at 12, the next stops lie at 30, 70, then each 48 behind the last one: 118.
    EXPECT_EQ(dc.TabbedTextOut(10, 0, L"ab\tc\td\te", stops, 10), (CSize{60 + 48 + 6, 12}));
    std::vector<int> lefts;
    for (const drawn& run : dc.all(kind::text)) lefts.push_back(run.points[0].x);
    EXPECT_EQ(lefts, (std::vector<int>{10, 30, 70, 118}));
    EXPECT_EQ(dc.GetTabbedTextExtent(L"\tx", {}), (CSize{48 + 6, 12}));
}

TEST(DC, TextInARectangleBreaksAlignsAndMeasures)
{
    RecordingDC dc;
    CRect box(0, 0, 60, 100);
    EXPECT_EQ(dc.DrawText(L"one two three\r\nfour", box, DT_WORDBREAK | DT_CENTER), 3 * 12);
    std::vector<std::pair<std::string, CPoint>> lines;
    for (const drawn& run : dc.all(kind::text)) lines.emplace_back(run.text, run.points[0]);
    EXPECT_EQ(lines, (std::vector<std::pair<std::string, CPoint>>{
                         {"one two", {9, 10}}, {"three", {15, 22}}, {"four", {18, 34}}}));
    EXPECT_EQ(dc.DrawText(L"a\tb\nlonger", box, DT_CALCRECT | DT_EXPANDTABS), 24);
    EXPECT_EQ(box, CRect(0, 0, 54, 24));
    RecordingDC line;
    CRect strip(10, 10, 70, 40);
    line.DrawText(L"abc", strip, DT_SINGLELINE | DT_VCENTER | DT_RIGHT);
    EXPECT_EQ(line.operations.back().box, CRect(52, 19, 70, 31));
    EXPECT_EQ(line.operations.back().tools.clip, CRgn(strip));
}

TEST(DC, MappingTurnsLogicalUnitsIntoDevicePixelsAndBack)
{
    RecordingDC dc({600, 400});
    dc.SetMapMode(MM_ISOTROPIC);
    dc.SetWindowExt({100, 100});
    dc.SetViewportExt({400, 200});
    dc.SetViewportOrg({10, 20});
    EXPECT_EQ(dc.LPtoDP(CPoint{50, 50}), (CPoint{110, 120})) << "both axes take the smaller scale";
    EXPECT_EQ(dc.DPtoLP(CPoint{110, 120}), (CPoint{50, 50}));
    dc.SetMapMode(MM_ANISOTROPIC);
    dc.SetViewportExt({400, -200});
    EXPECT_EQ(dc.LPtoDP(CRect(0, 0, 10, 10)), CRect(10, 0, 50, 20)) << "in order although it is flipped";
    dc.SetWorldTransform({.m11 = 2.0, .dx = 5.0});
    EXPECT_EQ(dc.LPtoDP(CPoint{10, 0}), (CPoint{110, 20})) << "the world first: 25 times 4 plus 10";
}

TEST(DC, ClipStaysWhereItWasSet)
{
    RecordingDC dc;
    dc.IntersectClipRect({100, 100, 300, 200});
    dc.SetViewportOrg({50, 0});
    EXPECT_EQ(dc.GetClipBox(), CRect(50, 100, 250, 200));
    dc.SelectClipRgn(nullptr);
    EXPECT_EQ(dc.GetClipBox(), CRect(-50, 0, 950, 1000));
}

TEST(DC, ReadsAndCopiesPixelsOfBitmaps)
{
    std::byte bits[16] = {};
    bits[8 + 3] = std::byte{10}, bits[8 + 4] = std::byte{20}, bits[8 + 5] = std::byte{30};
    CBitmap bitmap{.header = {.biWidth = 2, .biHeight = 2, .biBitCount = 24}, .bits = bits};
    RecordingDC window;
    const auto memory = window.CreateCompatibleDC();
    window.BitBlt({0, 0, 2, 2}, *memory, {0, 0}, SRCCOPY);
    EXPECT_TRUE(window.operations.empty()) << "nothing is selected";
    EXPECT_EQ(memory->SelectObject(&bitmap), nullptr);
    EXPECT_EQ(memory->GetPixel({1, 0}), 0x0A141Eu) << "the upper row is the second in memory; blue comes first";
    EXPECT_EQ(memory->GetPixel({2, 0}), 0u);
    window.BitBlt({5, 6, 7, 8}, *memory, {0, 0}, SRCINVERT);
    ASSERT_EQ(window.operations.size(), 1u);
    EXPECT_EQ(window.operations[0].box, CRect(5, 6, 7, 8));
    EXPECT_EQ(window.operations[0].operation, SRCINVERT);
}

} // namespace
