// A user's way through the workstation, judged by what stands on the screen.
#include "document/StorageDoc.h"
#include "document/examples/examples.h"
#include "e2e/desktop.h"
#include "e2e/screen.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace {

using namespace screen;

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
    ASSERT_TRUE(user.sees("1-opened", [](const QImage& shown) {
        return caption(shown).width() > 500 && share_of(shown, inside(shown), is_brown) > 0.9;
    }));
    const QImage opened = user.look();
    const QRect before = caption(opened);

    user.click({before.left() + 120, before.bottom() + 12});
    EXPECT_TRUE(user.sees("2-second-tab", [&](const QImage& shown) {
        return caption(shown) == before && shown.copy(inside(shown)) != opened.copy(inside(opened));
    }));

    user.turnWheel(inside(opened).topLeft(), 1, "shift");
    EXPECT_TRUE(user.sees("3-zoomed", [&](const QImage& shown) {
        return std::abs(caption(shown).width() - before.width() - 102) <= 1; // 512 pixels become 614
    }));

    user.press("alt+p");
    for (int i = 0; i < 4; ++i) user.press("Down");
    user.press("Return");
    EXPECT_TRUE(user.sees("4-green", [](const QImage& shown) {
        return share_of(shown, inside(shown), is_green) > 0.9;
    })) << "the fifth palette";

    user.press("ctrl+o");
    EXPECT_TRUE(user.sees("5-open-dialog", [&](const QImage& shown) { return caption(shown) != before; }));
    user.type(file("grains.spm"));
    user.press("Return");
    user.takeFocus();
    EXPECT_TRUE(user.sees("6-opened-another", [&](const QImage& shown) {
        return caption(shown).width() > 500 && share_of(shown, inside(shown), is_green) > 0.5;
    })) << "in the palette that was chosen";

    user.press("alt+w");
    user.press("v");
    EXPECT_TRUE(user.sees("7-tiled", [&](const QImage& shown) {
        return share_of(shown, area, is_green) > 0.1 && caption(shown).width() < 700; // two of three
    }));

    for (int frames = 3; frames > 0; --frames) user.press("ctrl+w");
    EXPECT_TRUE(user.sees("8-closed", [](const QImage& shown) { return caption(shown).width() < 200; }))
        << "no frame: what is left of that colour is the ring around the button that has the keys";
    user.press("alt+f");
    user.press("i");
    EXPECT_EQ(user.waitForEnd(), 0);
}

bool is_white(QRgb pixel) { return (pixel & 0xffffffu) == 0xffffffu; }

TEST_F(WorkstationOnScreen, PanesAreWhereTheyWereBeforeTheSessionEnded)
{
    static constexpr QRect bottom(100, 800, 1000, 60);
    const auto showsOutput = [](const QImage& shown) { return share_of(shown, bottom, is_white) > 0.9; };
    const QString settings = QString::fromStdString(folder.path.string());
    {
        desktop user(settings, {});
        user.moveTo({1000, 600});
        ASSERT_TRUE(user.sees("20-start", [&](const QImage& shown) { return !showsOutput(shown); }));
        user.takeFocus(); // nothing was clicked yet
        user.press("alt+w");
        user.press("o");
        ASSERT_TRUE(user.sees("21-output", showsOutput));
        EXPECT_EQ(user.terminate(), 128 + 15);
    }
    desktop user(settings, {});
    EXPECT_TRUE(user.sees("22-output-again", showsOutput));
}

} // namespace
