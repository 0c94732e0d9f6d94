#include "base/variables/global_option.h"
#include "entry/open_files.h"
#include "entry_fixture.h"
#include "platform/app/FrameWnd.h"
#include "resources/frame_templates.h"
#include "support/interface_file.h"
#include "surface/views/QVSurfView.h"
#include "view/frame/open_view.h"
#include "view/panes/ParametersView.h"
#include "view/panes/TextView.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace {

TEST_F(EntryTest, OpenDocumentSortsOpensAndRemembersTheFolder)
{
    host.openPaths = {surface("b.spm"), surface("a.spm"), surface("B.spm")};
    app->OnCmdMsg(57601, nullptr);
    ASSERT_EQ(app->frames().size(), 3u);
    EXPECT_EQ(app->frames()[0]->GetWindowText().substr(0, 2), L"B[") << "by code point";
    EXPECT_EQ(app->frames()[2]->GetWindowText().substr(0, 2), L"b[");
    EXPECT_EQ(host.readString("MRU", "Open"), folder.path.string());
    ASSERT_EQ(host.openPrompts.size(), 1u);
    EXPECT_TRUE(host.openPrompts[0].several);
    EXPECT_EQ(host.openPrompts[0].filter.substr(0, 18), "All known formats|");
    EXPECT_EQ(app->recentFiles().front(), surface("b.spm"));
    EXPECT_EQ(host.readString("Recent File List", "File2"), (folder / "a.spm").string());
    EXPECT_EQ(menuTexts(57616).at(1), (folder / "a.spm").string());
    EXPECT_FALSE(enabled(57620));
    app->frames()[1]->DestroyFrame();
    app->OnCmdMsg(57617, nullptr);
    EXPECT_EQ(app->frames().back()->GetWindowText().substr(0, 2), L"a[");
}

TEST_F(EntryTest, APipeIsNamedAndNotWaitedFor)
{
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(app->OpenDocumentFile((folder / "pipe").wstring().c_str()), nullptr);
    ASSERT_FALSE(host.messages.empty());
    EXPECT_NE(host.messages.back().find("pipe: this is a pipe"), std::string::npos) << host.messages.back();
}

TEST_F(EntryTest, FilesThatFailAreToldInOneList)
{
    for (const char* name : {"bad.spm", "empty.spm"}) std::ofstream(folder / name) << (*name == 'b' ? "PK\3\4" : "");
    const std::wstring bad = (folder / "bad.spm").wstring(), empty = (folder / "empty.spm").wstring();
    const std::vector<std::wstring> names = {bad, surface("a.spm"), empty, (folder / "gone.spm").wstring()};
    entry::open_files(*app, names);
    EXPECT_EQ(app->frames().size(), 1u) << "the good one opens";
    ASSERT_EQ(host.messages.size(), 1u) << "one box for all";
    EXPECT_EQ(host.messages[0].find("3 files could not be opened:\n" + (folder / "bad.spm").string() + ": "), 0u)
        << host.messages[0];
    EXPECT_NE(host.messages[0].find("\nFile " + (folder / "empty.spm").string() + " is empty."), std::string::npos)
        << host.messages[0];
    EXPECT_NE(host.messages[0].find((folder / "gone.spm").string()), std::string::npos);

    host.openPaths = {bad, empty};
    app->OnCmdMsg(57601, nullptr);
    ASSERT_EQ(host.messages.size(), 2u) << "from the dialog too";
    EXPECT_EQ(host.messages[1].find("2 files could"), 0u);
    entry::open_files(*app, std::span(&empty, 1));
    EXPECT_EQ(host.messages.back(), "File " + (folder / "empty.spm").string() + " is empty.") << "one alone as ever";
    app->OpenDocumentFile(empty.c_str());
    EXPECT_EQ(host.messages.size(), 4u) << "at once";
}

