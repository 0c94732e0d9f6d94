// Texts and tables in the hands of a user, judged by the clipboard and by the files that come out.
#include "document/StorageDoc.h"
#include "document/examples/examples.h"
#include "e2e/desktop.h"
#include "e2e/screen.h"
#include "support/temporary_folder.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QThread>
#include <gtest/gtest.h>

namespace {

using namespace screen;

/// Waits for a text that another program put on the clipboard.
QString copied(const std::function<bool(const QString&)>& expected)
{
    constexpr int patience = 20'000, breath = 100; // milliseconds
    QElapsedTimer clock;
    clock.start();
    QString text;
    do {
        QThread::msleep(breath);
        QGuiApplication::processEvents();
        text = QGuiApplication::clipboard()->text();
    } while (!expected(text) && clock.elapsed() < patience);
    return text;
}

TEST(PanesOnScreen, TablesAreSelectedCopiedAndSaved)
{
    const temporary_folder folder;
    CStorageDoc document;
    ASSERT_TRUE(document.addRecording(document::make_examples().front().content));
    document.setString("Operator", "Ada", unsigned(-1));
    ASSERT_TRUE(document.DoSave((folder / "a.spm").wstring().c_str(), false));
    desktop user(QString::fromStdString(folder.path.string()), {QString::fromStdString((folder / "a.spm").string())});
    user.moveTo({1000, 600});
    ASSERT_TRUE(user.sees("panes-1-opened", [](const QImage& shown) { return caption(shown).width() > 300; }));
    const QRect surface = caption(user.look());
    user.takeFocus(); // there is no window manager that would give it
    user.press("alt+f");
    user.press("p"); // the first of several
    user.press("Return");
    ASSERT_TRUE(user.sees("panes-2-table", [&](const QImage& shown) {
        return caption(shown).width() > 300 && caption(shown) != surface;
    }));
    user.press("ctrl+a");
    user.press("ctrl+c");
    const QString all = copied([](const QString& text) { return text.contains("Operator"); });
    EXPECT_TRUE(all.contains("Document\tOperator\tAda\r\n") || all.contains("Document\tOperator\tAda\n"))
        << all.toStdString();

    user.press("ctrl+s");
    user.type(QString::fromStdString((folder / "own.txt").string()));
    user.press("Return");
    user.takeFocus();
    QElapsedTimer clock;
    clock.start();
    while (!std::filesystem::exists(folder / "own.txt") && clock.elapsed() < 20'000) QThread::msleep(100);
    EXPECT_TRUE(file_content(folder / "own.txt").starts_with("Image\tParameter\tValue\r\n"));
}

} // namespace
