#include "host/QtDC.h"

#include <gtest/gtest.h>

namespace {

/// A surface on 32-bit memory, white.
class MemoryDC {
public:
    MemoryDC(int width, int height) : pixels(static_cast<std::size_t>(width * height * 4), std::byte{0xff})
    {
        bitmap.header.biWidth = width;
        bitmap.header.biHeight = height;
        bitmap.header.biBitCount = 32;
        bitmap.bits = pixels.data();
        dc.SelectObject(&bitmap);
    }
    /// Where a pixel is not white, from the upper left corner, one text a row.
    std::vector<std::string> picture() const
    {
        std::vector<std::string> rows;
        for (int y = 0; y < bitmap.header.biHeight; ++y) {
            std::string row;
            for (int x = 0; x < bitmap.header.biWidth; ++x) row += dc.GetPixel({x, y}) == 0xFFFFFF ? '.' : '#';
            rows.push_back(row);
        }
        return rows;
    }

    std::vector<std::byte> pixels;
    CBitmap bitmap{};
    CQtDC dc{CSize{96, 96}};
};

using rows = std::vector<std::string>;

TEST(QtDC, LinesLeaveOutTheirLastPixel)
{
    MemoryDC memory(6, 4);
    memory.dc.MoveTo(0, 0);
    memory.dc.LineTo(5, 0);
    memory.dc.MoveTo(0, 1);
    memory.dc.LineTo(0, 3);
    memory.dc.MoveTo(5, 3);
    memory.dc.LineTo(2, 3);
    EXPECT_EQ(memory.picture(), (rows{"#####.", "#.....", "#.....", "...###"}));
}

TEST(QtDC, ShapesStayInsideRightAndBottom)
{
    MemoryDC memory(7, 5);
    memory.dc.SelectObject(CBrush::null());
    memory.dc.Rectangle({1, 1, 6, 4});
    EXPECT_EQ(memory.picture(), (rows{".......", ".#####.", ".#...#.", ".#####.", "......."}));
    memory.dc.FillSolidRect({2, 2, 5, 3}, 0);
    EXPECT_EQ(memory.picture()[2], ".#####.");
    memory.dc.FillSolidRect({0, 0, 7, 5}, 0xFFFFFF);
    memory.dc.FillRgn(CRgn::polygon(std::vector<CPoint>{{0, 0}, {4, 0}, {0, 4}}, ALTERNATE), CBrush::solid(0xFF));
    EXPECT_EQ(memory.picture(), (rows{"###....", "##.....", "#......", ".......", "......."}))
        << "centres left of the diagonal";
}

TEST(QtDC, RasterOperationsFollowTheirTruthTables)
{
    // Bit by bit: destination 0011, pen 0101 in the red byte.
    const std::pair<int, unsigned> expected[] = {
        {R2_BLACK, 0x0},      {R2_NOTMERGEPEN, 0x8}, {R2_MASKNOTPEN, 0x2}, {R2_NOTCOPYPEN, 0xA},
        {R2_MASKPENNOT, 0x4}, {R2_NOT, 0xC},         {R2_XORPEN, 0x6},     {R2_NOTMASKPEN, 0xE},
        {R2_MASKPEN, 0x1},    {R2_NOTXORPEN, 0x9},   {R2_NOP, 0x3},        {R2_MERGENOTPEN, 0xB},
        {R2_COPYPEN, 0x5},    {R2_MERGEPENNOT, 0xD}, {R2_MERGEPEN, 0x7},   {R2_WHITE, 0xF},
    };
    for (const auto& [operation, result] : expected) {
        MemoryDC memory(3, 1);
        memory.dc.FillSolidRect({0, 0, 3, 1}, 0x3);
        memory.dc.SetROP2(operation);
        memory.dc.SelectObject(CPen::solid(1, 0x5));
        memory.dc.MoveTo(0, 0);
        memory.dc.LineTo(2, 0);
        EXPECT_EQ(memory.dc.GetPixel({0, 0}) & 0xF, result) << operation;
        EXPECT_EQ(memory.dc.GetPixel({2, 0}), 0x3u);
    }
}

TEST(QtDC, BlitsKeepUpAndDown)
{
    MemoryDC source(2, 2), target(4, 4);
    source.dc.SetPixel({0, 0}, 0x0000FF); // upper left red
    source.dc.SetPixel({1, 1}, 0xFF0000); // lower right blue
    target.dc.StretchBlt({0, 0, 4, 4}, source.dc, {0, 0, 2, 2}, SRCCOPY);
    EXPECT_EQ(target.dc.GetPixel({0, 0}), 0x0000FFu);
    EXPECT_EQ(target.dc.GetPixel({1, 1}), 0x0000FFu);
    EXPECT_EQ(target.dc.GetPixel({2, 2}), 0xFF0000u);
    EXPECT_EQ(target.dc.GetPixel({3, 0}), 0xFFFFFFu);
    target.dc.BitBlt({0, 2, 1, 3}, source.dc, {1, 1}, SRCCOPY);
    EXPECT_EQ(target.dc.GetPixel({0, 2}), 0xFF0000u);
    QImage window(2, 2, QImage::Format_RGB32);
    {
        CQtDC dc(&window, {2, 2}, {96, 96});
        dc.BitBlt({0, 0, 2, 2}, source.dc, {0, 0}, SRCCOPY);
    }
    EXPECT_EQ(window.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(window.pixelColor(1, 1), QColor(Qt::blue));
}

TEST(QtDC, ClipAndMappingHold)
{
    MemoryDC memory(8, 4);
    memory.dc.IntersectClipRect({1, 1, 4, 3});
    memory.dc.FillSolidRect({0, 0, 8, 4}, 0);
    EXPECT_EQ(memory.picture(), (rows{"........", ".###....", ".###....", "........"}));
    memory.dc.SelectClipRgn(nullptr);
    memory.dc.SetMapMode(MM_ANISOTROPIC);
    memory.dc.SetWindowExt({4, 4});
    memory.dc.SetViewportExt({8, 4});
    memory.dc.FillSolidRect({3, 0, 4, 1}, 0);
    memory.dc.SetMapMode(MM_TEXT); // to be read in pixels
    EXPECT_EQ(memory.picture()[0], "......##");
}

TEST(QtDC, TextStandsUprightInsideItsBox)
{
    for (const std::uint32_t align : {TA_LEFT | TA_TOP, TA_RIGHT | TA_BOTTOM, TA_CENTER | TA_BASELINE}) {
        MemoryDC memory(120, 60);
        memory.dc.SetBkMode(TRANSPARENT);
        memory.dc.SelectObject(CFont{.height = -20, .face = "Liberation Sans"});
        memory.dc.SetTextAlign(align);
        const CSize extent = memory.dc.GetTextExtent(L"L");
        memory.dc.TextOut(60, 30, L"L");
        CRect ink;
        const rows picture = memory.picture();
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 120; ++x)
                if (picture[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#')
                    ink.UnionRect(ink, CRect({x, y}, CSize{1, 1}));
        ASSERT_FALSE(ink.IsRectEmpty());
        const int left = align & TA_RIGHT && !(align & 4) ? 60 - extent.cx : align & 4 ? 60 - extent.cx / 2 : 60;
        EXPECT_GE(ink.left, left - 1);
        EXPECT_LE(ink.right, left + extent.cx + 1);
        // The foot of the letter lies at the bottom of its ink: most of the last row is set, little of the first.
        const auto count = [&](int y) { return std::ranges::count(picture[static_cast<std::size_t>(y)], '#'); };
        EXPECT_GT(count(ink.bottom - 1), 2 * count(ink.top)) << "upright";
    }
}

} // namespace
