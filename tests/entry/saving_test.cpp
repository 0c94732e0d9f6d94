// No earlier result and no work of the user is lost by saving, deleting or opening.
#include "entry_fixture.h"
#include "support/omicron_set.h"

#include "entry/save_documents.h"

namespace {

constexpr unsigned cmdSave = 57603, cmdSaveAs = 57604, cmdRevert = 10025, cmdDelete = 10026, cmdDuplicate = 10151,
                   cmdQuickView = 10200;
constexpr const char* table = "0 1 2 3\n1 2 3 4\n2 3 4 5\n3 4 5 9\n";
const std::optional<std::size_t> first = 0, second = 1, third = 2, none = std::nullopt;

class SavingTest : public EntryTest {
protected:
    std::wstring recording(const char* name)
    {
        write_file(folder / name, table);
        return (folder / name).wstring();
    }
    std::string content(const char* name) { return file_content(folder / name); }
    /// Shows the dialog of saving. \return title and tick of each row
    std::vector<std::pair<std::string, bool>> offered()
    {
        std::vector<std::pair<std::string, bool>> rows;
        host.onDialog = [&](CVarListDlg& dialog) {
            for (unsigned i = 0; i < dialog.rowCount(); ++i)
                rows.emplace_back(dialog.row(i).get_description(), static_cast<bool>(dialog.row(i)));
            for (const platform::layout_button& button : dialog.layout().buttons)
                if (button.what == platform::layout_button::kind::ok) tip = button.tip;
            dialog.EndDialog(CVarListDlg::resultCancel);
        };
        EXPECT_FALSE(app->mayExit());
        return rows;
    }
    std::string tip;
};

using row_list = std::vector<std::pair<std::string, bool>>;

TEST_F(SavingTest, OnlyWhatTheUserChangedStartsTicked)
{
    opened(recording("untouched.txt"));
    opened(surface("text.spm")).setString("note", "new", 0);
    change(opened(surface("samples.spm")), 7);
    opened(surface("same.spm"));
    CStorageDoc& undone = opened(surface("undone.spm"));
    change(undone, 7);
    undone.undo(0);
    host.openPaths = {recording("thumbnail.txt")};
    app->OnCmdMsg(cmdQuickView, nullptr);
    EXPECT_EQ(offered(), (row_list{{"untouched.txt", false}, {"text", true}, {"samples", true}}));
    EXPECT_EQ(tip, "Saves the chosen files and ends the program");
}

TEST_F(SavingTest, DocumentsThatWouldReadAlikeAreToldApart)
{
    const std::wstring path = recording("a.txt");
    opened(path).setString("note", "1", 0);
    std::filesystem::create_directory(folder / "other");
    write_file(folder / "other" / "a.txt", table);
    opened((folder / "other" / "a.txt").wstring()).setString("note", "2", 0);
    CStorageDoc& same = opened(surface("b.spm"));
    same.setString("note", "3", 0);
    same.SetPathName((path + L".spm").c_str(), false); // a third one with the target of the first
    const std::string target = (folder / "a.txt.spm").string();
    EXPECT_EQ(offered(), (row_list{{"a.txt (" + target + ") (from " + (folder / "a.txt").string() + ")", true},
                                   {"a.txt (" + (folder / "other" / "a.txt.spm").string() + ")", true},
                                   {"a.txt (" + target + ") (from " + (folder / "b.spm").string() + ")", true}}));
}

TEST_F(SavingTest, ADocumentOfSeveralFilesIsToldApartByTheOneThatWasOpened)
{
    const auto opened_set = [this](const char* place) -> CStorageDoc& {
        CStorageDoc& set = opened(write_omicron_set(folder / place).wstring());
        set.setString("note", "1", 0);
        EXPECT_EQ(set.storedFile(), nullptr);
        return set;
    };
    opened_set("one");
    opened_set("other").SetPathName((folder / "one" / "a.par.spm").wstring().c_str(), false);
    const std::string target = "a.par (" + (folder / "one" / "a.par.spm").string() + ") (from ";
    EXPECT_EQ(offered(), (row_list{{target + (folder / "one" / "a.par").string() + ")", true},
                                   {target + (folder / "other" / "a.par").string() + ")", true}}));
}

TEST_F(SavingTest, WhatNothingElseTellsApartIsNumbered)
{
    const std::wstring path = surface("a.spm");
    opened(path).setString("note", "1", 0);
    // The same file once more, as where a closed document is opened again.
    auto* const again = dynamic_cast<CStorageDoc*>(vldvSurfaceTemplate.CreateNewDocument());
    ASSERT_TRUE(again->OnOpenDocument(path.c_str()));
    again->SetPathName(path.c_str(), false);
    again->setString("note", "2", 0);
    const std::string label = "a (" + (folder / "a.spm").string() + ") (from " + (folder / "a.spm").string() + ")";
    EXPECT_EQ(offered(), (row_list{{label + " (1 of 2)", true}, {label + " (2 of 2)", true}}));
    vldvSurfaceTemplate.deleteDocument(again);
}

struct save_case {
    const char* name;
    std::optional<std::size_t> answer;
    bool keepsEarlier, savesBeside, isSaved;
};

class SavingOver : public SavingTest, public testing::WithParamInterface<save_case> {};

TEST_P(SavingOver, AnEarlierResultAsksOnce)
{
    for (const bool byDialog : {false, true}) {
        surface("a.txt.spm");
        std::filesystem::remove(folder / "a.txt (2).spm");
        const std::string earlier = content("a.txt.spm");
        host.questions.clear();
        host.answers = {second, GetParam().answer}; // open the recording itself, then what is tested
        CStorageDoc& changed = opened(recording("a.txt"));
        change(changed, 7);
        host.onDialog = [](CVarListDlg& dialog) { dialog.EndDialog(CVarListDlg::resultOk); };
        if (byDialog)
            EXPECT_EQ(app->mayExit(), GetParam().isSaved);
        else
            app->routeCommand(cmdSave, nullptr);
        ASSERT_EQ(host.questions.size(), 2u);
        EXPECT_EQ(content("a.txt.spm") == earlier, GetParam().keepsEarlier);
        EXPECT_EQ(std::filesystem::exists(folder / "a.txt (2).spm"), GetParam().savesBeside);
        EXPECT_EQ(changed.isChanged(), !GetParam().isSaved);
        if (GetParam().isSaved) {
            CStorageDoc again;
            ASSERT_TRUE(again.OnOpenDocument(changed.GetPathName().c_str()));
            EXPECT_EQ(again.getDataPoint2S(0, 1, 1, 0), 7);
            change(changed, 8);
            app->routeCommand(cmdSave, nullptr);
            EXPECT_EQ(host.questions.size(), 2u) << "the file is its own now";
            EXPECT_FALSE(changed.isChanged());
        }
        app->closeAllFrames();
    }
}

INSTANTIATE_TEST_SUITE_P(Answers, SavingOver,
                         testing::Values(save_case{"KeepBoth", first, true, true, true},
                                         save_case{"Replace", second, false, false, true},
                                         save_case{"CancelButton", third, true, false, false},
                                         save_case{"Escape", none, true, false, false}),
                         [](const auto& each) { return each.param.name; });

TEST_F(SavingTest, AFileThatAnotherProgramChangedIsNotOverwritten)
{
    CStorageDoc& changed = opened(surface("a.spm"));
    change(changed, 7);
    surface("a.spm", 8);
    const std::string theirs = content("a.spm");
    app->routeCommand(cmdSave, nullptr);
    ASSERT_EQ(host.questions.size(), 1u);
    EXPECT_NE(host.questions[0].text.find("has been changed since"), std::string::npos);
    EXPECT_EQ(content("a.spm"), theirs);
    EXPECT_EQ(changed.GetPathName(), (folder / "a (2).spm").wstring());
    EXPECT_EQ(app->frames()[0]->GetWindowText().substr(0, 6), L"a (2)[");
}

TEST_F(SavingTest, SaveAsNamesTheFileItWouldReplace)
{
    change(opened(surface("a.spm")), 7);
    surface("b.spm", 8);
    const std::string other = content("b.spm");
    host.savePaths = {(folder / "b.spm").wstring()};
    host.answers = {third};
    app->routeCommand(cmdSaveAs, nullptr);
    EXPECT_FALSE(host.savePrompts.at(0).asksToReplace) << "one question is enough";
    ASSERT_EQ(host.questions.size(), 1u);
    EXPECT_NE(host.questions[0].text.find("\"b.spm\" exists already"), std::string::npos);
    EXPECT_NE(host.questions[0].text.find("\"b (2).spm\""), std::string::npos);
    EXPECT_EQ(content("b.spm"), other);
    EXPECT_TRUE(document().isChanged());
}

struct open_case {
    const char* name;
    std::optional<std::size_t> answer;
    const char* opened; ///< null: nothing
};

class OpeningARecording : public SavingTest, public testing::WithParamInterface<open_case> {};

TEST_P(OpeningARecording, OffersWhatWasSavedOfIt)
{
    const std::wstring path = recording("a.txt");
    surface("a.txt.spm");
    host.answers = {GetParam().answer};
    const auto* const made = dynamic_cast<CStorageDoc*>(app->OpenDocumentFile(path.c_str()));
    ASSERT_EQ(host.questions.size(), 1u);
    EXPECT_EQ(made ? made->getFileName() : L"", GetParam().opened ? base::widen(GetParam().opened) : L"");
    EXPECT_EQ(app->recentFiles().size(), made ? 1u : 0u);
    if (!made) return;
    EXPECT_EQ(made->GetPathName(), (folder / "a.txt.spm").wstring()) << "where it is saved";
    app->closeAllFrames();
    host.answers = {GetParam().answer};
    app->OnCmdMsg(57616, nullptr); // the recent list leads to the same
    EXPECT_EQ(document().getFileName(), base::widen(GetParam().opened));
}

INSTANTIATE_TEST_SUITE_P(Answers, OpeningARecording,
                         testing::Values(open_case{"Result", first, "a.txt.spm"},
                                         open_case{"Recording", second, "a.txt"}, open_case{"Cancel", third, nullptr},
                                         open_case{"Escape", none, nullptr}),
                         [](const auto& each) { return each.param.name; });

TEST_F(SavingTest, ARecordingOffersAllThatWasSavedOfItTheLatestFirst)
{
    const std::wstring path = recording("a");
    surface("a.spm");
    surface("a (2).spm", 5);
    surface("a (4).spm");
    surface("a (5).spm");
    recording("a (5)"); // has that result
    const auto age = [&](const char* name, int minutes) {
        const auto now = std::filesystem::file_time_type::clock::now();
        std::filesystem::last_write_time(folder / name, now - std::chrono::minutes(minutes));
    };
    age("a.spm", 2);
    age("a (2).spm", 1);
    age("a (4).spm", 3);
    host.answers = {second};
    EXPECT_EQ(opened(path).getFileName(), L"a.spm");
    EXPECT_EQ(host.questions.at(0).answers,
              (std::vector<std::string>{"&Open \"a (2).spm\"", "Open \"a.spm\"", "Open \"a (4).spm\"",
                                        "Open the &recording", "Cancel"}));
    app->closeAllFrames();
    host.answers = {std::size_t(3)};
    EXPECT_EQ(opened(path).getFileName(), L"a");
    app->closeAllFrames();
    host.answers = {std::size_t(4)};
    EXPECT_EQ(app->OpenDocumentFile(path.c_str()), nullptr);
}

TEST_F(SavingTest, ARecordingAndItsEarlierResultStandBesideEachOther)
{
    const std::wstring path = recording("a.txt"), result = surface("a.txt.spm");
    host.answers = {second, second, first};
    CDocument* const raw = app->OpenDocumentFile(path.c_str());
    CDocument* const saved = app->OpenDocumentFile(result.c_str());
    ASSERT_NE(saved, raw) << "asked for the result by its name";
    EXPECT_EQ(dynamic_cast<CStorageDoc&>(*saved).getFileName(), L"a.txt.spm");
    EXPECT_EQ(app->OpenDocumentFile(path.c_str()), raw);
    EXPECT_EQ(app->OpenDocumentFile(result.c_str()), saved);
    EXPECT_EQ(host.questions.size(), 1u) << "what is open is shown without one";
    raw->OnCloseDocument();
    EXPECT_NE(app->OpenDocumentFile(path.c_str()), saved) << "the recording, and not its result";
    document(1).OnCloseDocument();
    EXPECT_EQ(app->OpenDocumentFile(path.c_str()), saved) << "chosen, and already open";
    EXPECT_EQ(vldvSurfaceTemplate.documents().size(), 1u);
}

TEST_F(SavingTest, RevertingARecordingDoesNotLeadToAnEarlierResult)
{
    const std::wstring path = recording("a.txt");
    surface("a.txt.spm");
    host.answers = {second, second};
    CStorageDoc& changed = opened(path);
    change(changed, 7);
    app->routeCommand(cmdRevert, nullptr);
    EXPECT_EQ(changed.getFileName(), L"a.txt");
    EXPECT_FALSE(changed.isChanged());
}

TEST_F(SavingTest, SeveralRecordingsAreAskedForOnce)
{
    for (const char* name : {"a.txt.spm", "b.txt.spm"}) surface(name);
    host.openPaths = {recording("a.txt"), recording("b.txt"), recording("c.txt")};
    host.answers = {second};
    VldvOpenDocument(0);
    EXPECT_EQ(host.questions.size(), 1u);
    EXPECT_EQ(document(1).getFileName(), L"b.txt");
    EXPECT_EQ(vldvSurfaceTemplate.documents().size(), 3u);
}

TEST_F(SavingTest, DeleteTakesOnlyTheDocumentsOwnFile)
{
    const std::wstring path = recording("a.txt"), result = surface("a.txt.spm");
    host.answers = {second};
    opened(path);
    app->routeCommand(cmdDelete, nullptr);
    EXPECT_EQ(host.trash, std::vector<std::wstring>{path}) << "the earlier result was never opened";
    EXPECT_TRUE(app->frames().empty());
    EXPECT_EQ(host.statusText, path + L" was moved to the trash");
    EXPECT_EQ(app->recentFiles(), std::vector<std::wstring>{});

    CStorageDoc& native = opened(result);
    change(native, 3);
    surface("a.txt.spm", 8);
    app->routeCommand(cmdDelete, nullptr);
    EXPECT_TRUE(std::filesystem::exists(folder / "a.txt.spm")) << "somebody else has written it meanwhile";
    EXPECT_EQ(app->frames().size(), 1u) << "and nothing closes";
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_NE(host.messages[0].find("a.txt.spm has been changed"), std::string::npos);
    app->closeAllFrames();

    opened(result);
    host.hasTrash = false;
    app->routeCommand(cmdDelete, nullptr);
    EXPECT_TRUE(std::filesystem::exists(folder / "a.txt.spm"));
    EXPECT_EQ(host.messages.size(), 2u) << "the user is told that it stays";
    EXPECT_EQ(app->recentFiles(), std::vector<std::wstring>{result});

    host.hasTrash = true;
    opened(result);
    app->routeCommand(cmdDelete, nullptr);
    EXPECT_FALSE(std::filesystem::exists(folder / "a.txt.spm"));
}

TEST_F(SavingTest, TitlesTellWhatDiffersFromItsFile)
{
    CStorageDoc& marked = opened(surface("a.spm"));
    const auto isMarked = [&] { return app->frames()[0]->GetWindowText()[0] == L'*'; };
    const auto save = [&] { EXPECT_TRUE(marked.Save()); };
    EXPECT_FALSE(isMarked());
    change(marked, 7);
    EXPECT_TRUE(isMarked());
    marked.undo(0);
    EXPECT_FALSE(isMarked()) << "as in the file again";
    marked.redo(0);
    EXPECT_TRUE(isMarked());
    save();
    EXPECT_FALSE(isMarked());
    marked.undo(0);
    EXPECT_TRUE(isMarked()) << "the file holds the later state";
    EXPECT_TRUE(enabled(cmdSave)) << "though the flag was cleared with the last step";
    save();
    EXPECT_FALSE(isMarked());
    marked.setString("note", "", 0);
    EXPECT_TRUE(isMarked());
    save();
    marked.setString("note", "", 0);
    EXPECT_FALSE(isMarked()) << "nothing new";
    marked.clearStrings(0);
    EXPECT_TRUE(isMarked());
    host.answers = {second};
    app->routeCommand(cmdRevert, nullptr);
    EXPECT_FALSE(isMarked()) << "read again";
}

TEST_F(SavingTest, SaveIsOnForWhatHasNoFileOfItsOwn)
{
    const auto change_back = [this](CStorageDoc& changed) {
        EXPECT_EQ(changed.IsModified(), enabled(cmdSave));
        change(changed, 7);
        EXPECT_TRUE(enabled(cmdSave));
        changed.undo(0);
    };
    change_back(opened(surface("a.spm")));
    EXPECT_FALSE(enabled(cmdSave)) << "is as in its file";
    CStorageDoc& foreign = opened(recording("b.txt"));
    change_back(foreign);
    EXPECT_TRUE(enabled(cmdSave)) << "a recording has none yet";
    app->routeCommand(cmdSave, nullptr);
    EXPECT_EQ(file_content(folder / "b.txt"), table);
    EXPECT_EQ(foreign.GetPathName(), (folder / "b.txt.spm").wstring());
    EXPECT_FALSE(enabled(cmdSave));

    app->routeCommand(cmdDuplicate, nullptr);
    app->setActiveFrame(app->frames().back().get());
    EXPECT_TRUE(enabled(cmdSave));
    EXPECT_TRUE(host.savePrompts.empty());
    surface("Copy 1 of b.txt.spm");
    app->routeCommand(cmdSave, nullptr);
    ASSERT_EQ(host.savePrompts.size(), 1u);
    EXPECT_EQ(host.savePrompts[0].suggestedPath, (folder / "Copy 1 of b.txt (2).spm").wstring());
    EXPECT_TRUE(enabled(cmdSave)) << "cancelled";
    std::filesystem::create_directory(folder / "results");
    host.savePaths = {(folder / "results" / "c.spm").wstring()};
    app->routeCommand(cmdSave, nullptr);
    EXPECT_FALSE(enabled(cmdSave));
    EXPECT_TRUE(std::filesystem::exists(folder / "results" / "c.spm"));

    app->routeCommand(cmdDuplicate, nullptr);
    app->setActiveFrame(app->frames().back().get());
    app->routeCommand(cmdSaveAs, nullptr);
    EXPECT_EQ(host.savePrompts.back().suggestedPath, (folder / "results" / "Copy 2 of b.txt.spm").wstring());
}

TEST_F(SavingTest, ForeignFilesAreNotMarkedAndCopiesAre)
{
    opened(recording("a.txt"));
    EXPECT_EQ(app->frames()[0]->GetWindowText()[0], L'a');
    EXPECT_TRUE(document().IsModified()) << "it can be saved as it is";
    app->routeCommand(cmdDuplicate, nullptr);
    EXPECT_EQ(app->frames().back()->GetWindowText()[0], L'*') << "a copy is in no file";
}

TEST(TellingLabels, TellTextsApartByTheirDocuments)
{
    CStorageDoc one, other;
    one.SetPathName(L"/data/one/a.spm", false);
    other.SetPathName(L"/data/two/a.spm", false);
    using texts = std::vector<std::string>;
    EXPECT_EQ(entry::telling_labels(texts{"a[Height]", "a[Height]", "Text", "Text"}, {&one, &other, nullptr, nullptr}),
              (texts{"a[Height] (/data/one/a.spm)", "a[Height] (/data/two/a.spm)", "Text (1 of 2)", "Text (2 of 2)"}));
}

} // namespace
