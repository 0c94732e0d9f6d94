// The program is killed, or its session ends, with unsaved work open; its next start brings it back.
#include "document/StorageDoc.h"
#include "document/examples/examples.h"
#include "e2e/desktop.h"
#include "e2e/screen.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace {

using namespace screen;

class RecoveryOnScreen : public testing::Test {
protected:
    RecoveryOnScreen()
    {
        for (document::example& each : document::make_examples()) {
            CStorageDoc document;
            if (std::string(each.fileName) != "grains.spm") continue;
            if (document.addRecording(each.content)) document.DoSave((folder / each.fileName).wstring().c_str(), false);
        }
    }
    std::size_t copies(const char* kind) const
    {
        std::size_t count = 0;
        std::error_code error;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / "velmira" / kind, error))
            count += entry.path().filename() == "manifest";
        return count;
    }
    QString path() const { return QString::fromStdString(folder.path.string()); }

    temporary_folder folder;
};

bool is_data_shown(const QImage& shown)
{
    return caption(shown).width() > 400 && share_of(shown, inside(shown), is_brown) > 0.9;
}

bool has_window(const char* title) { return QProcess::execute("xdotool", {"search", "--name", title}) == 0; }

TEST_F(RecoveryOnScreen, WhatAKilledProgramHadOpenComesBack)
{
    {
        const desktop user(path(), {path() + "/grains.spm"});
        user.moveTo({1000, 600});
        ASSERT_TRUE(user.sees("crash-1-opened", is_data_shown));
        EXPECT_EQ(copies("sessions"), 0u) << "it is in its file";
        user.takeFocus();
        user.press("alt+v");
        user.press("d"); // the copy is in no file
        EXPECT_TRUE(user.sees("crash-2-kept", [this](const QImage&) { return copies("sessions") == 1; }));
    } // killed
    EXPECT_EQ(copies("sessions"), 1u);
    {
        desktop user(path(), {});
        ASSERT_TRUE(user.sees("crash-3-offered", [](const QImage&) { return has_window("Recover unsaved work"); }));
        user.press("alt+r");
        EXPECT_TRUE(user.sees("crash-4-recovered", is_data_shown));
        EXPECT_EQ(copies("sessions"), 1u) << "still in no file";
        EXPECT_EQ(user.terminate(), 128 + 15) << "as the end of a session does, which asks nobody";
        EXPECT_EQ(copies("sessions"), 1u) << "not among what the user closed";
    }
    {
        const desktop user(path(), {});
        ASSERT_TRUE(user.sees("crash-5-offered", [](const QImage&) { return has_window("Recover unsaved work"); }));
        user.press("Escape");
        EXPECT_TRUE(user.sees("crash-6-later", [this](const QImage&) {
            return copies("closed") == 1 && !has_window("Recover unsaved work");
        }));
    }
}

} // namespace
