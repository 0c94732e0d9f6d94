#pragma once
#include "entry/global_options.h"
#include "platform/WinApp.h"

/// The workstation: templates, settings and the commands that belong to no document.
class CVldvApp : public CWinApp {
public:
    explicit CVldvApp(IHost& host_);
    ~CVldvApp() override;

    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;
    void AddToRecentFileList(const std::wstring& path) override;
    /// Offers to save what was changed. \return false when the program is to go on: cancelled, or something was not
    /// stored
    bool mayExit();

private:
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

    entry::global_options settings;
};
