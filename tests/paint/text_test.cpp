#include "base/text/text_list.h"
#include "base/variables/option_functions.h"
#include "canvas.h"
#include "paint/qt_fonts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QStringList>

namespace {

CFont sans(int height) { return {.height = height, .face = "Liberation Sans"}; }

bool is_within(const CRgn& region, const CRect& box) { return CRgn::combined(region, CRgn(box), RGN_DIFF).isEmpty(); }

struct text_case {
    const char* name;
    CFont font;
    std::function<void(CDC&)> prepare;
};

class Texts : public testing::TestWithParam<text_case> {};

TEST_P(Texts, LandInTheBoxThatTheirExtentTells)
{
    canvas paper(300, 120);
    paint::CQtDC& dc = paper.dc;
    dc.SelectObject(GetParam().font);
    dc.SetBkMode(TRANSPARENT);
    GetParam().prepare(dc);
    const std::wstring text = L"Hagp 12.5 \x00B5m";
    const CSize size = dc.GetTextExtent(text);
    const CPoint at{20, 30};
    dc.TextOut(at.x, at.y, text);
    const CRect box = dc.LPtoDP(CRect(at, size));
    const CRgn ink = paper.touched();
    EXPECT_GT(ink.area(), 40);
    EXPECT_TRUE(is_within(ink, box)) << ink.GetRgnBox().left << ' ' << ink.GetRgnBox().top << ' '
                                     << ink.GetRgnBox().right << ' ' << ink.GetRgnBox().bottom << " in " << box.left
                                     << ' ' << box.top << ' ' << box.right << ' ' << box.bottom;
    const auto [shorter, longer] = std::minmax({box.Width(), box.Height()});
    const auto [inkShorter, inkLonger] = std::minmax({ink.GetRgnBox().Width(), ink.GetRgnBox().Height()});
    EXPECT_GT(inkLonger, longer * 8 / 10) << "and fills it";
    EXPECT_GT(inkShorter, shorter * 6 / 10);
    dc.SetBkMode(OPAQUE);
    dc.SetBkColor(red);
    dc.TextOut(at.x, at.y, text);
    EXPECT_TRUE(paper.touched() == CRgn(box)) << "its background fills it";
}

INSTANTIATE_TEST_SUITE_P(
    Fonts, Texts,
    testing::Values(text_case{"Small", sans(-11), [](CDC&) {}}, text_case{"Large", sans(-30), [](CDC&) {}},
                    text_case{"Usual", {.height = 0, .face = {}}, [](CDC&) {}},
                    text_case{"BoldByLine", {.height = 25, .weight = 700, .face = {}}, [](CDC&) {}},
                    text_case{"FixedPitch", {.height = -14, .fixedPitch = true, .face = {}}, [](CDC&) {}},
                    text_case{"Enlarged", sans(-9),
                              [](CDC& dc) {
                                  dc.SetMapMode(MM_ANISOTROPIC);
                                  dc.SetWindowExt({2, 2});
                                  dc.SetViewportExt({3, 3});
                              }},
                    text_case{"Upwards", sans(-13),
                              [](CDC& dc) {
                                  dc.SetMapMode(MM_ANISOTROPIC);
                                  dc.SetViewportExt({1, -1});
                                  dc.SetViewportOrg({0, 100});
                              }},
                    text_case{"Turned", sans(-13),
                              [](CDC& dc) { dc.SetWorldTransform({0.0, 1.0, -1.0, 0.0, 90.0, 0.0}); }}),
    [](const auto& test) { return test.param.name; });

TEST(FontHeights, AreOfCharactersBelowZeroAndOfTheLineAbove)
{
    canvas paper(100, 100);
    for (const int height : {9, 13, 20, 48}) {
        paper.dc.SelectObject(sans(height));
        const TEXTMETRIC line = paper.dc.GetTextMetrics();
        EXPECT_LE(line.tmHeight, height);
        EXPECT_GE(line.tmHeight, height - 2) << "sizes step by whole pixels";
        EXPECT_EQ(line.tmAscent + line.tmDescent, line.tmHeight);
        paper.dc.SelectObject(sans(-height));
        // Ascent and descent of this face are 0.905 and 0.212 of its size.
        EXPECT_NEAR(paper.dc.GetTextMetrics().tmAscent, 0.905 * height, 1.0);
        EXPECT_NEAR(paper.dc.GetTextMetrics().tmDescent, 0.212 * height, 1.0);
    }
    paper.dc.SelectObject(CFont{.height = -20, .fixedPitch = true, .face = {}});
    EXPECT_EQ(paper.dc.GetTextExtent(L"iii").cx, paper.dc.GetTextExtent(L"WWW").cx);
}

TEST(FontFamilies, AreAListThatDeclarationsCanAskFor)
{
    paint::register_fonts();
    const auto list = base::call_option_function("vldv:GetFontList*FreeSettingsString", {});
    ASSERT_TRUE(list);
    std::size_t count = 0;
    bool hasSans = false;
    while (const auto entry = base::list_entry(*list, count)) {
        hasSans |= *entry == "Liberation Sans";
        ++count;
    }
    EXPECT_EQ(count, static_cast<std::size_t>(QFontDatabase::families().size()));
    EXPECT_TRUE(hasSans);
}

} // namespace
