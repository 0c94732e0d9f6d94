#include "platform/draw/Region.h"

#include <gtest/gtest.h>
#include <random>

namespace {

/// The pixels of a region in a small window, one by one.
std::vector<bool> pixels_of(const CRgn& region)
{
    std::vector<bool> out;
    for (int y = -8; y < 40; ++y)
        for (int x = -8; x < 40; ++x) out.push_back(region.PtInRegion({x, y}));
    return out;
}

std::vector<CPoint> random_points(std::mt19937& random, int count)
{
    std::uniform_int_distribution<int> coordinate(0, 32);
    std::vector<CPoint> points;
    for (int i = 0; i < count; ++i) points.push_back({coordinate(random), coordinate(random)});
    return points;
}

/// How often the polygon goes round a pixel's centre, and how many edges lie right of it. The ray runs in doubled
/// coordinates, where centres are odd and corners even, so that it never meets a corner.
std::pair<int, int> turns_around(const std::vector<CPoint>& points, int x, int y)
{
    const int cx = 2 * x + 1, cy = 2 * y + 1;
    int turns = 0, crossings = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const CPoint a{2 * points[i].x, 2 * points[i].y};
        const CPoint b{2 * points[(i + 1) % points.size()].x, 2 * points[(i + 1) % points.size()].y};
        if ((a.y > cy) == (b.y > cy)) continue;
        // Side of the centre: a centre on the edge counts as right of it, thus inside of a left edge.
        const long side = static_cast<long>(b.x - a.x) * (cy - a.y) - static_cast<long>(b.y - a.y) * (cx - a.x);
        const bool edgeIsRight = b.y > a.y ? side > 0 : side < 0;
        if (!edgeIsRight) continue;
        ++crossings;
        turns += b.y > a.y ? 1 : -1;
    }
    return {turns, crossings};
}

TEST(Region, PolygonHoldsThePixelsWhoseCentresLieInside)
{
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        const std::vector<CPoint> points = random_points(random, 3 + round % 6);
        const CRgn alternate = CRgn::polygon(points, ALTERNATE), winding = CRgn::polygon(points, WINDING);
        for (int y = 0; y < 32; ++y)
            for (int x = 0; x < 32; ++x) {
                const auto [turns, crossings] = turns_around(points, x, y);
                ASSERT_EQ(alternate.PtInRegion({x, y}), crossings % 2 != 0) << round << ": " << x << "," << y;
                ASSERT_EQ(winding.PtInRegion({x, y}), turns != 0) << round << ": " << x << "," << y;
            }
    }
    EXPECT_EQ(CRgn::polygon(std::vector<CPoint>{{3, 4}, {9, 4}, {9, 6}, {3, 6}}, ALTERNATE), CRgn(CRect(3, 4, 9, 6)));
}

TEST(Region, EllipseHoldsThePixelsWhoseCentresLieInside)
{
    for (const CRect& rect : {CRect(0, 0, 31, 17), CRect(3, 5, 4, 20), CRect(2, 2, 10, 10), CRect(30, 20, 1, 3)}) {
        CRect box(rect);
        box.NormalizeRect();
        const CRgn region = CRgn::ellipse(rect);
        const double rx = box.Width() / 2.0, ry = box.Height() / 2.0;
        for (int y = -2; y < 34; ++y)
            for (int x = -2; x < 34; ++x) {
                const double u = (x + 0.5 - box.left - rx) / rx, v = (y + 0.5 - box.top - ry) / ry;
                if (std::abs(u * u + v * v - 1.0) < 1e-12) continue; // on the line: rounding decides
                ASSERT_EQ(region.PtInRegion({x, y}), u * u + v * v < 1.0) << x << "," << y;
            }
    }
}

TEST(Region, CombinesPixelByPixel)
{
    const CRgn a = CRgn::ellipse({0, 0, 20, 20});
    CRgn b = CRgn::polygon(std::vector<CPoint>{{10, 5}, {30, 12}, {8, 30}}, ALTERNATE);
    const std::vector<bool> inA = pixels_of(a), inB = pixels_of(b);
    const auto expected = [&](auto rule) {
        std::vector<bool> out;
        for (std::size_t i = 0; i < inA.size(); ++i) out.push_back(rule(inA[i], inB[i]));
        return out;
    };
    EXPECT_EQ(pixels_of(CRgn::combined(a, b, RGN_AND)), expected([](bool p, bool q) { return p && q; }));
    EXPECT_EQ(pixels_of(CRgn::combined(a, b, RGN_OR)), expected([](bool p, bool q) { return p || q; }));
    EXPECT_EQ(pixels_of(CRgn::combined(a, b, RGN_DIFF)), expected([](bool p, bool q) { return p && !q; }));
    EXPECT_EQ(pixels_of(CRgn::combined(a, b, RGN_COPY)), inA);
    EXPECT_TRUE(b.CombineRgn(a, b, RGN_XOR)) << "the target may be a source";
    EXPECT_EQ(pixels_of(b), expected([](bool p, bool q) { return p != q; }));
}

TEST(Region, IsCarriedByMapsAndFlips)
{
    CRgn region(CRect(1, 2, 4, 5));
    region.CombineRgn(region, CRgn(CRect(1, 5, 2, 8)), RGN_OR);
    CRgn expected(CRect(12, -15, 18, 0));
    expected.CombineRgn(expected, CRgn(CRect(12, -30, 14, -15)), RGN_OR);
    // x' = 2 x + 10, y' = 10 - 5 y
    EXPECT_EQ(region.transformed({.m11 = 2.0, .m22 = -5.0, .dx = 10.0, .dy = 10.0}), expected);
    // A quarter turn: (x, y) goes to (-y, x).
    EXPECT_EQ(CRgn(CRect(1, 2, 4, 5)).transformed({0.0, 1.0, -1.0, 0.0, 0.0, 0.0}), CRgn(CRect(-5, 1, -2, 4)));
}

TEST(Region, FrameIsTheInnerEdge)
{
    const CRgn frame = CRgn(CRect(0, 0, 10, 8)).frame(2, 1);
    EXPECT_EQ(frame, CRgn::combined(CRgn(CRect(0, 0, 10, 8)), CRgn(CRect(2, 1, 8, 7)), RGN_DIFF));
    EXPECT_TRUE(CRgn().frame(1, 1).isEmpty());
    EXPECT_EQ(CRgn().GetRgnBox(), CRect());
}

} // namespace
