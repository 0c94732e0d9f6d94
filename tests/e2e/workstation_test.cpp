// A user's way through the workstation, judged by what stands on the screen.
#include "document/StorageDoc.h"
#include "document/examples.h"
#include "e2e/desktop.h"
#include "support/temporary_folder.h"

#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

bool is_caption(QRgb pixel) { return qBlue(pixel) > qRed(pixel) + 100 && qGreen(pixel) > qRed(pixel) + 50; }
bool is_brown(QRgb pixel) { return qRed(pixel) > qBlue(pixel) + 40; }
bool is_green(QRgb pixel) { return qGreen(pixel) > qRed(pixel) + 20 && qGreen(pixel) > qBlue(pixel) + 20; }

/// Box of the pixels of a kind inside `part`.
QRect box_of(const QImage& screen, const QRect& part, bool (*kind)(QRgb))
{
    QRect box;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            if (kind(screen.pixel(x, y))) box |= QRect(x, y, 1, 1);
    return box;
}

double share_of(const QImage& screen, const QRect& part, bool (*kind)(QRgb))
{
    int count = 0;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x) count += kind(screen.pixel(x, y));
    return static_cast<double>(count) / std::max(part.width() * part.height(), 1);
}

/// The area of frames: below menus and tools, above the status line.
constexpr QRect area(0, 60, 1280, 810);

/// The caption of the active frame.
QRect caption(const QImage& screen) { return box_of(screen, area, is_caption); }

/// Where the active frame shows its data: a strip of it below caption and tabs.
QRect inside(const QImage& screen)
{
    const QRect above = caption(screen);
    return QRect(above.left() + 20, above.bottom() + 60, 300, 200).intersected(screen.rect());
}

class WorkstationOnScreen : public testing::Test {
protected:
    WorkstationOnScreen()
    {
        for (document::example& each : document::make_examples()) {
            CStorageDoc document;
            if (document.addRecording(each.content)) document.DoSave((folder / each.fileName).wstring().c_str(), false);
        }
    }
    QString file(const char* name) { return QString::fromStdString((folder / name).string()); }

    temporary_folder folder;
};

TEST_F(WorkstationOnScreen, OpensSwitchesZoomsColorsTilesAndCloses)
{
    desktop user(QString::fromStdString(folder.path.string()), {file("forward-reverse.spm")});
    user.moveTo({1000, 600}); // keys go to the window under the pointer
    ASSERT_TRUE(user.sees("1-opened", [](const QImage& screen) {
        return caption(screen).width() > 500 && share_of(screen, inside(screen), is_brown) > 0.9;
    }));
    const QImage opened = user.look();
    const QRect before = caption(opened);

    user.click({before.left() + 120, before.bottom() + 12});
    EXPECT_TRUE(user.sees("2-second-tab", [&](const QImage& screen) {
        return caption(screen) == before && screen.copy(inside(screen)) != opened.copy(inside(opened));
    }));

    user.turnWheel(inside(opened).topLeft(), 1, "shift");
    EXPECT_TRUE(user.sees("3-zoomed", [&](const QImage& screen) {
        return std::abs(caption(screen).width() - before.width() - 102) <= 1; // 512 pixels become 614
    }));

    user.press("alt+p");
    for (int i = 0; i < 4; ++i) user.press("Down");
    user.press("Return");
    EXPECT_TRUE(user.sees("4-green", [](const QImage& screen) {
        return share_of(screen, inside(screen), is_green) > 0.9;
    })) << "the fifth palette";

    user.press("ctrl+o");
    EXPECT_TRUE(user.sees("5-open-dialog", [&](const QImage& screen) { return caption(screen) != before; }));
    user.type(file("grains.spm"));
    user.press("Return");
    user.takeFocus();
    EXPECT_TRUE(user.sees("6-opened-another", [&](const QImage& screen) {
        return caption(screen).width() > 500 && share_of(screen, inside(screen), is_green) > 0.5;
    })) << "in the palette that was chosen";

    user.press("alt+w");
    user.press("v");
    EXPECT_TRUE(user.sees("7-tiled", [&](const QImage& screen) {
        return share_of(screen, {0, 300, 1280, 10}, is_green) > 0.4 && caption(screen).width() < 700;
    }));

    for (int frames = 3; frames > 0; --frames) user.press("ctrl+w");
    EXPECT_TRUE(user.sees("8-closed", [](const QImage& screen) { return caption(screen).isNull(); }));
    user.press("alt+f");
    user.press("x");
    EXPECT_EQ(user.waitForEnd(), 0);
}

TEST_F(WorkstationOnScreen, OpensRecordingsOfInstruments)
{
    const QString recording = QStringLiteral(VLDV_SAMPLES "/nanoscope/VeecoNanoscopeIII.000");
    if (!QFileInfo::exists(recording)) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES;
    desktop user(QString::fromStdString(folder.path.string()), {recording});
    user.moveTo({1000, 600});
    EXPECT_TRUE(user.sees("9-recording", [](const QImage& screen) {
        return caption(screen).width() > 300 && share_of(screen, inside(screen), is_brown) > 0.5;
    }));
}

} // namespace