TEST_F(EntryTest, AFileThatDoesNotOpenLeavesTheRecentOnes)
{
    const std::wstring good = surface("a.spm"), gone = surface("gone.spm"), bad = surface("bad.spm");
    for (const std::wstring& each : {good, gone, bad}) app->OpenDocumentFile(each.c_str());
    app->closeAllFrames();
    ASSERT_EQ(app->recentFiles(), (std::vector{bad, gone, good}));
    std::filesystem::remove(gone);
    write_file(bad, "PK\3\4");
    constexpr unsigned firstRecent = 57616;
    app->OnCmdMsg(firstRecent, nullptr);
    app->OnCmdMsg(firstRecent, nullptr);
    EXPECT_EQ(host.messages.size(), 2u);
    EXPECT_EQ(app->recentFiles(), std::vector{good});
    EXPECT_EQ(host.readString("Recent File List", "File1"), base::narrow(good));
    EXPECT_EQ(host.readString("Recent File List", "File2"), std::nullopt);

    std::filesystem::create_directory(folder / "drive");
    const std::wstring away = surface("drive/a.spm");
    app->OpenDocumentFile(away.c_str());
    app->closeAllFrames();
    std::filesystem::rename(folder / "drive", folder / "unplugged");
    app->OnCmdMsg(firstRecent, nullptr);
    EXPECT_EQ(app->recentFiles().front(), away) << "it will be back";
}

TEST_F(EntryTest, FoldersAndTheHomeFolderAreUnderstood)
{
    std::filesystem::create_directories(folder / "in/deep");
    surface("in/a.spm");
    surface("in/deep/b.spm");
    std::ofstream(folder / "in/notes.md") << "nothing to see";
    const char* const home = std::getenv("HOME");
    const std::string before = home ? home : "";
    setenv("HOME", folder.path.c_str(), 1);
    const std::wstring names[] = {L"~/in", L"~"};
    entry::open_files(*app, std::span(names).first(1));
    EXPECT_EQ(app->frames().size(), 2u);
    EXPECT_TRUE(host.messages.empty()) << host.messages.front();
    std::filesystem::create_directories(folder / "none");
    const std::wstring none = L"~/none";
    entry::open_files(*app, std::span(&none, 1));
    EXPECT_EQ(host.messages.back(), (folder / "none").string() + ": the folder holds no file that opens");
    std::filesystem::create_symlink("loop", folder / "none/loop");
    entry::open_files(*app, std::span(&none, 1));
    EXPECT_EQ(host.messages.back(), (folder / "none/loop").string() + ": Too many levels of symbolic links");
    std::filesystem::remove(folder / "none/loop");

    for (int i = 0; i < 19; ++i)
        std::filesystem::copy_file(folder / "in/a.spm", folder / ("in/" + std::to_string(i) + ".spm"));
    entry::open_files(*app, std::span(names).last(1));
    EXPECT_NE(host.messages.back().find("21 recordings"), std::string::npos) << host.messages.back();
    EXPECT_EQ(app->frames().size(), 2u) << "the user said no";
    setenv("HOME", before.c_str(), 1);
}

TEST_F(EntryTest, MoreFilesThanTheDialogCanNameAreRefused)
{
    host.openPaths.assign(2, std::wstring(20'000'000, L'a'));
    app->OnCmdMsg(57601, nullptr);
    EXPECT_EQ(host.messages,
              std::vector<std::string>{"Too many files selected - please, repeat operation with fewer files."});
    EXPECT_FALSE(host.readString("MRU", "Open"));
}

TEST_F(EntryTest, TheDialogsSettingsMergeWhatIsOpened)
{
    setGlobal("language", "entry-test"); // a folder that no installation has
    const interface_file labels("OpendocParam.xml", "<p><var id=\"open.merged\" name=\"Zusammen\"/></p>", true);
    host.openPaths = {surface("a.spm"), surface("b.spm")};
    host.onOpen = [](const open_prompt& prompt) {
        ASSERT_NE(prompt.variables, nullptr);
        EXPECT_STREQ(prompt.variables->at(0).get_description(), "Zusammen");
        prompt.variables->at(0) = 1.0;
    };
    VldvOpenDocument(0);
    ASSERT_EQ(app->frames().size(), 1u);
    EXPECT_EQ(document().getSubImagesNumber(0), 2u);
    EXPECT_TRUE(document().IsModified());
    EXPECT_EQ(host.readString("GlobalOptions", "open.merged"), "true") << "kept for the next time";
    setGlobal("open.merged", "false");
    setGlobal("language", "");
}

