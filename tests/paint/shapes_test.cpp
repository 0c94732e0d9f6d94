#include "canvas.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

void plain_shape(paint::CQtDC& dc, const CPen& pen, const CBrush& brush)
{
    dc.SelectObject(pen);
    dc.SelectObject(brush);
}

TEST(Rectangles, HaveTheirOutlineInsideRightAndBottom)
{
    canvas paper(6, 5);
    plain_shape(paper.dc, CPen::solid(1, black), CBrush::solid(red));
    paper.dc.Rectangle({1, 1, 5, 4});
    EXPECT_THAT(paper.rows(), ElementsAre("......", ".####.", ".#rr#.", ".####.", "......"));
    canvas bare(6, 5);
    plain_shape(bare.dc, CPen::null(), CBrush::solid(red));
    bare.dc.Rectangle({5, 4, 1, 1});
    EXPECT_THAT(bare.rows(), ElementsAre("......", ".rrrr.", ".rrrr.", ".rrrr.", "......"));
    canvas flat(4, 3);
    flat.dc.SetROP2(R2_NOT);
    plain_shape(flat.dc, CPen::solid(1, black), CBrush::null());
    flat.dc.Rectangle({1, 0, 2, 3});
    flat.dc.Rectangle({3, 1, 4, 2});
    flat.dc.Rectangle({2, 2, 2, 3});
    EXPECT_THAT(flat.rows(), ElementsAre(".#..", ".#.#", ".#..")) << "one pixel wide, one pixel, none";
}

TEST(Areas, FillAndFrameAndInvert)
{
    canvas paper(6, 4);
    paper.dc.FillSolidRect({0, 0, 6, 4}, red);
    paper.dc.FrameRect({1, 0, 6, 4}, CBrush::solid(black));
    paper.dc.InvertRect({0, 3, 2, 4});
    paper.dc.SetPixel({3, 2}, green);
    // Red inverted is cyan, black white.
    EXPECT_THAT(paper.rows(), ElementsAre("r#####", "r#rrr#", "r#rgr#", "?.####"));
    EXPECT_EQ(paper.at(0, 3), 0xFFFF00u);
}

struct shape_case {
    const char* name;
    CRgn pixels;
    std::function<void(CDC&)> draw;
};

class ShapesOfBrushes : public testing::TestWithParam<shape_case> {};

TEST_P(ShapesOfBrushes, CoverThePixelsOfTheirRegion)
{
    canvas paper(40, 40);
    plain_shape(paper.dc, CPen::null(), CBrush::solid(black));
    GetParam().draw(paper.dc);
    CRgn expected;
    expected.CombineRgn(GetParam().pixels, CRgn(CRect(0, 0, 40, 40)), RGN_AND);
    EXPECT_TRUE(paper.touched() == expected) << paper.touched().area() << " pixels for " << expected.area();
}

const std::vector<CPoint> star = {{20, 1}, {32, 38}, {1, 15}, {39, 15}, {8, 38}};
const std::vector<CPoint> beyond = {{-500, 7}, {300, -200}, {90, 33}, {-60, 900}};
const std::vector<std::vector<CPoint>> ring = {{{2, 3}, {37, 5}, {30, 37}, {4, 30}}, {{10, 10}, {25, 12}, {18, 28}}};

INSTANTIATE_TEST_SUITE_P(
    Kinds, ShapesOfBrushes,
    testing::Values(
        shape_case{"Star", CRgn::polygon(star, ALTERNATE), [](CDC& dc) { dc.Polygon(star); }},
        shape_case{"StarWinding", CRgn::polygon(star, WINDING),
                   [](CDC& dc) {
                       dc.SetPolyFillMode(WINDING);
                       dc.Polygon(star);
                   }},
        shape_case{"Beyond", CRgn::polygon(beyond, ALTERNATE), [](CDC& dc) { dc.Polygon(beyond); }},
        shape_case{"Ring", CRgn::polygons(ring, ALTERNATE), [](CDC& dc) { dc.PolyPolygon(ring); }},
        shape_case{"Ellipse", CRgn::ellipse(CRect(3, 5, 38, 22)), [](CDC& dc) { dc.Ellipse({3, 5, 38, 22}); }},
        shape_case{"LargeEllipse", CRgn::ellipse(CRect(-30, 5, 38, 90)), [](CDC& dc) { dc.Ellipse({-30, 5, 38, 90}); }},
        shape_case{"Region", CRgn::ellipse(CRect(3, 5, 38, 22)).frame(2, 3),
                   [](CDC& dc) { dc.FrameRgn(CRgn::ellipse(CRect(3, 5, 38, 22)), CBrush::solid(black), 2, 3); }},
        shape_case{"Mapped", CRgn::polygon(std::vector<CPoint>{{4, 30}, {34, 30}, {34, 6}}, ALTERNATE),
                   [](CDC& dc) {
                       // x doubled; y tripled, upwards from 36.
                       dc.SetMapMode(MM_ANISOTROPIC);
                       dc.SetViewportExt({2, -3});
                       dc.SetViewportOrg({0, 36});
                       dc.Polygon(std::vector<CPoint>{{2, 2}, {17, 2}, {17, 10}});
                   }}),
    [](const auto& test) { return test.param.name; });

