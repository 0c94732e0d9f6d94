#include "canvas.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

struct line_case {
    const char* name;
    std::vector<CPoint> points;
    picture_rows drawn;
    CPen pen = CPen::solid(1, black);
};

class Lines : public testing::TestWithParam<line_case> {};

TEST_P(Lines, CoverThesePixels)
{
    const line_case& test = GetParam();
    canvas paper(static_cast<int>(test.drawn[0].size()), static_cast<int>(test.drawn.size()));
    paper.dc.SetBkMode(TRANSPARENT);
    paper.dc.SelectObject(test.pen);
    paper.dc.Polyline(test.points);
    EXPECT_EQ(paper.rows(), test.drawn);
}

CPen geometric(int width, std::uint32_t style)
{
    return {.style = PS_GEOMETRIC | style, .width = width, .color = black, .pattern = {}};
}

INSTANTIATE_TEST_SUITE_P(Thin, Lines,
                         testing::Values(line_case{"Right", {{0, 0}, {5, 0}}, {"#####."}}, //
                                         line_case{"Left", {{5, 0}, {0, 0}}, {".#####"}},
                                         line_case{"Down", {{1, 0}, {1, 2}}, {".#.", ".#.", "..."}},
                                         line_case{"Diagonal", {{0, 2}, {2, 0}}, {"...", ".#.", "#.."}},
                                         // Rows 0, 1/3, 2/3, 1 … of a slope of one third.
                                         line_case{"Flat", {{0, 0}, {6, 2}}, {"##....", "..###.", ".....#"}},
                                         line_case{"FlatBack", {{6, 2}, {0, 0}}, {".#.....", "..###..", ".....##"}},
                                         line_case{"HalvesGoDown", {{0, 0}, {4, 2}}, {"#...", ".##.", "...#"}},
                                         line_case{"Corner", {{0, 0}, {2, 0}, {2, 2}}, {"###", "..#", "..."}},
                                         line_case{"NoLength", {{1, 1}, {1, 1}}, {"...", "...", "..."}},
                                         line_case{"ThroughFromFarAway",
                                                   {{-400000000, -400000000}, {400000000, 400000000}},
                                                   {"#..", ".#.", "..#"}},
                                         line_case{"NullPen", {{0, 0}, {3, 0}}, {"..."}, CPen::null()},
                                         line_case{"WidthZero", {{0, 0}, {3, 0}}, {"###"}, CPen::solid(0, black)}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Dashed, Lines,
    testing::Values(line_case{"Dotted", {{0, 0}, {10, 0}}, {"###...###.."}, CPen::dotted(black)},
                    line_case{"User",
                              {{0, 0}, {9, 0}},
                              {"##.##.##.."},
                              {.style = PS_USERSTYLE, .width = 1, .color = black, .pattern = {2, 1}}},
                    line_case{"UserOfOddCountRunsOnWithOnAndOffExchanged",
                              {{0, 0}, {12, 0}},
                              {"#..###.##..."},
                              {.style = PS_USERSTYLE, .width = 1, .color = black, .pattern = {1, 2, 3}}},
                    line_case{"RoundTheCorner",
                              {{0, 0}, {4, 0}, {4, 4}},
                              {"###..", ".....", "....#", "....#", "....."},
                              CPen::dotted(black)},
                    line_case{"GeometricByWidths",
                              {{0, 1}, {12, 1}},
                              {"##..##..##..", "##..##..##..", "............"},
                              geometric(2, PS_DOT | PS_ENDCAP_FLAT)},
                    line_case{"GeometricAndThin", {{0, 0}, {6, 0}}, {"#.#.#."}, geometric(1, PS_DOT | PS_ENDCAP_ROUND)},
                    line_case{"NothingButZeros",
                              {{0, 0}, {3, 0}},
                              {"###."},
                              {.style = PS_USERSTYLE, .width = 1, .color = black, .pattern = {0, 0}}}),
    [](const auto& test) { return test.param.name; });

// A wide line lies about the middle of its pixels: with a width of 3, one to each side.
INSTANTIATE_TEST_SUITE_P(Wide, Lines,
                         testing::Values(line_case{"FlatEnds",
                                                   {{2, 2}, {5, 2}},
                                                   {"........", "..###...", "..###...", "..###...", "........"},
                                                   geometric(3, PS_ENDCAP_FLAT)},
                                         line_case{"SquareEnds",
                                                   {{2, 2}, {5, 2}},
                                                   {"........", ".######.", ".######.", ".######.", "........"},
                                                   geometric(3, PS_ENDCAP_SQUARE)},
                                         line_case{"EvenWidth",
                                                   {{1, 1}, {4, 1}},
                                                   {".###..", ".###..", "......"},
                                                   geometric(2, PS_ENDCAP_FLAT)},
                                         // From (1.5, 6.5) to (6.5, 6.5) to (6.5, 1.5): the sides reach 2 to each side.
                                         line_case{"MiterJoin",
                                                   {{1, 6}, {6, 6}, {6, 1}},
                                                   {".........", "....####.", "....####.", "....####.", ".#######.",
                                                    ".#######.", ".#######.", ".#######.", "........."},
                                                   geometric(4, PS_ENDCAP_FLAT | PS_JOIN_MITER)},
                                         line_case{"BevelJoin",
                                                   {{1, 6}, {6, 6}, {6, 1}},
                                                   {".........", "....####.", "....####.", "....####.", ".#######.",
                                                    ".#######.", ".#######.", ".######..", "........."},
                                                   geometric(4, PS_ENDCAP_FLAT | PS_JOIN_BEVEL)}),
                         [](const auto& test) { return test.param.name; });

TEST(LineGaps, OfFixedPatternsShowTheBackgroundInOpaqueMode)
{
    canvas paper(8, 3);
    paper.dc.SetBkColor(red);
    paper.dc.SelectObject(CPen::dotted(black));
    paper.dc.Polyline(std::vector<CPoint>{{0, 0}, {8, 0}});
    paper.dc.SelectObject(CPen{.style = PS_USERSTYLE, .width = 1, .color = black, .pattern = {3, 3}});
    paper.dc.Polyline(std::vector<CPoint>{{0, 1}, {8, 1}});
    paper.dc.SetBkMode(TRANSPARENT);
    paper.dc.SelectObject(CPen::dotted(black));
    paper.dc.Polyline(std::vector<CPoint>{{0, 2}, {8, 2}});
    EXPECT_THAT(paper.rows(), ElementsAre("###rrr##", "###...##", "###...##"));
}

TEST(LinePatterns, BeginAnewWithEachLineButRunOnWithinOne)
{
    canvas paper(8, 2);
    paper.dc.SetBkMode(TRANSPARENT);
    paper.dc.SelectObject(CPen::dotted(black));
    paper.dc.Polyline(std::vector<CPoint>{{0, 0}, {2, 0}, {4, 0}, {8, 0}});
    paper.dc.MoveTo(0, 1);
    paper.dc.LineTo(2, 1);
    paper.dc.LineTo(8, 1);
    EXPECT_THAT(paper.rows(), ElementsAre("###...##", "#####..."));
}

TEST(LineWidths, OfGeometricPensGrowWithTheMappingOthersDoNot)
{
    canvas paper(12, 8);
    paper.dc.SetMapMode(MM_ANISOTROPIC);
    paper.dc.SetViewportExt({2, 2});
    paper.dc.SelectObject(CPen::solid(1, black));
    paper.dc.Polyline(std::vector<CPoint>{{0, 0}, {6, 0}});
    paper.dc.SelectObject(geometric(2, PS_ENDCAP_FLAT));
    paper.dc.Polyline(std::vector<CPoint>{{1, 2}, {5, 2}});
    // Logical (1, 2) is pixel (2, 4), its middle (2.5, 4.5); four pixels are 2.5 … 6.5.
    EXPECT_THAT(paper.rows(), ElementsAre("############", "............", "..########..", "..########..",
                                          "..########..", "..########..", "............", "............"));
}

TEST(LineInversion, TouchesEveryPixelOnceAndIsUndoneByTheSameLine)
{
    for (const CPen& pen : {CPen::solid(1, white), CPen::dotted(white), geometric(5, PS_JOIN_ROUND)}) {
        canvas paper(20, 20);
        paper.dc.SetROP2(R2_NOT);
        paper.dc.SetBkMode(TRANSPARENT);
        paper.dc.SelectObject(pen);
        const std::vector<CPoint> crossing = {{2, 2}, {17, 17}, {17, 3}, {3, 17}, {3, 3}};
        paper.dc.Polyline(crossing);
        const bool isWhole = pen != CPen::dotted(white);
        EXPECT_TRUE(!isWhole || paper.at(10, 10) == black) << "where it crosses itself";
        EXPECT_FALSE(paper.touched().isEmpty());
        paper.dc.Polyline(crossing);
        EXPECT_TRUE(paper.touched().isEmpty());
    }
}

} // namespace
