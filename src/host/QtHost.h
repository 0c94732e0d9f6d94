#pragma once
#include "host/peer/ReadProgress.h"
#include "host/peer/qt_printing.h"

#include <QObject>
#include <memory>

namespace vldv::host {

class CMainWindow;

/// The machine as a desktop: windows, prompts, clipboard and screen of the toolkit.
class CQtHost : public QObject, public IHost {
public:
    explicit CQtHost(IProfile& profile_);
    ~CQtHost() override;

    /// Where frames, status and output go; not owned.
    void setMainWindow(CMainWindow* window) noexcept { main = window; }

    IProfile& profile() override { return store; }
    void messageBox(const std::string& text, message_icon icon) override;
    bool askYesNo(const std::string& text) override;
    void showFailures(const std::vector<file_failure>& failures) override;
    std::optional<std::size_t> ask(const question& asked) override;
    bool moveToTrash(const std::wstring& path) override;
    std::vector<std::wstring> askOpenPaths(const open_prompt& prompt) override;
    std::optional<std::wstring> askSavePath(const save_prompt& prompt) override;
    void runDialog(CDialog& dialog) override;
    void runVariableDialog(CVarListDlg& dialog) override;
    bool showVariableDialog(CVarListDlg& dialog) override;
    window_choice chooseWindows(const std::vector<std::wstring>& titles) override;
    bool runListChooser(CListChooser& chooser) override;
    bool runPictureChooser(CPictureChooser& chooser) override;
    void runPageSetup(CRect& margins) override;
    void print(const print_job& job) override;
    void previewPrint(const print_job& job) override;
    void quit() override;
    void trackPopupMenu(const std::vector<menu_row>& rows, CPoint point, CCmdTarget& target) override;
    void refreshLooks() override;
    void setStatusText(const std::wstring& text) override;
    void output(const std::string& line) override;
    std::unique_ptr<IWindowPeer> createWindow(CWnd& logic, CWnd* parent, window_kind kind) override;
    IClipboard* clipboard() override;
    IScreen* screen() override;
    CRect frameArea() const override;
    int systemDpi() const override;
    void waitCursor(bool on) override;
    bool progress(double done) override;

private:
    IProfile& store;
    CMainWindow* main = nullptr;
    std::unique_ptr<IClipboard> clips;
    std::unique_ptr<IScreen> display;
    printing printer;
    CReadProgress reading; ///< during the innermost wait cursor: what went wrong is told under the next one
};

} // namespace vldv::host