TEST_F(EntryTest, SaveAllOffersWhatWasChanged)
{
    EXPECT_TRUE(VldvSaveAllDocuments(nullptr)) << "nothing to ask";
    EXPECT_EQ(host.dialogs, 0);
    EXPECT_FALSE(enabled(10201));
    for (const char* name : {"a.spm", "b.spm"}) app->OpenDocumentFile(surface(name).c_str());
    for (std::size_t i = 0; i < 2; ++i) {
        document(i).setString("note", "new", 0);
        document(i).SetModifiedFlag(true);
    }
    EXPECT_TRUE(enabled(10201));
    host.onDialog = [](CVarListDlg& dialog) { dialog.EndDialog(CVarListDlg::resultCancel); };
    EXPECT_FALSE(VldvSaveAllDocuments(nullptr));
    app->OnCmdMsg(57665, nullptr);
    EXPECT_FALSE(host.hasQuit) << "cancelled";
    host.onDialog = [](CVarListDlg& dialog) {
        EXPECT_EQ(dialog.layout().title, "Select files to save");
        EXPECT_EQ(dialog.rowCount(), 2u);
        EXPECT_STREQ(dialog.row(0).get_description(), "a");
        dialog.press(dialog.layout().buttons[1]); // deselect all
        EXPECT_FALSE(static_cast<bool>(dialog.row(0)));
        dialog.edit(1, "true");
        dialog.press(dialog.layout().buttons[2]);
    };
    EXPECT_TRUE(VldvSaveAllDocuments(nullptr));
    EXPECT_TRUE(document(0).IsModified());
    EXPECT_FALSE(document(1).IsModified());
    CStorageDoc again;
    again.OnOpenDocument((folder / "b.spm").wstring().c_str());
    EXPECT_STREQ(again.getString("note", 0), "new");
}

TEST_F(EntryTest, ProgramGoesOnUntilWhatWasChosenIsStored)
{
    opened(surface("a.spm"));
    app->routeCommand(10151, nullptr);
    ASSERT_TRUE(document(1).GetPathName().empty()) << "a copy has no file yet";
    host.onDialog = [](CVarListDlg& dialog) { dialog.EndDialog(CVarListDlg::resultOk); };
    EXPECT_FALSE(app->mayExit()) << "the user named no file";
    EXPECT_TRUE(document(1).IsModified());
    host.savePaths = {(folder / "missing" / "copy.spm").wstring()};
    EXPECT_FALSE(app->mayExit()) << "nothing can be written there";
    EXPECT_EQ(host.messages.size(), 1u);
    host.savePaths = {(folder / "copy.spm").wstring()};
    EXPECT_TRUE(app->mayExit());
    EXPECT_EQ(document(1).GetPathName(), (folder / "copy.spm").wstring());
    EXPECT_TRUE(std::filesystem::exists(folder / "copy.spm"));
}

TEST_F(EntryTest, WindowsAreListedActivatedAndClosed)
{
    for (const char* name : {"a.spm", "b.spm", "c.spm"}) app->OpenDocumentFile(surface(name).c_str());
    host.windowAnswer = {{0, 2}, 1};
    VldvSelectView();
    EXPECT_EQ(host.windowTitles.size(), 3u);
    ASSERT_EQ(app->frames().size(), 1u);
    EXPECT_EQ(app->activeFrame(), app->frames()[0].get());
    EXPECT_EQ(vldvSurfaceTemplate.documents().size(), 1u);
}

TEST_F(EntryTest, QuickViewTilesPlainFrames)
{
    host.openPaths = {surface("a.spm", 64), surface("b.spm", 64), surface("c.spm", 64), surface("d.spm", 64)};
    host.onOpen = [](const open_prompt& prompt) {
        ASSERT_EQ(prompt.variables->size(), 2u);
        EXPECT_EQ(int(prompt.variables->at(0)), 192);
        prompt.variables->at(0).from_string("512");
    };
    app->OnCmdMsg(10200, nullptr);
    ASSERT_EQ(app->frames().size(), 4u);
    host.onOpen = [](const open_prompt& prompt) { EXPECT_EQ(int(prompt.variables->at(0)), 512); };
    app->OnCmdMsg(10200, nullptr);
    ASSERT_EQ(app->frames().size(), 4u) << "earlier ones are closed";
    EXPECT_EQ(app->frames()[0]->menuId(), 107u);
    EXPECT_TRUE(dynamic_cast<CQVSurfView*>(app->frames()[0]->GetActiveView())->isQuickView());
    EXPECT_TRUE(app->recentFiles().empty());
    const CSize size = app->frames()[0]->GetWindowRect().Size();
    EXPECT_EQ(size, (CSize{520, 540})) << "as large as asked for, and the frame";
    EXPECT_EQ(app->frames()[2]->GetWindowRect().TopLeft(), (CPoint{2 * size.cx, 0})) << "three in a row of 1600";
    EXPECT_EQ(app->frames()[3]->GetWindowRect().TopLeft(), (CPoint{0, size.cy}));
    vldvSurfaceTemplate.ShowAllViews(&document(0), false);
    EXPECT_EQ(app->frames().size(), 4u) << "the quick view gives way to a full one";
    EXPECT_EQ(app->frames().back()->menuId(), 102u);
}

