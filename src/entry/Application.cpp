#include "entry/Application.h"

#include "base/text.h"
#include "entry/global_options.h"
#include "entry/kept_work.h"
#include "entry/save_documents.h"
#include "entry/templates.h"
#include "platform/dialogs/VarListDlg.h"
#include "platform/files/interface_directory.h"
#include "resources/commands.h"
#include "view/Scale.h"
#include "vldv.h"

#include <fstream>

namespace vldv {

namespace {

constexpr const char* recentSection = "Recent File List";

std::string recent_key(std::size_t index) { return "File" + std::to_string(index + 1); }

} // namespace

CVldvApp::CVldvApp(IHost& host_)
    : CWinApp(host_), settings(std::make_unique<entry::global_options>()), kept(std::make_unique<entry::kept_work>())
{
    entry::register_classes();
    entry::add_templates(*this);
    // Backwards, because each one that is added goes to the front.
    for (std::size_t i = maxRecentFiles; i-- > 0;)
        if (const auto path = profile().readString(recentSection, recent_key(i)))
            CWinApp::AddToRecentFileList(base::widen(*path));
}

CVldvApp::~CVldvApp()
{
    // Frames close while settings and templates still stand.
    closeAllFrames();
    kept->finish();
}

void CVldvApp::keepWork(const std::filesystem::path& state)
{
    kept->begin(state);
    kept->offerRecovery();
}

void CVldvApp::stepKeeping() { kept->step(); }

void CVldvApp::leaveWork() { kept->leave(); }

void CVldvApp::documentCloses(CDocument& document) { kept->documentCloses(document); }

void CVldvApp::fileGoes(const std::wstring& path) noexcept { kept->fileGoes(path); }

void CVldvApp::AddToRecentFileList(const std::wstring& path)
{
    CWinApp::AddToRecentFileList(path);
    storeRecentFiles();
}

void CVldvApp::RemoveFromRecentFileList(const std::wstring& path)
{
    CWinApp::RemoveFromRecentFileList(path);
    storeRecentFiles();
}

void CVldvApp::storeRecentFiles()
{
    const CProfileBatch together(profile());
    for (std::size_t i = 0; i < recentFiles().size(); ++i)
        profile().writeString(recentSection, recent_key(i), base::narrow(recentFiles()[i]));
    for (std::size_t i = recentFiles().size(); i < maxRecentFiles; ++i)
        profile().deleteValue(recentSection, recent_key(i));
}

bool CVldvApp::OnCmdMsg(unsigned id, CCmdUI* ui)
{
    static constexpr command_row<CVldvApp> rows[] = {
        {commands::open, &CVldvApp::OnFileOpen},
        {commands::quickView, &CVldvApp::OnQuickView},
        {commands::saveAll, &CVldvApp::OnSaveAll, &CVldvApp::OnUpdateSaveAll},
        {commands::pageSetup, &CVldvApp::OnPageSetup},
        {commands::settings, &CVldvApp::OnSettings},
        {commands::windows, &CVldvApp::OnWindows, &CVldvApp::OnUpdateWindows},
        {commands::exit, &CVldvApp::OnExit},
        {commands::firstClosed, commands::lastClosed, &CVldvApp::OnReopenClosed, &CVldvApp::OnUpdateReopenClosed},
        {commands::firstRecent, commands::lastRecent, &CVldvApp::OnRecentFile, &CVldvApp::OnUpdateRecentFile},
    };
    if (dispatch_command<CVldvApp>(*this, rows, id, ui) || CWinApp::OnCmdMsg(id, ui)) return true;
    // Palettes and modes belong to the scale that the others follow.
    CScale* const scale = CScale::GetStaticScale();
    return scale && scale->OnCmdMsg(id, ui);
}

bool CVldvApp::AppendMenuItems(unsigned first, std::vector<menu_item>& items)
{
    const auto append = [&](const std::string& label) {
        items.push_back({.id = first + static_cast<unsigned>(items.size()), .text = menu_text(label)});
    };
    if (first == commands::firstRecent) {
        for (const std::wstring& path : recentFiles()) append(base::narrow(path));
        return true;
    }
    if (first == commands::firstClosed) {
        for (const std::string& label : kept->closedLabels()) append(label);
        return true;
    }
    CScale* const scale = CScale::GetStaticScale();
    return scale && scale->AppendMenuItems(first, items);
}

bool CVldvApp::mayExit() { return entry::save_documents(nullptr, true) == entry::save_outcome::done; }

void CVldvApp::OnFileOpen() { VldvOpenDocument(1); }
void CVldvApp::OnQuickView() { VldvOpenQuickView(); }
void CVldvApp::OnSaveAll() { VldvSaveAllDocuments(nullptr); }
void CVldvApp::OnPageSetup() { VldvPageSetup(); }
void CVldvApp::OnWindows() { VldvSelectView(); }

void CVldvApp::OnUpdateSaveAll(CCmdUI& ui) { ui.Enable(!entry::unsaved_documents(*this).empty()); }

void CVldvApp::OnUpdateWindows(CCmdUI& ui) { ui.Enable(!frames().empty()); }

void CVldvApp::OnSettings()
{
    SPMVarList& list = settings->list();
    const std::vector<SPMVar> before(list.all().begin(), list.all().end());
    std::ifstream layout(platform::find_interface_file("Settings.xml"), std::ios::binary);
    CVarListDlg dialog;
    dialog.CreateModalDlg(&list, layout ? &layout : nullptr, platform::settingsLayout, nullptr);
    // Values come back with their time stamps: handlers of what the dialog changed run again, those of the rest do not.
    if (dialog.DoModal() != CVarListDlg::resultOk)
        list.batch([&] {
            for (const SPMVar& variable : before) list.set_var(variable);
        });
    for (const std::unique_ptr<CFrameWnd>& frame : frames()) frame->OnResetToolbar();
    host().refreshLooks();
}

void CVldvApp::OnExit()
{
    if (mayExit()) host().quit();
}

void CVldvApp::OnRecentFile(unsigned id)
{
    const std::size_t index = id - commands::firstRecent;
    if (index >= recentFiles().size()) return;
    const std::wstring path = recentFiles()[index]; // opening moves it to the front
    OpenDocumentFile(path.c_str());
}

void CVldvApp::OnUpdateRecentFile(CCmdUI& ui)
{
    const std::size_t index = ui.m_nID - commands::firstRecent;
    ui.Enable(index < recentFiles().size());
}

void CVldvApp::OnReopenClosed(unsigned id) { kept->reopen(id - commands::firstClosed); }

void CVldvApp::OnUpdateReopenClosed(CCmdUI& ui)
{
    const std::size_t index = ui.m_nID - commands::firstClosed;
    ui.Enable(index < kept->closedCount());
}

} // namespace vldv
