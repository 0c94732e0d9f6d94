#include "canvas.h"

#include <gtest/gtest.h>

#include <QImage>

namespace {

/// What each mode makes of pen or brush P and destination D.
struct mode_case {
    const char* name;
    int mode;
    std::function<std::uint32_t(std::uint32_t p, std::uint32_t d)> result;
};

using u32 = std::uint32_t;

const std::vector<mode_case> modes = {
    {"Black", R2_BLACK, [](u32, u32) { return 0u; }},
    {"NotMergePen", R2_NOTMERGEPEN, [](u32 p, u32 d) { return ~(d | p); }},
    {"MaskNotPen", R2_MASKNOTPEN, [](u32 p, u32 d) { return d & ~p; }},
    {"NotCopyPen", R2_NOTCOPYPEN, [](u32 p, u32) { return ~p; }},
    {"MaskPenNot", R2_MASKPENNOT, [](u32 p, u32 d) { return p & ~d; }},
    {"Not", R2_NOT, [](u32, u32 d) { return ~d; }},
    {"XorPen", R2_XORPEN, [](u32 p, u32 d) { return p ^ d; }},
    {"NotMaskPen", R2_NOTMASKPEN, [](u32 p, u32 d) { return ~(d & p); }},
    {"MaskPen", R2_MASKPEN, [](u32 p, u32 d) { return p & d; }},
    {"NotXorPen", R2_NOTXORPEN, [](u32 p, u32 d) { return ~(d ^ p); }},
    {"Nop", R2_NOP, [](u32, u32 d) { return d; }},
    {"MergeNotPen", R2_MERGENOTPEN, [](u32 p, u32 d) { return d | ~p; }},
    {"CopyPen", R2_COPYPEN, [](u32 p, u32) { return p; }},
    {"MergePenNot", R2_MERGEPENNOT, [](u32 p, u32 d) { return p | ~d; }},
    {"MergePen", R2_MERGEPEN, [](u32 p, u32 d) { return p | d; }},
    {"White", R2_WHITE, [](u32, u32) { return ~0u; }},
};

constexpr colorEntry below = 0x0F3355, tool = 0x3C5AC3; // bits of both values meet in each of their four ways

class RasterModes : public testing::TestWithParam<mode_case> {};

TEST_P(RasterModes, MeetWhatIsThereBitByBit)
{
    const colorEntry expected = GetParam().result(tool, below) & 0xFFFFFFu;
    const auto scene = [](CDC& dc) {
        dc.FillSolidRect({0, 0, 20, 20}, below);
        dc.SetROP2(GetParam().mode);
        dc.SelectObject(CPen::solid(1, tool));
        dc.SelectObject(CBrush::solid(tool));
        dc.Polyline(std::vector<CPoint>{{0, 1}, {20, 1}});
        dc.SelectObject(CPen::null());
        dc.Rectangle({2, 4, 8, 8});
        dc.Ellipse({10, 4, 18, 12});
        dc.Polygon(std::vector<CPoint>{{2, 10}, {8, 10}, {8, 18}, {2, 18}});
    };
    const CPoint inside[] = {{5, 1}, {5, 6}, {14, 8}, {5, 14}};
    for (const int bits : {24, 32}) {
        canvas memory(20, 20, bits);
        scene(memory.dc);
        for (const CPoint at : inside) EXPECT_EQ(memory.at(at.x, at.y), expected) << bits << " bits at " << at.y;
        EXPECT_EQ(memory.at(0, 19), below);
    }
    for (const QImage::Format format : {QImage::Format_RGB32, QImage::Format_ARGB32_Premultiplied}) {
        QImage image(20, 20, format);
        image.fill(Qt::white);
        {
            paint::CQtDC dc(image);
            scene(dc);
        }
        for (const CPoint at : inside) {
            const QRgb pixel = image.pixel(at.x, at.y);
            EXPECT_EQ(CRect(qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)),
                      CRect(int(expected & 255), int(expected >> 8 & 255), int(expected >> 16), 255))
                << "row " << at.y;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, RasterModes, testing::ValuesIn(modes), [](const auto& test) { return test.param.name; });

/// What each operation makes of a brush P, the source S and the destination D.
struct blit_case {
    const char* name;
    raster_op3 operation;
    std::function<u32(u32 p, u32 s, u32 d)> result;
};

const std::vector<blit_case> operations = {
    {"Blackness", BLACKNESS, [](u32, u32, u32) { return 0u; }},
    {"NotSource", NOTSRCCOPY, [](u32, u32 s, u32) { return ~s; }},
    {"SourceErase", SRCERASE, [](u32, u32 s, u32 d) { return s & ~d; }},
    {"Invert", DSTINVERT, [](u32, u32, u32 d) { return ~d; }},
    {"BrushInvert", PATINVERT, [](u32 p, u32, u32 d) { return p ^ d; }},
    {"SourceInvert", SRCINVERT, [](u32, u32 s, u32 d) { return s ^ d; }},
    {"SourceAnd", SRCAND, [](u32, u32 s, u32 d) { return s & d; }},
    {"SourceCopy", SRCCOPY, [](u32, u32 s, u32) { return s; }},
    {"SourcePaint", SRCPAINT, [](u32, u32 s, u32 d) { return s | d; }},
    {"BrushCopy", PATCOPY, [](u32 p, u32, u32) { return p; }},
    {"Whiteness", WHITENESS, [](u32, u32, u32) { return ~0u; }},
};

class RasterOperations : public testing::TestWithParam<blit_case> {};

TEST_P(RasterOperations, MeetWhatIsThereBitByBit)
{
    constexpr colorEntry brush = 0x6699F0;
    canvas source(4, 4, 32);
    source.dc.FillSolidRect({0, 0, 4, 4}, tool);
    const auto scene = [&](CDC& dc) {
        dc.FillSolidRect({0, 0, 12, 4}, below);
        dc.SelectObject(CBrush::solid(brush));
        dc.BitBlt({0, 0, 4, 4}, source.dc, {0, 0}, GetParam().operation);
        dc.PatBlt({4, 0, 8, 4}, GetParam().operation);
    };
    const colorEntry blitted = GetParam().result(brush, tool, below) & 0xFFFFFFu;
    // Without pixels the source counts as black.
    const colorEntry filled = GetParam().result(brush, 0, below) & 0xFFFFFFu;
    canvas memory(12, 4);
    scene(memory.dc);
    EXPECT_EQ(memory.at(2, 2), blitted);
    EXPECT_EQ(memory.at(6, 2), filled);
    EXPECT_EQ(memory.at(10, 2), below);
    QImage image(12, 4, QImage::Format_RGB32);
    {
        paint::CQtDC dc(image);
        scene(dc);
    }
    EXPECT_EQ(image.pixelColor(2, 2).rgb() & 0xFFFFFFu,
              (blitted & 255) << 16 | (blitted & 0xFF00) | (blitted >> 16 & 255));
    EXPECT_EQ(image.pixelColor(6, 2).rgb() & 0xFFFFFFu,
              (filled & 255) << 16 | (filled & 0xFF00) | (filled >> 16 & 255));
}

INSTANTIATE_TEST_SUITE_P(All, RasterOperations, testing::ValuesIn(operations),
                         [](const auto& test) { return test.param.name; });

TEST(RasterModes, OfOutlinesInvertAHollowShapeOnce)
{
    canvas paper(20, 20);
    paper.dc.SetROP2(R2_NOT);
    paper.dc.SelectObject(CBrush::null());
    paper.dc.Ellipse({1, 1, 19, 12});
    paper.dc.Rectangle({0, 13, 19, 20});
    EXPECT_EQ(paper.at(9, 6), white) << "nothing inside";
    EXPECT_EQ(paper.at(9, 13), black);
    paper.dc.Ellipse({1, 1, 19, 12});
    paper.dc.Rectangle({0, 13, 19, 20});
    EXPECT_TRUE(paper.touched().isEmpty());
}

TEST(MemoryPixels, KeepTheirFourthByte)
{
    canvas paper(3, 1, 32);
    std::memset(paper.memory.data(), 0x5A, paper.memory.size());
    paper.dc.FillSolidRect({0, 0, 1, 1}, red);
    paper.dc.InvertRect({1, 0, 2, 1});
    paper.dc.BitBlt({2, 0, 3, 1}, paper.dc, {0, 0}, SRCCOPY);
    for (const std::size_t x : {0u, 1u, 2u}) EXPECT_EQ(paper.memory[4 * x + 3], std::byte{0x5A});
    EXPECT_EQ(paper.at(2, 0), red);
    EXPECT_EQ(paper.at(1, 0), 0xA5A5A5u);
}

} // namespace