TEST_F(EntryTest, DocumentCommandsSaveRevertAndDelete)
{
    opened(surface("a.spm"));
    EXPECT_FALSE(enabled(57603));
    document().setString("note", "new", 0);
    document().SetModifiedFlag(true);
    EXPECT_TRUE(enabled(10025));
    host.answers = {1}; // discard
    app->routeCommand(10025, nullptr);
    EXPECT_STREQ(document().getString("note", 0), "");
    document().setString("note", "kept", 0);
    document().SetModifiedFlag(true);
    app->routeCommand(57603, nullptr);
    EXPECT_FALSE(document().IsModified());
    host.savePaths = {(folder / "other.spm").wstring()};
    app->routeCommand(57604, nullptr);
    EXPECT_EQ(document().GetPathName(), (folder / "other.spm").wstring());
    app->routeCommand(10026, nullptr);
    EXPECT_TRUE(app->frames().empty());
    EXPECT_FALSE(std::filesystem::exists(folder / "other.spm"));
    EXPECT_TRUE(std::filesystem::exists(folder / "a.spm"));
}

TEST_F(EntryTest, PreferencesAreTitledWithTheKindOfWindow)
{
    const SPMDataStream streams[] = {
        test_support::made_stream("position", {{4}}, VLAxis(0, 1, "nm"), [](unsigned i) { return i; }),
        test_support::made_stream("force", {{4}}, VLAxis(0, 1, "nN"), [](unsigned i) { return i * i; })};
    std::string title;
    host.onDialog = [&](CVarListDlg& dialog) {
        title = dialog.layout().title;
        dialog.EndDialog(CVarListDlg::resultCancel);
    };
    for (const auto& [isOverAnother, kind] : {std::pair{false, "Section"}, {true, "Parametric curve"}}) {
        CStorageDoc document;
        document.AddNewImages(streams, 2);
        if (isOverAnother) document.getImage(1).set_parameter_stream("position");
        const std::wstring path = (folder / kind).wstring() + L".spm";
        ASSERT_TRUE(document.OnSaveDocument(path.c_str()));
        opened(path);
        app->routeCommand(10118, nullptr);
        EXPECT_EQ(title, kind);
    }
    opened(surface("a.spm"));
    app->routeCommand(10118, nullptr);
    EXPECT_EQ(title, "Surface") << "as its own layout says";
}

TEST_F(EntryTest, WindowsOfFilesOfOneNameTellTheirPaths)
{
    std::filesystem::create_directory(folder / "other");
    CStorageDoc& changed = opened(surface("a.spm"));
    opened(surface("other/a.spm"));
    opened(surface("b.spm"));
    change(changed, 7);
    VldvSelectView();
    ASSERT_EQ(host.windowTitles.size(), 3u);
    EXPECT_EQ(host.windowTitles[0].front(), L'*');
    EXPECT_TRUE(host.windowTitles[0].ends_with(L" (" + (folder / "a.spm").wstring() + L")"));
    EXPECT_TRUE(host.windowTitles[1].ends_with(L" (" + (folder / "other" / "a.spm").wstring() + L")"));
    EXPECT_EQ(host.windowTitles[2].find(L" ("), std::wstring::npos);
}

TEST_F(EntryTest, ParametersAreATableToSearch)
{
    opened(surface("a.spm"));
    app->routeCommand(10041, nullptr);
    auto& table = *dynamic_cast<CParametersView*>(app->frames().back()->GetActiveView());
    EXPECT_EQ(table.rows(),
              (std::vector<view::parameter_row>{{"Document", "operator", "Ada"}, {"Height", "\\Date", "Monday"}}));
    EXPECT_EQ(CHeadlessHost::windowOf(table).table.size(), 3u) << "with its headings";
    table.setFilter(L"ADA");
    EXPECT_EQ(table.rows().size(), 1u);
}

TEST_F(EntryTest, TextIsAppendedLineByLine)
{
    app->OpenDocumentFile(surface("a.spm").c_str());
    bool created = false;
    CTextView* const text = GetTextView(&created, &document());
    ASSERT_NE(text, nullptr);
    EXPECT_TRUE(created);
    text->appendText(L"Curve\tAngle\n1\t30");
    text->appendText(L"Curve\tAngle\r\n2\t40\r\n");
    text->appendText(L"3");
    EXPECT_EQ(text->getText(), L"Curve\tAngle\r\n1\t30\r\n2\t40\r\n3");
    EXPECT_EQ(CHeadlessHost::windowOf(*text).content, text->getText());
    EXPECT_EQ(GetTextView(&created, &document()), text);
    EXPECT_FALSE(created);
}