TEST(Ellipses, AreOutlinedByTheirOuterPixels)
{
    canvas paper(7, 7);
    plain_shape(paper.dc, CPen::solid(1, black), CBrush::solid(red));
    paper.dc.Ellipse({0, 0, 7, 7});
    // Centres within 3.5 of (3.5, 3.5): row 0 has u^2 <= 12.25 - 9, columns 2 … 4.
    EXPECT_THAT(paper.rows(), ElementsAre("..###..", ".#rrr#.", "#rrrrr#", "#rrrrr#", "#rrrrr#", ".#rrr#.", "..###.."));
}

TEST(Ellipses, OfImmenseSizeTakeTheTimeOfWhatIsSeen)
{
    canvas paper(4, 3);
    plain_shape(paper.dc, CPen::solid(1, black), CBrush::solid(red));
    paper.dc.Ellipse({1, -100000000, 200000001, 100000002});
    EXPECT_THAT(paper.rows(), ElementsAre(".#rr", ".#rr", ".#rr")) << "its left end is in column 1, row 1";
}

TEST(Polygons, AreOutlinedThroughTheirCorners)
{
    canvas paper(6, 6);
    plain_shape(paper.dc, CPen::solid(1, black), CBrush::solid(red));
    paper.dc.Polygon(std::vector<CPoint>{{0, 0}, {5, 0}, {5, 5}});
    EXPECT_THAT(paper.rows(), ElementsAre("######", ".#rrr#", "..#rr#", "...#r#", "....##", ".....#"));
}

TEST(Turned, RectanglesFollowTheWorld)
{
    canvas paper(8, 8);
    plain_shape(paper.dc, CPen::null(), CBrush::solid(black));
    paper.dc.SetWorldTransform({.m11 = 0.0, .m12 = 1.0, .m21 = -1.0, .m22 = 0.0, .dx = 8.0, .dy = 0.0});
    paper.dc.Rectangle({1, 2, 7, 4}); // a quarter to the right: x' = 8 - y, y' = x
    CRgn expected(CRect(4, 1, 6, 7));
    EXPECT_TRUE(paper.touched() == expected);
}

struct hatch_case {
    const char* name;
    hatch_style style;
    std::function<bool(int, int)> isLine; ///< from the brush's origin
};

class Hatches : public testing::TestWithParam<hatch_case> {};

TEST_P(Hatches, AreLinesEightApartFromTheBrushOrigin)
{
    for (const int mode : {OPAQUE, TRANSPARENT}) {
        canvas paper(30, 26);
        paper.dc.SetBkMode(mode);
        paper.dc.SetBkColor(green);
        paper.dc.SetBrushOrg({3, 5});
        paper.dc.FillRect({1, 2, 29, 25}, CBrush::hatched(GetParam().style, red));
        picture_rows expected(26, std::string(30, '.'));
        for (int y = 2; y < 25; ++y)
            for (int x = 1; x < 29; ++x)
                expected[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = GetParam().isLine(x - 3, y - 5)
                                                                                         ? 'r'
                                                                                     : mode == OPAQUE ? 'g'
                                                                                                      : '.';
        EXPECT_EQ(paper.rows(), expected);
    }
}

bool eighth(int at) { return at % 8 == 0; }

INSTANTIATE_TEST_SUITE_P(
    Styles, Hatches,
    testing::Values(hatch_case{"Horizontal", HS_HORIZONTAL, [](int, int y) { return eighth(y); }},
                    hatch_case{"Vertical", HS_VERTICAL, [](int x, int) { return eighth(x); }},
                    hatch_case{"Falling", HS_FDIAGONAL, [](int x, int y) { return eighth(x - y); }},
                    hatch_case{"Rising", HS_BDIAGONAL, [](int x, int y) { return eighth(x + y); }},
                    hatch_case{"Cross", HS_CROSS, [](int x, int y) { return eighth(x) || eighth(y); }},
                    hatch_case{"DiagonalCross", HS_DIAGCROSS,
                               [](int x, int y) { return eighth(x - y) || eighth(x + y); }}),
    [](const auto& test) { return test.param.name; });

TEST(Clip, CutsEverythingInDevicePixels)
{
    canvas paper(20, 20);
    const CRgn hole = CRgn::combined(CRgn(CRect(2, 3, 18, 17)), CRgn(CRect(6, 6, 10, 12)), RGN_DIFF);
    paper.dc.SelectClipRgn(&hole);
    paper.dc.SetMapMode(MM_ANISOTROPIC);
    paper.dc.SetViewportExt({3, 3});
    plain_shape(paper.dc, CPen::solid(4, black), CBrush::hatched(HS_CROSS, red));
    paper.dc.SetBkColor(green);
    paper.dc.Rectangle({-1, -1, 8, 8});
    EXPECT_TRUE(paper.touched() == hole) << "the opaque hatch fills it";
    paper.dc.FillSolidRect({0, 0, 7, 7}, black);
    paper.dc.SetBkMode(TRANSPARENT);
    paper.dc.SetTextColor(green);
    paper.dc.SelectObject(CFont{.height = -4, .face = {}});
    paper.dc.TextOut(0, 1, L"####");
    EXPECT_TRUE(paper.touched() == hole);
    const CRgn none;
    canvas nothing(4, 4);
    nothing.dc.SelectClipRgn(&none);
    nothing.dc.FillSolidRect({0, 0, 4, 4}, black);
    nothing.dc.LineTo(3, 3);
    EXPECT_TRUE(nothing.touched().isEmpty());
}

} // namespace
