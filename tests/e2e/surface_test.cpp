// What a user selects, draws and measures on a recording of an instrument, judged by what stands on the screen, on the
// clipboard and in the files.
#include "e2e/desktop.h"
#include "e2e/screen.h"
#include "support/temporary_folder.h"

#include <QClipboard>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

using namespace screen;

bool is_hatched(QRgb pixel) { return qRed(pixel) == 0 && qGreen(pixel) == 200 && qBlue(pixel) == 100; }
bool is_frame_red(QRgb pixel) { return pixel == qRgb(255, 0, 0); }
bool is_end_green(QRgb pixel) { return pixel == qRgb(0, 255, 0); }
bool is_black(QRgb pixel) { return pixel == qRgb(0, 0, 0); }
bool is_white(QRgb pixel) { return pixel == qRgb(255, 255, 255); }

/// The picture of the active frame: 512 by 512 pixels, one for each sample.
QRect picture(const QImage& shown)
{
    const QRect above = caption(shown);
    const QRect box = box_of(shown, {above.left() + 20, above.bottom() + 3, 570, 530}, is_brown);
    return {box.left(), box.top(), 512, 512};
}

/// A box of text, white on black, somewhere inside.
bool has_label(const QImage& shown, const QRect& part)
{
    const QRect label = box_of(shown, part.intersected(shown.rect()), is_black);
    return label.width() > 30 && label.height() > 8 && share_of(shown, label, is_black) > 0.4 &&
           share_of(shown, label, is_white) > 0.02;
}

