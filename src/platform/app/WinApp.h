#pragma once
#include "platform/app/FrameWnd.h"
#include "platform/app/Host.h"
#include "vldv_api.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class CWinApp;

namespace vldv {

/// Does `work`; files that cannot be opened meanwhile are told at its end in one list, a single one as ever. Of several
/// within each other the outermost tells. Where `work` throws there is no dialog: the output pane has the list then.
void tell_failures_together(CWinApp& app, const std::function<void()>& work);

} // namespace vldv

/// The application: what a program has one of. Created by the host program before any document, current until it ends.
class VLDV_API CWinApp : public CCmdTarget {
public:
    explicit CWinApp(vldv::IHost& host_);
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;
    ~CWinApp() override;

    vldv::IHost& host() noexcept { return machine; }
    vldv::IProfile& profile() { return machine.profile(); }

    /// Puts a path at the head of the recent-file list, once.
    virtual void AddToRecentFileList(const std::wstring& path);
    /// Takes a path out of it: the file did not open.
    virtual void RemoveFromRecentFileList(const std::wstring& path) { std::erase(recent, path); }
    const std::vector<std::wstring>& recentFiles() const noexcept { return recent; }

    // Templates; they live longer than the application.
    void AddDocTemplate(CDocTemplate* added) { templates.push_back(added); }
    const std::vector<CDocTemplate*>& docTemplates() const noexcept { return templates; }
    /// By the number of its strings; null when it is not there.
    CDocTemplate* findTemplate(unsigned resourceId) const noexcept;
    /// Opens a file by the template that suits it best, or brings its document to the front when it is open already.
    virtual CDocument* OpenDocumentFile(const wchar_t* path);
    /// Brings the frame of its first view to the front.
    static void showDocument(const CDocument& document);

    /// Tells the user why a file was not opened: at once, or with the others by `tell_failures_together`.
    void reportFailure(const std::wstring& path, const std::string& reason);

    // Frames, in the order of their making.
    CFrameWnd* addFrame(std::unique_ptr<CFrameWnd> frame);
    const std::vector<std::unique_ptr<CFrameWnd>>& frames() const noexcept { return opened; }
    CFrameWnd* activeFrame() const noexcept { return active; }
    /// Tells the views of both frames where it is another one.
    void setActiveFrame(CFrameWnd* frame);
    void closeAllFrames();
    /// A frame that closes is not active any more.
    void frameLeaves(CFrameWnd& frame);
    /// Keeps what has closed until `freeClosed`, which the host calls between two events.
    void disposeFrame(CFrameWnd& frame);
    void disposeDocument(std::unique_ptr<CDocument> document);
    /// A document is about to lose its content for good: it has no views any more, or reads its file again.
    virtual void documentCloses(CDocument&) {}
    /// The file at a full path is about to be replaced or moved away. Never throws.
    virtual void fileGoes(const std::wstring&) noexcept {}
    void freeClosed();

    /// The active frame's view and document, then the application.
    bool routeCommand(unsigned id, CCmdUI* ui);
    /// Asks along the way of `routeCommand` for the entries of a menu's dynamic row.
    bool routeMenuItems(unsigned first, std::vector<vldv::menu_item>& items);

    /// System dots per inch / 96, asked once; 1 when the system cannot tell.
    double dpiMultiplier();

    static constexpr std::size_t maxRecentFiles = 16;

private:
    friend void vldv::tell_failures_together(CWinApp& app, const std::function<void()>& work);
    vldv::IHost& machine;
    int failureLists = 0; ///< that are being collected
    std::vector<vldv::file_failure> failures;
    std::vector<std::wstring> recent;
    std::vector<CDocTemplate*> templates;
    std::vector<std::unique_ptr<CFrameWnd>> opened;
    CFrameWnd* active = nullptr;
    std::vector<std::unique_ptr<CFrameWnd>> closedFrames; ///< a frame's view looks at its document no more
    std::vector<std::unique_ptr<CDocument>> closedDocuments;
    std::optional<double> multiplier;
};

/// The current application, or null before it is created and after it is gone.
VLDV_API CWinApp* AfxGetApp() noexcept;

/// Shows the wait cursor for its lifetime; does nothing without an application.
class VLDV_API CWaitCursor {
public:
    CWaitCursor();
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
    ~CWaitCursor();
};
