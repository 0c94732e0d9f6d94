#pragma once
#include "platform/app/WinApp.h"
#include "vldv_api.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace vldv::entry {
class global_options;
class kept_work;
} // namespace vldv::entry

namespace vldv {

/// The workstation: templates, settings and the commands that belong to no document.
class VLDV_API CVldvApp : public CWinApp {
public:
    explicit CVldvApp(IHost& host_);
    ~CVldvApp() override;

    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;
    bool AppendMenuItems(unsigned first, std::vector<menu_item>& items) override;
    void AddToRecentFileList(const std::wstring& path) override;
    void RemoveFromRecentFileList(const std::wstring& path) override;
    /// Offers to save what was changed. \return false when the program is to go on: cancelled, or something was not
    /// stored
    bool mayExit();

    /// From now on unsaved work is kept in this folder, and what a program left there that died is offered.
    void keepWork(const std::filesystem::path& state);
    /// To be called many times a second: keeps what has changed since. Takes a few milliseconds at most.
    void stepKeeping();
    /// The session ends, and with it the program, without a question: the next start offers what was open and changed.
    void leaveWork();
    void documentCloses(CDocument& document) override;
    void fileGoes(const std::wstring& path) noexcept override;

private:
    void storeRecentFiles();
    void OnFileOpen();
    void OnQuickView();
    void OnSaveAll();
    void OnUpdateSaveAll(CCmdUI& ui);
    void OnPageSetup();
    void OnSettings();
    void OnWindows();
    void OnUpdateWindows(CCmdUI& ui);
    void OnExit();
    void OnRecentFile(unsigned id);
    void OnUpdateRecentFile(CCmdUI& ui);

    void OnReopenClosed(unsigned id);
    void OnUpdateReopenClosed(CCmdUI& ui);

    std::unique_ptr<entry::global_options> settings;
    std::unique_ptr<entry::kept_work> kept;
};

} // namespace vldv