TEST_F(EntryTest, FramesHaveTheirOwnToolsWhereSettingsSay)
{
    app->OpenDocumentFile(surface("a.spm").c_str());
    CFrameWnd& frame = *app->frames()[0];
    auto& view = *dynamic_cast<CDCView*>(frame.GetActiveView());
    const HeadlessWindow& window = CHeadlessHost::windowOf(frame);
    host.pump();
    const CRect plain = view.GetClientRect();
    const int height = frame.GetWindowRect().Height();
    EXPECT_EQ(window.toolbar, 0u);
    const auto choose = [&](const char* value) {
        host.onDialog = [value](CVarListDlg& dialog) {
            dialog.list().set_var("local_toolbar", value);
            dialog.EndDialog(CVarListDlg::resultOk);
        };
        app->OnCmdMsg(10202, nullptr);
        host.pump();
    };
    choose("3");
    EXPECT_EQ(window.toolbar, 102u);
    EXPECT_TRUE(window.toolsAreLarge);
    EXPECT_EQ(frame.GetWindowRect().Height(), height + HeadlessWindow::toolsHeight);
    EXPECT_EQ(view.GetClientRect(), plain) << "the view keeps its size";
    view.setOption("toolbar.size", "Small");
    EXPECT_FALSE(window.toolsAreLarge);
    view.setOption("toolbar", "false");
    EXPECT_EQ(window.toolbar, 0u);
    EXPECT_EQ(frame.GetWindowRect().Height(), height);
    view.setOption("toolbar", "true");
    choose("0");
    EXPECT_EQ(window.toolbar, 0u);
}

TEST_F(EntryTest, CancelledSettingsSettleTogether)
{
    VLGlobalVarList* const list = VLGlobalVarList::GetVarList("global_options");
    for (const char* declaration : {"test.bound(Bound),int,20,,,min(##,#test.free)", "test.free(Free),int,20"}) {
        SPMVar variable;
        variable.Init(declaration);
        list->set_var(variable);
    }
    list->set_var("test.free", "80");
    list->set_var("test.bound", "60");
    host.onDialog = [&](CVarListDlg& dialog) {
        list->set_var("test.free", "30");
        EXPECT_EQ(int((*list)["test.bound"]), 30);
        dialog.EndDialog(CVarListDlg::resultCancel);
    };
    app->OnCmdMsg(10202, nullptr);
    EXPECT_EQ(int((*list)["test.bound"]), 60);
    EXPECT_EQ(int((*list)["test.free"]), 80);
    list->ReleaseList();
}

TEST_F(EntryTest, SettingsAreKeptAndCancelled)
{
    host.onDialog = [](CVarListDlg& dialog) {
        EXPECT_EQ(dialog.layout().title, "Settings");
        for (unsigned i = 0; i < dialog.rowCount(); ++i)
            if (std::string(dialog.row(i).get_name()) == "fullscreen_mode") dialog.edit(i, "All monitors");
        dialog.EndDialog(CVarListDlg::resultOk);
    };
    app->OnCmdMsg(10202, nullptr);
    EXPECT_EQ(host.readString("GlobalOptions", "fullscreen_mode"), "2");
    app.reset();
    app = std::make_unique<CVldvApp>(host);
    EXPECT_EQ(int(base::global_option("fullscreen_mode")), 2) << "from the profile";
    host.onDialog = [](CVarListDlg& dialog) {
        dialog.edit(2, "One monitor");
        dialog.EndDialog(CVarListDlg::resultCancel);
    };
    app->OnCmdMsg(10202, nullptr);
    EXPECT_EQ(int(base::global_option("fullscreen_mode")), 2);
    app->OnCmdMsg(57665, nullptr);
    EXPECT_TRUE(host.hasQuit);
}

TEST_F(EntryTest, AReadThatTheUserCancelsOpensNothingAndSaysNothing)
{
    const std::wstring path = surface("a.spm");
    host.cancelAfter = 1;
    EXPECT_EQ(app->OpenDocumentFile(path.c_str()), nullptr);
    EXPECT_TRUE(host.messages.empty());
    EXPECT_TRUE(vldvSurfaceTemplate.documents().empty());
    host.cancelAfter = std::size_t(-1);
    EXPECT_NE(app->OpenDocumentFile(path.c_str()), nullptr);
}

} // namespace
