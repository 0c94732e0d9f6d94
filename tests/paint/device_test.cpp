#include "canvas.h"

#include <gtest/gtest.h>

#include <QImage>

namespace {

/// Something of everything.
void paint_all(CDC& dc, const CBitmap& picture)
{
    dc.FillSolidRect({0, 0, 100, 80}, 0xF0E0D0);
    dc.SelectObject(CBrush::hatched(HS_DIAGCROSS, blue));
    dc.SelectObject(CPen::solid(1, red));
    dc.Rectangle({5, 5, 40, 30});
    dc.SelectObject(CPen{.style = PS_DASHDOT, .width = 1, .color = black, .pattern = {}});
    dc.Ellipse({35, 10, 80, 60});
    dc.SelectObject(CPen{.style = PS_GEOMETRIC | PS_JOIN_MITER, .width = 4, .color = green, .pattern = {}});
    dc.Polyline(std::vector<CPoint>{{3, 70}, {50, 33}, {90, 75}});
    dc.SetStretchBltMode(HALFTONE);
    dc.StretchDIBits({60, 3, 97, 30}, picture, {0, 0, 8, 8}, SRCINVERT);
    const CRgn clip = CRgn::ellipse(CRect(10, 30, 90, 79));
    dc.SelectClipRgn(&clip);
    dc.SetROP2(R2_XORPEN);
    dc.SelectObject(CBrush::solid(0x123456));
    dc.Polygon(std::vector<CPoint>{{0, 40}, {99, 50}, {20, 79}});
    dc.SelectObject(CFont{.height = -20, .weight = 700, .italic = true, .face = {}});
    dc.SetBkMode(TRANSPARENT);
    dc.TextOut(5, 40, L"Overlay");
}

struct chequered : canvas {
    chequered() : canvas(8, 8, 32)
    {
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x) dc.SetPixel({x, y}, (x + y) % 2 != 0 ? 0x20C0A0 : 0xFF4010);
    }
};

colorEntry color_of(QRgb pixel)
{
    return static_cast<colorEntry>(qRed(pixel) | qGreen(pixel) << 8 | qBlue(pixel) << 16);
}

/// What a white window of this size and density shows of a drawing.
template <class Draw>
QImage shown(QSize pixels, double ratio, const Draw& draw)
{
    QImage image(pixels, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    {
        paint::CQtDC dc(image);
        draw(dc);
    }
    return image;
}

TEST(Windows, AndMemoryShowTheSamePixels)
{
    const chequered picture;
    canvas memory(100, 80), deep(100, 80, 32);
    paint_all(memory.dc, picture.bitmap);
    paint_all(deep.dc, picture.bitmap);
    const QImage image = shown({100, 80}, 1.0, [&](paint::CQtDC& dc) {
        EXPECT_EQ(dc.deviceSize(), (CSize{100, 80}));
        EXPECT_FALSE(dc.IsPrinting());
        paint_all(dc, picture.bitmap);
    });
    int different = 0;
    for (int y = 0; y < 80; ++y)
        for (int x = 0; x < 100; ++x) {
            EXPECT_EQ(memory.at(x, y), deep.at(x, y)) << x << ' ' << y;
            const colorEntry a = memory.at(x, y), b = color_of(image.pixel(x, y));
            // Blended edges of letters may round the other way.
            for (const int shift : {0, 8, 16})
                EXPECT_NEAR(int(a >> shift & 255), int(b >> shift & 255), 1) << x << ' ' << y;
            different += a != b;
        }
    EXPECT_LT(different, 100);
}

TEST(DenseScreens, KeepLogicalUnitsAndCrispData)
{
    const chequered picture;
    const auto draw = [&](CDC& dc) {
        dc.IntersectClipRect({0, 0, 20, 15});
        dc.StretchDIBits({1, 1, 9, 9}, picture.bitmap, {0, 0, 8, 8}, SRCCOPY);
        dc.MoveTo(12, 2);
        dc.LineTo(17, 2);
        dc.LineTo(17, 6);
        dc.SelectObject(CBrush::null());
        dc.Rectangle({11, 8, 15, 20});
        dc.SetPixel({19, 0}, red);
    };
    canvas expected(20, 16);
    draw(expected.dc);
    for (const int ratio : {2, 3}) {
        const QImage image = shown({20 * ratio, 16 * ratio}, ratio, [&](paint::CQtDC& dc) {
            EXPECT_EQ(dc.deviceSize(), (CSize{20, 16}));
            EXPECT_EQ(dc.GetClipBox(), CRect(0, 0, 20, 16));
            draw(dc);
        });
        for (int y = 0; y < 16 * ratio; ++y)
            for (int x = 0; x < 20 * ratio; ++x)
                EXPECT_EQ(color_of(image.pixel(x, y)), expected.at(x / ratio, y / ratio))
                    << x << ' ' << y << " at " << ratio;
    }
}

TEST(DenseScreens, DrawSlantedLinesAndShapesInTheirFullResolution)
{
    const QImage image = shown({40, 40}, 2.0, [](CDC& dc) {
        dc.SelectObject(CPen::null());
        dc.SelectObject(CBrush::solid(black));
        dc.Ellipse({2, 3, 19, 18});
    });
    const CRgn expected = CRgn::ellipse(CRect(4, 6, 38, 36));
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x)
            EXPECT_EQ(color_of(image.pixel(x, y)) == black, expected.PtInRegion({x, y})) << x << ' ' << y;
}

TEST(FractionsOfPixels, LeaveNoSeams)
{
    const QImage image = shown({50, 50}, 1.25, [](paint::CQtDC& dc) {
        ASSERT_EQ(dc.deviceSize(), (CSize{40, 40}));
        dc.SetROP2(R2_NOT);
        for (int y = 0; y < 40; y += 3)
            for (int x = 0; x < 40; ++x) dc.InvertRect({x, y, x + 1, y + 3});
    });
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 50; ++x) EXPECT_EQ(color_of(image.pixel(x, y)), black) << x << ' ' << y;
}

} // namespace
