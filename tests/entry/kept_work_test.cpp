// What was not saved is opened again: after closing, and after the program died.
#include "entry_fixture.h"
#include "platform/files/Exceptions.h"
#include "support/allocation_count.h"
#include "view/panes/TextView.h"

#include "entry/kept_work.h"
#include "entry/save_documents.h"

#include <chrono>
#include <csignal>
#include <functional>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr unsigned cmdSave = 57603, cmdSaveAs = 57604, cmdFirstClosed = 10220, cmdRevert = 10025, cmdZoomWindow = 10145;

class KeptWorkTest : public EntryTest {
protected:
    std::filesystem::path state() const { return folder / "state"; }
    void closeFrame(std::size_t index = 0)
    {
        app->frames()[index]->DestroyFrame();
        host.pump();
    }
    /// Text of the closed document at this place of the menu; empty when there is none.
    std::string closedText(unsigned index = 0)
    {
        const std::vector<std::string> texts = menuTexts(cmdFirstClosed);
        return index < texts.size() ? texts[index] : "";
    }
    /// Waits for the writer.
    template <class Condition>
    bool comes(const Condition& condition)
    {
        for (int i = 0; i < 500; ++i) {
            app->stepKeeping();
            if (condition()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }
    bool isKept()
    {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(state() / "sessions"))
            if (entry.path().filename() == "manifest") return true;
        return false;
    }
    /// Another program that changes the document and is killed.
    void runAndKill(const std::wstring& path, short value)
    {
        runApart([&] {
            app->keepWork(state());
            change(opened(path), value);
            if (comes([this] { return isKept(); })) kill(getpid(), SIGKILL);
        });
    }
    /// In another program, which is to be killed.
    template <class Run>
    void runApart(const Run& run)
    {
        const pid_t child = fork();
        if (child == 0) {
            run();
            _exit(1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
    }
};

TEST_F(KeptWorkTest, WhatClosedUnsavedIsReopenedAsItWas)
{
    app->keepWork(state());
    EXPECT_EQ(closedText(), "");
    const std::wstring path = surface("a & b.spm");
    change(opened(path), 77);
    closeFrame();
    ASSERT_TRUE(comes([this] { return closedText() != ""; }));
    EXPECT_EQ(closedText().find("a && b (" + (folder / "a && b.spm").string() + ", 20"), 0u) << closedText();
    EXPECT_EQ(closedText(1), "");
    EXPECT_TRUE(enabled(cmdFirstClosed));
    EXPECT_FALSE(enabled(cmdFirstClosed + 1));

    app->OnCmdMsg(cmdFirstClosed, nullptr);
    ASSERT_EQ(app->frames().size(), 1u);
    EXPECT_EQ(document().getDataPoint2S(0, 1, 1, 0), 77);
    EXPECT_EQ(app->frames()[0]->GetWindowText()[0], L'*');
    EXPECT_EQ(closedText(), "") << "it is open";
    app->setActiveFrame(app->frames()[0].get());
    app->routeCommand(cmdSave, nullptr);
    EXPECT_TRUE(host.questions.empty()) << "its own file";
    EXPECT_FALSE(document().isChanged());
    closeFrame();
    EXPECT_TRUE(comes([this] { return !isKept(); })) << "saved: nothing is left to keep";
    EXPECT_EQ(closedText(), "");
}

TEST_F(KeptWorkTest, WhatRevertDiscardsIsAskedForAndReopened)
{
    app->keepWork(state());
    CStorageDoc& changed = opened(surface("a.spm"));
    change(changed, 77);
    host.answers = {0, std::nullopt, 1};
    for (const bool isDiscarded : {false, false, true}) {
        app->routeCommand(cmdRevert, nullptr);
        EXPECT_EQ(changed.getDataPoint2S(0, 1, 1, 0), isDiscarded ? 5 : 77);
    }
    ASSERT_EQ(host.questions.size(), 3u);
    EXPECT_EQ(host.questions[0].text, "Discard the changes to \"a\" since it was opened or saved?");
    EXPECT_EQ(host.questions[0].escape, std::optional<std::size_t>(0));
    EXPECT_FALSE(changed.isChanged());
    EXPECT_FALSE(changed.canUndo(0));
    ASSERT_TRUE(comes([this] { return closedText() != ""; }));
    change(changed, 78);
    app->OnCmdMsg(cmdFirstClosed, nullptr);
    ASSERT_EQ(app->frames().size(), 2u);
    EXPECT_EQ(document(1).getDataPoint2S(0, 1, 1, 0), 77);
    EXPECT_EQ(changed.getDataPoint2S(0, 1, 1, 0), 78);
    EXPECT_TRUE(comes([this] { return isKept(); })) << "later work, too";

    write_file(folder / "b.txt", "0 1\n1 2\n");
    opened((folder / "b.txt").wstring());
    app->routeCommand(cmdRevert, nullptr);
    EXPECT_EQ(host.questions.size(), 3u) << "nothing was changed";
}

TEST_F(KeptWorkTest, TheMenuOpensWhatItShowsWhateverClosedSince)
{
    app->keepWork(state());
    const auto closesAs = [this](const std::wstring& path, std::ptrdiff_t number) {
        change(opened(path), 77);
        closeFrame();
        const std::filesystem::directory_iterator end;
        return comes(
            [&] { return std::distance(std::filesystem::directory_iterator(state() / "closed"), end) == number; });
    };
    const std::wstring path = surface("first.spm");
    ASSERT_TRUE(closesAs(path, 1));
    ASSERT_NE(closedText(), "");
    ASSERT_TRUE(closesAs(surface("second.spm"), 2));
    app->OnCmdMsg(cmdFirstClosed, nullptr);
    ASSERT_EQ(app->frames().size(), 1u);
    EXPECT_EQ(document().GetPathName(), path) << "the menu was filled before the second one closed";
}

TEST_F(KeptWorkTest, LeavingTheProgramKeepsWhatWasNotTicked)
{
    app->keepWork(state());
    change(opened(surface("a.spm")), 77);
    host.onDialog = [](CVarListDlg& dialog) {
        dialog.press(dialog.layout().buttons[1]); // deselect all
        dialog.EndDialog(CVarListDlg::resultOk);
    };
    EXPECT_TRUE(app->mayExit());
    app.reset();
    app = std::make_unique<CVldvApp>(host);
    app->keepWork(state());
    EXPECT_NE(closedText(), "");
    app->OnCmdMsg(cmdFirstClosed, nullptr);
    EXPECT_EQ(document().getDataPoint2S(0, 1, 1, 0), 77);
}

TEST_F(KeptWorkTest, WhatAKilledProgramHadOpenIsOffered)
{
    runAndKill(surface("a.spm"), 77);
    bool isOffered = false;
    host.onDialog = [&](CVarListDlg& dialog) {
        isOffered = true;
        EXPECT_EQ(dialog.layout().title, "Recover unsaved work");
        ASSERT_EQ(dialog.rowCount(), 1u);
        EXPECT_EQ(std::string(dialog.row(0).get_description()).substr(0, 3), "a (");
        EXPECT_TRUE(static_cast<bool>(dialog.row(0)));
        dialog.EndDialog(CVarListDlg::resultOk);
    };
    app->keepWork(state());
    ASSERT_TRUE(isOffered);
    ASSERT_EQ(app->frames().size(), 1u);
    EXPECT_EQ(document().getDataPoint2S(0, 1, 1, 0), 77);
    EXPECT_TRUE(document().isChanged());
    change(document(), 78); // the copy goes on from where it was
    closeFrame();
    ASSERT_TRUE(comes([this] { return closedText() != ""; }));
    app->OnCmdMsg(cmdFirstClosed, nullptr);
    EXPECT_EQ(document().getDataPoint2S(0, 1, 1, 0), 78);
}

TEST_F(KeptWorkTest, WhatWasOpenWhenTheSessionEndedIsOffered)
{
    app->keepWork(state());
    change(opened(surface("a.spm")), 77);
    app->stepKeeping();
    change(document(), 78);
    const std::wstring closedBefore = surface("b.spm");
    change(opened(closedBefore), 79);
    closeFrame(1);
    app->leaveWork();
    app.reset();

    app = std::make_unique<CVldvApp>(host);
    std::vector<std::string> offered;
    host.onDialog = [&](CVarListDlg& dialog) {
        for (unsigned i = 0; i < dialog.rowCount(); ++i) offered.emplace_back(dialog.row(i).get_description());
        dialog.EndDialog(CVarListDlg::resultOk);
    };
    app->keepWork(state());
    ASSERT_EQ(offered.size(), 1u) << "what the user had closed is no crash";
    EXPECT_EQ(offered[0].substr(0, 3), "a (");
    EXPECT_EQ(document().getDataPoint2S(0, 1, 1, 0), 78);
    EXPECT_EQ(closedText().substr(0, 3), "b (");
}

TEST_F(KeptWorkTest, WhatIsBeingOfferedWhenTheProgramEndsIsOfferedAgain)
{
    runAndKill(surface("a.spm"), 77);
    runApart([this] {
        host.onDialog = [](CVarListDlg&) { kill(getpid(), SIGKILL); };
        app->keepWork(state());
    });
    host.onDialog = [this](CVarListDlg& dialog) {
        app->leaveWork(); // the session ends, and all its dialogs
        dialog.EndDialog(CVarListDlg::resultCancel);
    };
    app->keepWork(state());
    app.reset();
    app = std::make_unique<CVldvApp>(host);
    host.onDialog = [](CVarListDlg& dialog) { dialog.EndDialog(CVarListDlg::resultOk); };
    app->keepWork(state());
    ASSERT_EQ(app->frames().size(), 1u);
    EXPECT_EQ(document().getDataPoint2S(0, 1, 1, 0), 77);
}

TEST_F(KeptWorkTest, WhatIsNotWantedAtOnceStaysToBeReopened)
{
    runAndKill(surface("a.spm"), 77);
    host.onDialog = [](CVarListDlg& dialog) { dialog.EndDialog(CVarListDlg::resultCancel); };
    app->keepWork(state());
    EXPECT_TRUE(app->frames().empty());
    ASSERT_NE(closedText(), "");
    app->OnCmdMsg(cmdFirstClosed, nullptr);
    EXPECT_EQ(document().getDataPoint2S(0, 1, 1, 0), 77);
}

TEST_F(KeptWorkTest, AMagnifierIsWorkOnlyWhenItIsWorkedOn)
{
    app->keepWork(state());
    opened(surface("a.spm", 20));
    CFrameWnd& source = *app->frames()[0];
    host.savePaths = {(folder / "part.spm").wstring()};
    const SPMDataStream image = document().getImage(0);
    const std::function<void(CStorageDoc&)> works[] = {[](CStorageDoc& zoom) { zoom.setString("palette", "own", 0); },
                                                       [this](CStorageDoc& zoom) { change(zoom, 77); },
                                                       [&](CStorageDoc& zoom) { zoom.AddNewImages(&image, 1); }};
    for (const auto& work : works) {
        const bool isWorkedOn = &work != works;
        app->setActiveFrame(&source);
        ASSERT_TRUE(enabled(cmdZoomWindow));
        app->routeCommand(cmdZoomWindow, nullptr);
        CFrameWnd& frame = *app->frames().back();
        auto& zoom = dynamic_cast<CStorageDoc&>(*frame.GetActiveView()->GetDocument());
        app->setActiveFrame(&source);
        work(zoom);
        zoom.SetModifiedFlag(true);
        EXPECT_EQ(frame.GetWindowText()[0] == L'*', isWorkedOn);
        EXPECT_EQ(enabled(cmdZoomWindow), isWorkedOn) << "another one can follow the surface";
        EXPECT_EQ(entry::unsaved_documents(*app).size(), isWorkedOn ? 1u : 0u);
        if (!isWorkedOn) zoom.OnCmdMsg(cmdSaveAs, nullptr);
        EXPECT_EQ(zoom.GetPathName(), L"") << "the file is a copy";
        frame.DestroyFrame();
        host.pump();
        app->stepKeeping();
    }
    EXPECT_TRUE(std::filesystem::exists(folder / "part.spm"));
    ASSERT_TRUE(comes([this] { return closedText() != ""; }));
    EXPECT_TRUE(comes([this] { return closedText(1) != ""; }));
    EXPECT_EQ(closedText(2), "") << "the one that was only looked at is not among them";
}

struct moved_case {
    const char* name;
    std::optional<std::size_t> answer;
    bool findsIt, isShown, hasTexts;
};

class KeptWorkMoved : public KeptWorkTest, public testing::WithParamInterface<moved_case> {};

TEST_P(KeptWorkMoved, WhatReferredToAFileThatMovedIsReached)
{
    app->keepWork(state());
    const std::wstring path = surface("a.spm"), moved = (folder / "moved.spm").wstring();
    opened(path).setString("note", "unsaved words", 0);
    closeFrame();
    ASSERT_TRUE(comes([this] { return closedText() != ""; }));
    std::filesystem::rename(path, moved);
    host.answers = {GetParam().answer};
    host.openPaths = {GetParam().findsIt ? moved : surface("other.spm", 5)};
    app->OnCmdMsg(cmdFirstClosed, nullptr);
    ASSERT_EQ(host.questions.size(), 1u);
    EXPECT_EQ(closedText() == "", GetParam().isShown) << "else it stays";
    ASSERT_EQ(app->frames().size(), GetParam().isShown || GetParam().hasTexts ? 1u : 0u);
    if (GetParam().isShown) {
        EXPECT_STREQ(document().getString("note", 0), "unsaved words");
        EXPECT_EQ(document().getDataPoint2S(0, 3, 3, 0), 15);
        app->setActiveFrame(app->frames()[0].get());
        app->routeCommand(cmdSave, nullptr);
        EXPECT_EQ(host.questions.size(), 1u) << "it is the document's own file";
        CStorageDoc again;
        ASSERT_TRUE(again.OnOpenDocument(moved.c_str()));
        EXPECT_STREQ(again.getString("note", 0), "unsaved words");
    }
    if (GetParam().hasTexts) {
        const auto* const view = dynamic_cast<const CTextView*>(app->frames()[0]->GetActiveView());
        ASSERT_NE(view, nullptr);
        EXPECT_NE(view->getText().find(L"note: unsaved words"), std::wstring::npos);
    }
}

INSTANTIATE_TEST_SUITE_P(Answers, KeptWorkMoved,
                         testing::Values(moved_case{"Found", 0, true, true, false},
                                         moved_case{"AnotherFile", 0, false, false, false},
                                         moved_case{"Without", 1, false, false, true},
                                         moved_case{"Cancel", 2, false, false, false},
                                         moved_case{"Escape", std::nullopt, false, false, false}),
                         [](const auto& each) { return each.param.name; });

TEST_F(KeptWorkTest, WhatWasClosedComesBackAlsoWhenItsFileWasSavedOverSince)
{
    app->keepWork(state());
    const std::wstring path = surface("a.spm");
    opened(path).setString("note", "first", 0);
    closeFrame(); // it is still being written when the next save comes
    change(opened(path), 99);
    app->routeCommand(cmdSave, nullptr);
    app->closeAllFrames();
    ASSERT_TRUE(comes([this] { return closedText() != ""; }));
    app->OnCmdMsg(cmdFirstClosed, nullptr);
    EXPECT_EQ(host.messages, std::vector<std::string>());
    ASSERT_EQ(app->frames().size(), 1u);
    EXPECT_STREQ(document().getString("note", 0), "first");
    EXPECT_EQ(document().getDataPoint2S(0, 1, 1, 0), 5) << "as it was, not as it was saved later";
}

TEST_F(KeptWorkTest, WithoutMemoryAtItsEndTheProgramKeepsItsWorkAllTheSame)
{
    const std::wstring path = surface("a.spm");
    std::unique_ptr<entry::kept_work> kept;
    const auto close = [&] {
        std::filesystem::remove_all(state());
        kept = std::make_unique<entry::kept_work>();
        kept->begin(state());
        CStorageDoc closing;
        ASSERT_TRUE(closing.OnOpenDocument(path.c_str()));
        change(closing, 77);
        kept->documentCloses(closing);
    };
    const auto check = [&](bool isDone, bool) {
        EXPECT_TRUE(isDone) << "a destructor calls it";
        kept.reset();
        const std::size_t left = recovery::left_sessions(state() / "sessions").copies().good.size();
        EXPECT_EQ(recovery::closed_documents(state() / "closed").list().size() + left, 1u);
    };
    EXPECT_GT(for_each_failing_allocation(close, [&] { kept->finish(); }, check), 1u);
}

TEST_F(KeptWorkTest, UnreadableCopiesAreTold)
{
    const auto copy = state() / "sessions" / "5-999999999" / "copy";
    std::filesystem::create_directories(copy);
    write_file(copy / "manifest", "VLKEPT9");
    write_file(copy.parent_path() / "lock", "");
    app->keepWork(state());
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_NE(host.messages[0].find((state() / "closed" / "copy").native()), std::string::npos);
}

TEST_F(KeptWorkTest, WhatFailsWhileSeveralFilesAreOpenedIsToldOnce)
{
    const auto fail = [this] { app->reportFailure(L"a", "a: no"); };
    EXPECT_THROW(tell_failures_together(*app,
                                        [&] {
                                            fail();
                                            throw CException("thrown");
                                        }),
                 CException);
    EXPECT_EQ(host.messages, std::vector<std::string>()) << "no dialog in the middle of a failure";
    EXPECT_EQ(host.outputLines, std::vector<std::string>{"a: no"});
    tell_failures_together(*app, fail);
    EXPECT_EQ(host.messages, std::vector<std::string>{"a: no"}) << "what failed before is not told again";
}

TEST_F(KeptWorkTest, WithoutAStateFolderThereIsAWordAndTheProgramGoesOn)
{
    write_file(folder / "state", "a file");
    app->keepWork(state());
    ASSERT_EQ(host.outputLines.size(), 1u);
    EXPECT_EQ(host.outputLines[0].find("Unsaved work is not kept: "), 0u);
    change(opened(surface("a.spm")), 77);
    app->stepKeeping();
    EXPECT_EQ(closedText(), "");
}

} // namespace
