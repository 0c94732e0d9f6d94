#include "canvas.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

/// Four columns and three rows of different colours.
struct motley : canvas {
    explicit motley(int bits = 24) : canvas(4, 3, bits)
    {
        const char* const letters[] = {"rgb#", ".r#g", "bb.r"};
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 4; ++x)
                for (const colorEntry color : {red, green, blue, black, white})
                    if (letter(color) == letters[y][x]) dc.SetPixel({x, y}, color);
    }
};

TEST(Blits, CopyPartsBetweenAllDepths)
{
    for (const int from : {24, 32})
        for (const int to : {24, 32}) {
            const motley source(from);
            canvas paper(6, 4, to);
            paper.dc.BitBlt({1, 1, 4, 3}, source.dc, {1, 0}, SRCCOPY);
            EXPECT_THAT(paper.rows(), ElementsAre("......", ".gb#..", ".r#g..", "......")) << from << " to " << to;
        }
}

TEST(Blits, LeaveOutWhatLiesBesideTheSource)
{
    const motley source;
    canvas paper(8, 4);
    paper.dc.FillSolidRect({0, 0, 8, 4}, green);
    paper.dc.BitBlt({0, 0, 8, 4}, source.dc, {-2, -1}, SRCCOPY);
    EXPECT_THAT(paper.rows(), ElementsAre("gggggggg", "ggrgb#gg", "gg.r#ggg", "ggbb.rgg"));
}

TEST(Blits, MayMoveWithinOnePicture)
{
    for (const CPoint by : {CPoint{1, 1}, CPoint{-1, -1}, CPoint{2, 0}, CPoint{0, 1}}) {
        motley paper;
        const motley before;
        paper.dc.BitBlt({by.x, by.y, by.x + 4, by.y + 3}, paper.dc, {0, 0}, SRCCOPY);
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 4; ++x) {
                const CPoint from{x - by.x, y - by.y};
                const bool isMoved = CRect(0, 0, 4, 3).PtInRect(from);
                EXPECT_EQ(paper.at(x, y), isMoved ? before.at(from.x, from.y) : before.at(x, y)) << x << ' ' << y;
            }
    }
}

struct stretch_case {
    const char* name;
    CRect to, from;
    picture_rows drawn;
};

class NearestStretch : public testing::TestWithParam<stretch_case> {};

TEST_P(NearestStretch, TakesTheSourcePixelInTheMiddle)
{
    const stretch_case& test = GetParam();
    const motley source;
    canvas paper(static_cast<int>(test.drawn[0].size()), static_cast<int>(test.drawn.size()));
    paper.dc.StretchBlt(test.to, source.dc, test.from, SRCCOPY);
    EXPECT_EQ(paper.rows(), test.drawn);
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, NearestStretch,
    testing::Values(stretch_case{"Doubled", {0, 0, 4, 4}, {0, 0, 2, 2}, {"rrgg", "rrgg", "..rr", "..rr"}},
                    // Middles 2/3, 2, 10/3 of four columns.
                    stretch_case{"Shrunk", {0, 0, 3, 1}, {0, 0, 4, 1}, {"rb#"}},
                    stretch_case{"FlippedAcross", {4, 0, 0, 3}, {0, 0, 4, 3}, {"#bgr", "g#r.", "r.bb"}},
                    stretch_case{"FlippedDown", {0, 3, 4, 0}, {0, 0, 4, 3}, {"bb.r", ".r#g", "rgb#"}},
                    stretch_case{"PartlySeen", {-4, -2, 4, 4}, {0, 0, 4, 3}, {"##gg", "##gg", "..rr", "..rr"}},
                    stretch_case{"ImmenseAndFlipped",
                                 {100000002, -99999999, -99999998, 100000001},
                                 {0, 0, 2, 2},
                                 {"ggrr", "rr..", "rr.."}}),
    [](const auto& test) { return test.param.name; });

TEST(Stretches, FollowAFlippedMapping)
{
    const motley source;
    canvas paper(4, 3);
    paper.dc.SetMapMode(MM_ANISOTROPIC);
    paper.dc.SetViewportExt({1, -1});
    paper.dc.SetViewportOrg({0, 3});
    paper.dc.StretchBlt({0, 0, 4, 3}, source.dc, {0, 0, 4, 3}, SRCCOPY);
    EXPECT_THAT(paper.rows(), ElementsAre("bb.r", ".r#g", "rgb#")) << "its upper edge lies at the lower one";
}

