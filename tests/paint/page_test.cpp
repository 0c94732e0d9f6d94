#include "canvas.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QPageSize>
#include <QPdfWriter>
#include <zlib.h>

namespace {

constexpr int dotsAnInch = 72; // dots are points

/// All streams of a document, inflated.
std::string streams_of(const QByteArray& pdf)
{
    std::string out;
    for (qsizetype at = pdf.indexOf("stream\n"); at >= 0; at = pdf.indexOf("stream\n", at)) {
        at += 7;
        const qsizetype end = pdf.indexOf("endstream", at);
        if (end < 0) break;
        std::vector<unsigned char> plain(1 << 20);
        uLongf length = static_cast<uLongf>(plain.size());
        const auto* const packed = reinterpret_cast<const unsigned char*>(pdf.constData() + at);
        if (uncompress(plain.data(), &length, packed, static_cast<uLong>(end - at)) == Z_OK)
            out.append(reinterpret_cast<const char*>(plain.data()), length).append("\n----\n");
        at = end + 9;
    }
    return out;
}

bool holds(const std::string& content, const std::string& part) { return content.find(part) != std::string::npos; }
bool holds(const QByteArray& pdf, const std::string& part) { return holds(pdf.toStdString(), part); }

QByteArray document(const std::function<void(paint::CQtDC&)>& paint)
{
    QByteArray pdf;
    QBuffer buffer(&pdf);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(dotsAnInch);
    writer.setPageSize(QPageSize(QSizeF(200, 100), QPageSize::Point));
    writer.setPageMargins({});
    {
        paint::CQtDC dc(writer);
        EXPECT_TRUE(dc.isOk());
        EXPECT_TRUE(dc.IsPrinting());
        EXPECT_EQ(dc.deviceSize(), (CSize{200, 100}));
        EXPECT_EQ(dc.dotsPerInch(), (CSize{dotsAnInch, dotsAnInch}));
        paint(dc);
    }
    return pdf;
}

TEST(Pages, HoldTextAsTextLinesAsLinesAndPicturesWithoutLoss)
{
    canvas picture(40, 30);
    picture.dc.FillSolidRect({0, 0, 20, 30}, red);
    const QByteArray pdf = document([&](paint::CQtDC& dc) {
        dc.SetBkMode(TRANSPARENT);
        dc.TextOut(10, 10, L"Roughness");
        dc.SelectObject(CPen::dotted(black));
        dc.MoveTo(10, 50);
        dc.LineTo(150, 50);
        dc.StretchDIBits({20, 60, 180, 90}, picture.bitmap, {0, 0, 40, 30}, SRCCOPY);
    });
    const std::string content = streams_of(pdf);
    EXPECT_TRUE(holds(content, "BT")) << "a run of text";
    EXPECT_TRUE(holds(content, "[3 3 ]")) << "dashes in widths of the pen";
    EXPECT_TRUE(holds(pdf, "/Width 40\n/Height 30")) << "as many pixels as the picture has";
    EXPECT_FALSE(holds(pdf, "/DCTDecode"));
    // The picture's upper row: 20 pixels of red, 20 of white.
    std::string row;
    for (int i = 0; i < 20; ++i) row += "\xFF" + std::string(2, '\0');
    EXPECT_TRUE(holds(content, row + std::string(60, '\xFF')));
}

TEST(Pages, CarryOutOperationsOnWhatIsThereByAPicture)
{
    const QByteArray pdf = document([&](paint::CQtDC& dc) {
        dc.FillSolidRect({20, 20, 60, 60}, 0x000080);
        dc.SelectObject(CBrush::solid(0x808080));
        dc.PatBlt({20, 20, 28, 24}, PATINVERT);
        dc.SetROP2(R2_XORPEN);
        dc.SelectObject(CPen::solid(1, white));
        dc.MoveTo(100, 50);
        dc.LineTo(104, 50);
    });
    const std::string content = streams_of(pdf);
    // Dark red under grey becomes 00 80 80; white paper under a white line black. Rows lie one after the other.
    std::string block;
    for (int i = 0; i < 8 * 4; ++i) block += std::string(1, '\0') + "\x80\x80";
    EXPECT_TRUE(holds(content, block));
    EXPECT_TRUE(holds(pdf, "/SMask")) << "pixels that stay are clear";
}

TEST(Pages, BeginEmptyOneAfterTheOther)
{
    const QByteArray pdf = document([&](paint::CQtDC& dc) {
        dc.FillSolidRect({0, 0, 200, 100}, black);
        EXPECT_TRUE(dc.newPage());
        dc.InvertRect({0, 0, 10, 10});
    });
    EXPECT_TRUE(holds(pdf, "/Count 2"));
    // Inverted white is black; black left over from the page before would have become white.
    EXPECT_TRUE(holds(streams_of(pdf), "----\n" + std::string(300, '\0') + "\n----"));
    canvas memory(2, 2);
    EXPECT_FALSE(memory.dc.newPage());
}

TEST(Pages, ThatCannotBeWrittenTakeDrawingInSilence)
{
    QPdfWriter writer(QStringLiteral("/no such folder/page.pdf"));
    paint::CQtDC dc(writer);
    EXPECT_FALSE(dc.isOk());
    dc.FillSolidRect({0, 0, 10, 10}, black);
    dc.TextOut(0, 0, L"nothing");
    EXPECT_GT(dc.GetTextExtent(L"nothing").cx, 0);
}

} // namespace