QString text_of(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

class SurfaceOnScreen : public testing::Test {
protected:
    /// 512 by 512 samples on 500 by 500 nm, four channels.
    static constexpr const char* recording = VLDV_SAMPLES "/nanoscope/di-1.di";

    SurfaceOnScreen() { QFile::copy(recording, file("a.di")); }
    QString file(const char* name) { return QString::fromStdString((folder / name).string()); }
    QString home() { return QString::fromStdString(folder.path.string()); }
    /// Waits for the picture and learns where it is.
    bool opens(const desktop& user, const char* name)
    {
        user.moveTo({1000, 850});
        const bool isThere = user.sees(name, [](const QImage& shown) {
            return caption(shown).width() > 500 && share_of(shown, inside(shown), is_brown) > 0.5;
        });
        place = picture(user.look()).topLeft();
        user.takeFocus();
        return isThere;
    }
    QPoint at(int x, int y) const { return place + QPoint(x, y); }
    QRect part(int left, int top, int right, int bottom) const { return {at(left, top), at(right - 1, bottom - 1)}; }
    void choose(const desktop& user, const char* popup, std::initializer_list<const char*> keys) const
    {
        user.moveTo({1000, 850});
        user.press(popup);
        for (const char* key : keys) user.press(key);
    }

    temporary_folder folder;
    QPoint place;
};

#define SKIP_WITHOUT_SAMPLES()                                                                                         \
    if (!QFileInfo::exists(recording)) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES

TEST_F(SurfaceOnScreen, RegionsAreSelectedAndUsed)
{
    SKIP_WITHOUT_SAMPLES();
    desktop user(home(), {file("a.di")});
    ASSERT_TRUE(opens(user, "s1-recording"));
    const QImage plain = user.look();

    user.drag(at(60, 80), at(210, 180));
    user.drag(at(160, 130), at(310, 330), "ctrl");
    user.drag(at(110, 110), at(180, 160), "alt");
    EXPECT_TRUE(user.sees("s2-rectangles", [this](const QImage& shown) {
        return share_of(shown, part(65, 85, 105, 175), is_hatched) == 0.0 &&
               share_of(shown, part(215, 185, 305, 325), is_hatched) == 0.0 &&
               share_of(shown, part(115, 115, 175, 155), is_hatched) > 0.05 &&
               share_of(shown, part(320, 20, 500, 500), is_hatched) > 0.05;
    })) << "added on, and a hole cut out";

    choose(user, "alt+c", {"g", "s"});
    EXPECT_TRUE(user.sees("s3-region-of-interest", [&](const QImage& shown) {
        const QRect frame = box_of(shown, part(0, 0, 512, 512), is_frame_red);
        return std::abs(frame.left() - at(60, 0).x()) <= 1 && std::abs(frame.right() - at(310, 0).x()) <= 2 &&
               std::abs(frame.top() - at(0, 80).y()) <= 1 && std::abs(frame.bottom() - at(0, 330).y()) <= 2 &&
               shown.copy(part(215, 185, 305, 325)) != plain.copy(part(215, 185, 305, 325));
    })) << "framed, and its range has all colours";
    choose(user, "alt+c", {"g", "c"});

    choose(user, "alt+c", {"e", "Return"});
    user.drag(at(100, 100), at(400, 300));
    EXPECT_TRUE(user.sees("s4-ellipse", [this](const QImage& shown) {
        return share_of(shown, part(102, 102, 120, 112), is_hatched) > 0.05 &&
               share_of(shown, part(150, 150, 350, 250), is_hatched) == 0.0;
    }));
    user.press("ctrl+shift+i");
    EXPECT_TRUE(user.sees("s5-inverse", [this](const QImage& shown) {
        return share_of(shown, part(102, 102, 120, 112), is_hatched) == 0.0 &&
               share_of(shown, part(150, 150, 350, 250), is_hatched) > 0.05;
    }));

    choose(user, "alt+c", {"i", "Return"});
    user.drag(at(20, 395), at(16, 392)); // on a bright hill at the left edge
    EXPECT_TRUE(user.sees("s6-isoline", [this](const QImage& shown) {
        return share_of(shown, part(200, 20, 500, 500), is_hatched) > 0.05 &&
               share_of(shown, part(8, 372, 14, 388), is_hatched) < 0.05;
    })) << "all but the hill";
}

TEST_F(SurfaceOnScreen, MeasurementsStandOnThePictureOnTheClipboardAndInAFile)
{
    SKIP_WITHOUT_SAMPLES();
    desktop user(home(), {file("a.di")});
    ASSERT_TRUE(opens(user, "s1-recording"));

    choose(user, "alt+c", {"d", "Return"});
    user.drag(at(60, 440), at(360, 240));
    EXPECT_TRUE(
        user.sees("s7-distance", [this](const QImage& shown) { return has_label(shown, part(362, 220, 480, 260)); }));
    user.press("ctrl+d");
    // 300 and 200 samples of 500 / 512 nm.
    const QRegularExpression table("^Distance, nm\tHeight, mV\r?\n *352\\.1\\d*\t *-?[0-9.]+\r?\n$");
    EXPECT_TRUE(user.sees("s8-distance-table", [this](const QImage& shown) {
        return share_of(shown, part(355, 235, 372, 245), is_black) > 0.0 && has_label(shown, part(440, 490, 512, 512));
    })) << "a mark at its end, and how many there are";
    EXPECT_TRUE(table.match(QGuiApplication::clipboard()->text()).hasMatch())
        << QGuiApplication::clipboard()->text().toStdString();

    choose(user, "alt+c", {"a"});
    user.drag(at(160, 330), at(310, 330));
    user.drag(at(160, 330), at(260, 230));
    EXPECT_TRUE(user.sees("s9-angle", [this](const QImage& shown) {
        return has_label(shown, part(140, 325, 260, 350)) &&
               share_of(shown, part(307, 327, 314, 334), is_end_green) > 0.2;
    }));

    choose(user, "alt+c", {"m"});
    for (const QPoint& mark : {at(60, 120), at(160, 180)}) user.click(mark);
    EXPECT_TRUE(
        user.sees("s10-marks", [this](const QImage& shown) { return has_label(shown, part(440, 490, 512, 512)); }));
    choose(user, "alt+c", {"v"});
    for (const QPoint& corner : {at(80, 440), at(160, 380), at(210, 430), at(310, 390)}) user.click(corner);
    EXPECT_TRUE(user.sees("s11-curve", [this](const QImage& shown) {
        return has_label(shown, part(300, 370, 420, 400)) &&
               share_of(shown, part(77, 437, 83, 443), is_frame_red) > 0.4;
    }));

    choose(user, "alt+c", {"t", "s"});
    user.type(file("drawn.dec"));
    user.press("Return");
    user.takeFocus();
    // A pixel a sample, and rows count from the bottom: 511 - y.
    const QString expected = "\\Curve 1: 80,71;160,131;210,81;310,121;\n\\Marks: 360,271;60,391;160,331;\n";
    EXPECT_TRUE(user.sees("s12-saved", [&](const QImage&) { return !text_of(file("drawn.dec")).isEmpty(); }));
    EXPECT_EQ(text_of(file("drawn.dec")).remove('\r').toStdString(), expected.toStdString());

    user.press("ctrl+w"); // the drawing goes with its window
    EXPECT_TRUE(
        user.sees("s13-next-channel", [this](const QImage& shown) { return picture(shown).topLeft() != place; }));
    place = picture(user.look()).topLeft();
    choose(user, "alt+c", {"t", "l"});
    user.type(file("drawn.dec"));
    user.press("Return");
    user.takeFocus();
    EXPECT_TRUE(user.sees("s14-loaded", [this](const QImage& shown) {
        return share_of(shown, part(77, 437, 83, 443), is_frame_red) > 0.4;
    })) << "on the channel below";

    choose(user, "alt+c", {"d", "Down", "Down", "Down", "Down", "Down", "Down", "Return"});
    user.drag(at(250, 300), at(420, 130));
    EXPECT_TRUE(user.sees("s15-lengthy-object", [this](const QImage& shown) {
        return has_label(shown, part(380, 110, 512, 160)) &&
               share_of(shown, part(250, 130, 420, 300), is_end_green) > 0.005;
    }));
}

TEST_F(SurfaceOnScreen, LegendsPanelsAndThePaletteOfAnImage)
{
    SKIP_WITHOUT_SAMPLES();
    {
        desktop user(home(), {file("a.di")});
        ASSERT_TRUE(opens(user, "s1-recording"));
        const QImage plain = user.look();
        choose(user, "alt+v", {"o"});
        EXPECT_TRUE(user.sees("s16-compact", [&](const QImage& shown) {
            return caption(shown).width() < caption(plain).width() - 100 &&
                   share_of(shown, inside(shown), is_brown) > 0.8;
        })) << "the picture alone, with its scale mark";
        choose(user, "alt+v", {"o"});
        choose(user, "alt+v", {"p"});
        user.press("alt+p");
        for (int i = 0; i < 4; ++i) user.press("Down");
        user.press("Return");
        EXPECT_TRUE(
            user.sees("s17-green", [](const QImage& shown) { return share_of(shown, inside(shown), is_green) > 0.5; }));
        user.press("ctrl+s");
        EXPECT_TRUE(user.sees("s18-saved", [&](const QImage&) { return QFileInfo::exists(file("a.di.spm")); }));
        user.press("alt+f");
        user.press("i");
        EXPECT_EQ(user.waitForEnd(), 0);
    }
    QFile profile(file("velmira/profile"));
    ASSERT_TRUE(profile.open(QIODevice::Append));
    profile.write("\n[SurfMathView]\nShowStatistics=\"true\"\n");
    profile.close();
    desktop user(home(), {file("a.di.spm")});
    EXPECT_TRUE(user.sees("s19-opened-again", [](const QImage& shown) {
        const QRect frame = caption(shown);
        const QRect panel(frame.right() - 95, frame.bottom() + 10, 90, 110);
        return frame.width() > 600 && share_of(shown, inside(shown), is_green) > 0.5 &&
               share_of(shown, panel.intersected(shown.rect()), is_black) > 0.01;
    })) << "with the palette that it remembers, and the panel of statistics";
    user.moveTo({1000, 850});
    user.takeFocus();
    user.press("ctrl+t");
    EXPECT_TRUE(
        user.sees("s20-copied", [](const QImage&) { return QGuiApplication::clipboard()->text().contains("Rq, "); }));
}

} // namespace
