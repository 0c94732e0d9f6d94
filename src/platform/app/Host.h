#pragma once
#include "base/SPMVar.h"
#include "platform/app/Clipboard.h"
#include "platform/app/Screen.h"
#include "platform/app/WindowPeer.h"
#include "platform/app/interface_queue.h"
#include "resources/menus.h"
#include "vldv_api.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

class CCmdTarget;
class CDialog;
class CVarListDlg;

namespace vldv {

class CListChooser;
struct CPictureChooser;

/// Icons of a message box.
enum class message_icon { information, warning, error };

/// Values kept for the user between runs, by section and key: any bytes, case counts. A section exists as long as it
/// holds values; a backslash in its name puts it below the one that is named by what stands in front.
class VLDV_API IProfile {
public:
    virtual ~IProfile() = default;
    /// Also a text that is an integer; no other value is read as one of another type.
    virtual std::optional<int> readInt(const std::string& section, const std::string& key) const = 0;
    virtual std::optional<std::string> readString(const std::string& section, const std::string& key) const = 0;
    virtual std::optional<std::vector<std::byte>> readBinary(const std::string& section,
                                                             const std::string& key) const = 0;
    // Writes and deletions hold for this run in any case; false: they will not outlast it.
    virtual bool writeInt(const std::string& section, const std::string& key, int value) = 0;
    virtual bool writeString(const std::string& section, const std::string& key, const std::string& value) = 0;
    virtual bool writeBinary(const std::string& section, const std::string& key, std::span<const std::byte> value) = 0;
    /// Keys of the section in the order in which they were first written.
    virtual std::vector<std::string> keys(const std::string& section) const = 0;
    /// Sections whose names begin with `prefix`, in the order in which they were first written.
    virtual std::vector<std::string> sections(const std::string& prefix) const = 0;
    /// Deleting what is not there is a success.
    virtual bool deleteValue(const std::string& section, const std::string& key) = 0;
    /// Deletes the section with all below it.
    virtual bool deleteSection(const std::string& section) = 0;
    /// Until the end of the outermost batch nothing is stored, then all at once; see `CProfileBatch`.
    virtual void beginBatch() = 0;
    /// \return as a write, for all that was collected
    virtual bool endBatch() = 0;
};

/// Changes of the profile that are stored together, at the latest when it goes.
class CProfileBatch {
public:
    explicit CProfileBatch(IProfile& profile_) : profile(&profile_) { profile->beginBatch(); }
    CProfileBatch(const CProfileBatch&) = delete;
    CProfileBatch& operator=(const CProfileBatch&) = delete;
    ~CProfileBatch()
    {
        if (profile) profile->endBatch();
    }
    /// Ends it now, once. \return as `IProfile::endBatch`
    bool end() { return std::exchange(profile, nullptr)->endBatch(); }

private:
    IProfile* profile; ///< null when it has ended
};

/// What a dialog shows of a file before it is opened.
struct file_preview {
    CSize size;
    std::vector<std::uint32_t> pixels; ///< rows from the top, each pixel with blue in its low byte; may be empty
    std::string text;                  ///< lines
};

/// What a dialog that opens files is asked to show.
struct open_prompt {
    std::wstring folder;
    std::string filter; ///< "name|pattern|name|pattern||"
    bool several = false;
    std::function<file_preview(const std::wstring& path)> preview{}; ///< empty: none is shown
    std::vector<SPMVar>* variables = nullptr; ///< shown below the list and changed by the user; null: none
};

/// A file that could not be opened.
struct file_failure {
    std::wstring path;
    std::string reason; ///< a sentence; may begin with the path
};

/// What the user chose in the list of windows.
struct window_choice {
    std::vector<std::size_t> closed;
    std::size_t activated = std::size_t(-1);
};

/// What a save dialog is asked to show.
struct save_prompt {
    std::wstring suggestedPath;
    std::string filter;        ///< "name|pattern|name|pattern||"
    std::string extension;     ///< appended to a name without one; empty: none
    bool asksToReplace = true; ///< the dialog itself asks before it names a file that exists
    std::string title = "Save As";
    /// What goes with a choice among the pairs of the filter.
    struct choice {
        std::size_t first = 0; ///< chosen at first
        /// Of each pair, shown below the list and changed by the user.
        std::vector<std::vector<SPMVar*>> variables{};
        /// The name that stands there, as it becomes when a pair is chosen; empty: it stays.
        std::function<std::wstring(const std::wstring& name, std::size_t pair)> nameFor{};
        std::function<void(std::size_t pair)> taken{}; ///< told before the dialog ends well; may be empty
    };
    std::optional<choice> filters{};
};

/// A question with answers to choose from, the first being the one that loses nothing.
struct question {
    std::string text;
    std::vector<std::string> answers;    ///< texts of buttons, "&" in front of the access key
    std::optional<std::size_t> escape{}; ///< the one that Escape stands for, which changes nothing; none: the last
};

/// Sheets for the printer.
struct print_job {
    std::wstring title;
    /// Draws a page, from 0, on the surface of the whole sheet. \return another one follows
    std::function<bool(CDC&, int page)> paint;
    bool asks = true; ///< the user chooses printer and copies first
};

/// The machine as the logic sees it. One host lives for the whole program; see `CWinApp`.
class VLDV_API IHost {
public:
    virtual ~IHost() { queue->close(); }
    virtual IProfile& profile() = 0;
    virtual void messageBox(const std::string& text, message_icon icon) = 0;
    /// The path that the user chose, or nothing when the dialog was cancelled.
    virtual std::optional<std::wstring> askSavePath(const save_prompt& prompt) = 0;
    /// The chosen paths, empty when the dialog was cancelled.
    virtual std::vector<std::wstring> askOpenPaths(const open_prompt&) { return {}; }
    virtual bool askYesNo(const std::string&) { return false; }
    /// Lists several files that could not be opened, each with its reason.
    virtual void showFailures(const std::vector<file_failure>& failures);
    /// The number of the answer that was chosen, or nothing when the user chose none. Without a user it is the first.
    virtual std::optional<std::size_t> ask(const question&) { return 0; }
    /// Puts a file where the user can take it back from. \return false when it could not be, and stays
    virtual bool moveToTrash(const std::wstring&) { return false; }
    /// Shows a dialog until it is closed through `CDialog::EndDialog`.
    virtual void runDialog(CDialog&) {}
    /// Shows a variable dialog until it is closed through `CVarListDlg::EndDialog`.
    virtual void runVariableDialog(CVarListDlg&) {}
    /// Shows it beside the program. \return false when it cannot
    virtual bool showVariableDialog(CVarListDlg&) { return false; }
    /// Offers the rows of a popup at a point of the screen; `target` supplies, updates and runs them.
    virtual void trackPopupMenu(const std::vector<menu_row>&, CPoint, CCmdTarget&) {}
    /// Shows the open windows by their titles.
    virtual window_choice chooseWindows(const std::vector<std::wstring>&) { return {}; }
    /// \return false when it was cancelled
    virtual bool runListChooser(CListChooser&) { return false; }
    /// Until OK or Cancel. \return OK, with what was chosen in it
    virtual bool runPictureChooser(CPictureChooser&) { return false; }
    /// Asks for paper and margins, the latter in thousandths of an inch.
    virtual void runPageSetup(CRect&) {}
    virtual void print(const print_job&) {}
    /// Shows how it will look.
    virtual void previewPrint(const print_job&) {}
    /// Ends the program after the present event.
    virtual void quit() {}
    /// Settings of the main window's looks may have changed.
    virtual void refreshLooks() {}
    virtual void setStatusText(const std::wstring&) {}
    /// A line for the output pane.
    virtual void output(const std::string&) {}
    /// A window for `logic`; null where there are none.
    virtual std::unique_ptr<IWindowPeer> createWindow(CWnd&, CWnd*, window_kind) { return nullptr; }
    /// Null where there is none.
    virtual IClipboard* clipboard() { return nullptr; }
    virtual IScreen* screen() { return nullptr; }
    /// Client area in which frames are placed; empty without windows.
    virtual CRect frameArea() const { return {}; }
    /// Logical dots per inch of the system; 0 when it cannot tell.
    virtual int systemDpi() const { return 0; }
    /// Nested; the cursor returns with the last `false`.
    virtual void waitCursor(bool on) = 0;
    /// Shows how much of a long task is done, 0 to 1, while the wait cursor is on, and delivers nothing but Cancel.
    /// Told as often as the task likes; the host decides when it is worth showing.
    /// \return false when the user cancelled
    virtual bool progress(double /*done*/) { return true; }

    /// Runs `work` on the interface thread between two events, in the order of the calls; from any thread, which does
    /// not wait. \return false when the program is ending: it will not run
    bool runOnInterfaceThread(std::function<void()> work) { return queue->post(std::move(work)); }
    /// Behind it; a thread that may outlive the host keeps it and asks it in place of the host.
    const std::shared_ptr<vldv::platform::interface_queue>& interfaceQueue() const noexcept { return queue; }

private:
    std::shared_ptr<vldv::platform::interface_queue> queue = std::make_shared<vldv::platform::interface_queue>();
};

} // namespace vldv