TEST(Stretches, FollowATurnedWorld)
{
    const motley source;
    canvas paper(5, 5);
    // A quarter to the right about (4, 0): x' = 4 - y, y' = x.
    paper.dc.SetWorldTransform({.m11 = 0.0, .m12 = 1.0, .m21 = -1.0, .m22 = 0.0, .dx = 4.0, .dy = 0.0});
    paper.dc.StretchBlt({0, 0, 4, 3}, source.dc, {0, 0, 4, 3}, SRCCOPY);
    EXPECT_THAT(paper.rows(), ElementsAre(".b.r.", ".brg.", "..#b.", ".rg#.", "....."));
}

/// A bitmap whose pixels are grey levels.
struct greys : canvas {
    greys(int width, int height, const std::vector<int>& levels, int bits = 24) : canvas(width, height, bits)
    {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const auto level = static_cast<colorEntry>(levels[static_cast<std::size_t>(y * width + x)]);
                dc.SetPixel({x, y}, level | level << 8 | level << 16);
            }
    }
};

std::vector<int> levels_of(const canvas& paper)
{
    std::vector<int> out;
    for (int y = 0; y < paper.bitmap.header.biHeight; ++y)
        for (int x = 0; x < paper.bitmap.header.biWidth; ++x) out.push_back(static_cast<int>(paper.at(x, y) & 255));
    return out;
}

/// Of a whole picture onto a canvas of this size; turned about when `isFlipped`.
std::vector<int> averaged(const canvas& source, CSize size, bool isFlipped = false)
{
    canvas paper(size.cx, size.cy);
    paper.dc.SetStretchBltMode(HALFTONE);
    const CRect to = isFlipped ? CRect(size.cx, 0, 0, size.cy) : CRect({}, size);
    paper.dc.StretchBlt(to, source.dc, {0, 0, source.bitmap.header.biWidth, source.bitmap.header.biHeight}, SRCCOPY);
    return levels_of(paper);
}

TEST(AveragingStretch, GivesTheMeanOfWhatAPixelCovers)
{
    const greys source(4, 2, {0, 10, 20, 31, 40, 50, 60, 70}, 32);
    EXPECT_THAT(averaged(source, {2, 1}), ElementsAre(25, 45)) << "100 / 4, and 181 / 4 = 45.25";
    // Three columns onto two: a whole one and half of the middle one each.
    const greys odd(3, 1, {0, 90, 255});
    EXPECT_THAT(averaged(odd, {2, 1}), ElementsAre(30, 200));
    EXPECT_THAT(averaged(odd, {2, 1}, true), ElementsAre(200, 30)) << "flipped";
}

TEST(AveragingStretch, BlendsBetweenNeighboursWhenItEnlarges)
{
    // Middles at 1/4, 3/4, 5/4 and 7/4 of pixels whose own middles lie at 1/2 and 3/2.
    EXPECT_THAT(averaged(greys(2, 1, {0, 100}), {4, 1}), ElementsAre(0, 25, 75, 100));
}

TEST(AveragingStretch, KeepsTheMeanOfLargePicturesAndEveryFlatOne)
{
    const int width = 400, height = 300;
    std::vector<int> levels;
    for (int i = 0; i < width * height; ++i) levels.push_back(i * 7919 % 256);
    const greys source(width, height, levels);
    const greys flat(width, height, std::vector<int>(levels.size(), 173));
    for (const CSize size : {CSize{7, 5}, CSize{133, 299}, CSize{400, 31}, CSize{1, 1}, CSize{500, 20}})
        EXPECT_THAT(averaged(flat, size), testing::Each(173)) << size.cx;
    // Blocks of 8 by 10, counted one by one.
    const std::vector<int> means = averaged(source, {50, 30});
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 50; ++x) {
            int sum = 0;
            for (int v = 0; v < 10; ++v)
                for (int u = 0; u < 8; ++u) sum += levels[static_cast<std::size_t>((y * 10 + v) * width + x * 8 + u)];
            ASSERT_EQ(means[static_cast<std::size_t>(y * 50 + x)], (sum + 40) / 80) << x << ' ' << y;
        }
}

TEST(Pictures, OfOtherDepthsAreNeitherDrawnNorDrawnInto)
{
    std::vector<std::byte> bits(64);
    CBitmap eight{.header = {.biWidth = 4, .biHeight = 4, .biBitCount = 8}, .bits = bits.data()};
    canvas paper(4, 4);
    paper.dc.StretchDIBits({0, 0, 4, 4}, eight, {0, 0, 4, 4}, SRCCOPY);
    EXPECT_TRUE(paper.touched().isEmpty());
    paint::CQtDC dc({96, 96});
    dc.FillSolidRect({0, 0, 4, 4}, white);
    dc.SelectObject(&eight);
    dc.FillSolidRect({0, 0, 4, 4}, white);
    EXPECT_THAT(bits, testing::Each(std::byte{0}));
}

} // namespace
