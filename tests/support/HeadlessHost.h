#pragma once
#include "platform/app/Host.h"
#include "platform/app/WinApp.h"
#include "platform/dialogs/Dialog.h"
#include "platform/dialogs/ListChooser.h"
#include "platform/dialogs/PictureChooser.h"
#include "platform/dialogs/VarListDlg.h"
#include "platform/files/paths.h"
#include "platform/profile/profile_table.h"
#include "support/HeadlessWindow.h"

#include <deque>
#include <functional>
#include <string>
#include <vector>

/// A clipboard that keeps what it is given.
class HeadlessClipboard : public IClipboard {
public:
    bool open() override { return !busy; }
    void close() override {}
    void empty() override
    {
        content.reset();
        bitmap = {};
    }
    std::optional<std::wstring> text() const override { return content; }
    bool setText(const std::wstring& text) override
    {
        content = text;
        return true;
    }
    bool setBitmap(const CBitmap& source) override
    {
        bitmap = {source.header.biWidth, source.header.biHeight};
        return true;
    }

    bool busy = false;
    std::optional<std::wstring> content;
    CSize bitmap; ///< size of the last one
};

class HeadlessScreen : public IScreen {
public:
    std::vector<CRect> monitors() const override { return rects; }
    CPoint pointer() const override { return place; }
    void setPointer(CPoint point) override { place = point; }
    bool isKeyDown(unsigned key) const override { return std::ranges::find(keys, key) != keys.end(); }
    int captionHeight() const override { return HeadlessWindow::caption; }

    std::vector<CRect> rects = {CRect(0, 0, 1920, 1080)};
    CPoint place;
    std::vector<unsigned> keys; ///< that are down
};

/// A machine for tests: prompts answer from a script and are recorded, windows have no screen, the profile is a table.
class CHeadlessHost : public IHost, public IProfile {
public:
    IProfile& profile() override { return *this; }
    void messageBox(const std::string& text, message_icon) override { messages.push_back(text); }
    std::optional<std::wstring> askSavePath(const save_prompt& prompt) override
    {
        savePrompts.push_back(prompt);
        if (onSave) onSave(prompt);
        if (savePaths.empty()) return std::nullopt;
        std::wstring path = savePaths.front();
        savePaths.pop_front();
        return path;
    }
    bool askYesNo(const std::string& text) override
    {
        messages.push_back(text);
        return yes;
    }
    std::optional<std::size_t> ask(const question& asked) override
    {
        questions.push_back(asked);
        if (answers.empty()) return 0;
        const std::optional<std::size_t> answer = answers.front();
        answers.pop_front();
        return answer;
    }
    bool moveToTrash(const std::wstring& path) override
    {
        if (hasTrash) trash.push_back(path);
        return hasTrash && std::filesystem::remove(platform::to_path(path));
    }
    std::vector<std::wstring> askOpenPaths(const open_prompt& prompt) override
    {
        openPrompts.push_back(prompt);
        if (onOpen) onOpen(prompt);
        return openPaths;
    }
    void runDialog(CDialog& dialog) override
    {
        ++dialogs;
        if (onForm) onForm(dialog);
    }
    void runVariableDialog(CVarListDlg& dialog) override
    {
        ++dialogs;
        if (onDialog) onDialog(dialog);
    }
    bool showVariableDialog(CVarListDlg& dialog) override
    {
        runVariableDialog(dialog);
        return true;
    }
    void trackPopupMenu(const std::vector<menu_row>& rows, CPoint, CCmdTarget& target) override
    {
        popups.push_back(rows);
        std::vector<menu_item> items;
        for (const menu_row& row : rows)
            if (row.kind == menu_kind::dynamic) target.AppendMenuItems(row.id, items);
        popupItems = items.size();
        if (popupChoice != 0) target.OnCmdMsg(popupChoice, nullptr);
    }
    window_choice chooseWindows(const std::vector<std::wstring>& titles) override
    {
        windowTitles = titles;
        return windowAnswer;
    }
    void runPageSetup(CRect&) override {}
    void print(const print_job& job) override { printed.push_back(job); }
    void previewPrint(const print_job& job) override { previewed.push_back(job); }
    bool runListChooser(CListChooser& chooser) override { return onChoose && onChoose(chooser); }
    bool runPictureChooser(CPictureChooser& chooser) override { return onPictures && onPictures(chooser); }
    void quit() override { hasQuit = true; }
    void setStatusText(const std::wstring& text) override { statusText = text; }
    void output(const std::string& line) override { outputLines.push_back(line); }
    std::unique_ptr<IWindowPeer> createWindow(CWnd& logic, CWnd* parent, window_kind kind) override
    {
        auto made = std::make_unique<HeadlessWindow>(
            logic, parent, kind,
            [this](CWnd* resized) {
                if (std::ranges::find(sizeEvents, resized) == sizeEvents.end()) sizeEvents.push_back(resized);
            },
            [this](HeadlessWindow* gone) {
                std::erase(windows, gone);
                std::erase(sizeEvents, &gone->logic);
            },
            focus);
        windows.push_back(made.get());
        return made;
    }
    IClipboard* clipboard() override { return &clips; }
    IScreen* screen() override { return &display; }
    CRect frameArea() const override { return area; }

    /// What happens between two events: sizes are told, closed windows freed.
    void pump()
    {
        while (!sizeEvents.empty()) {
            CWnd* const resized = sizeEvents.front();
            sizeEvents.erase(sizeEvents.begin());
            if (windowOf(*resized).takesNewSize()) resized->OnSize(resized->GetClientRect().Size());
        }
        while (interfaceQueue()->runNext()) continue;
        if (CWinApp* const app = AfxGetApp()) app->freeClosed();
    }
    static HeadlessWindow& windowOf(const CWnd& logic) { return *static_cast<HeadlessWindow*>(logic.getPeer()); }

    int systemDpi() const override { return dpi; }
    void waitCursor(bool on) override { waiting += on ? 1 : -1; }
    bool progress(double done) override
    {
        progressTold.push_back(done);
        return progressTold.size() < cancelAfter;
    }

    std::optional<int> readInt(const std::string& section, const std::string& key) const override
    {
        return values.readInt(section, key);
    }
    std::optional<std::string> readString(const std::string& section, const std::string& key) const override
    {
        return values.readString(section, key);
    }
    std::optional<std::vector<std::byte>> readBinary(const std::string& section, const std::string& key) const override
    {
        return values.readBinary(section, key);
    }
    bool writeInt(const std::string& section, const std::string& key, int value) override
    {
        return write(section, key, value);
    }
    bool writeString(const std::string& section, const std::string& key, const std::string& value) override
    {
        return write(section, key, value);
    }
    bool writeBinary(const std::string& section, const std::string& key, std::span<const std::byte> value) override
    {
        return write(section, key, std::vector<std::byte>(value.begin(), value.end()));
    }
    std::vector<std::string> keys(const std::string& section) const override { return values.keys(section); }
    std::vector<std::string> sections(const std::string& prefix) const override { return values.sections(prefix); }
    bool deleteValue(const std::string& section, const std::string& key) override
    {
        if (!mayWrite()) return false;
        values.erase(section, key);
        return true;
    }
    bool deleteSection(const std::string& section) override
    {
        if (!mayWrite()) return false;
        values.eraseSection(section);
        return true;
    }
    void beginBatch() override { ++batches; }
    bool endBatch() override
    {
        --batches;
        return true;
    }

    std::vector<std::string> messages;
    std::vector<save_prompt> savePrompts;
    std::function<void(const save_prompt&)> onSave;
    std::deque<std::wstring> savePaths; ///< answers of the save dialog; none left: cancelled
    int dpi = 0;                        ///< 0: cannot tell
    std::vector<open_prompt> openPrompts;
    std::vector<std::wstring> openPaths; ///< answer of the open dialog
    bool yes = false;                    ///< answer of yes-no boxes
    std::vector<question> questions;
    std::deque<std::optional<std::size_t>> answers; ///< to questions; none left: the first one
    std::vector<std::wstring> trash;                ///< what was moved there
    bool hasTrash = true;
    std::function<void(const open_prompt&)> onOpen;
    std::function<void(CVarListDlg&)> onDialog;
    std::function<void(CDialog&)> onForm;
    int dialogs = 0;
    std::vector<std::vector<menu_row>> popups;
    std::size_t popupItems = 0; ///< that the target supplied to the last one
    unsigned popupChoice = 0;   ///< 0: none
    std::wstring statusText;
    std::vector<std::wstring> windowTitles;
    window_choice windowAnswer;
    std::vector<print_job> printed, previewed;
    std::function<bool(CListChooser&)> onChoose; ///< none: cancelled
    std::function<bool(CPictureChooser&)> onPictures;
    bool hasQuit = false;
    std::vector<std::string> outputLines;
    std::vector<HeadlessWindow*> windows;
    std::vector<CWnd*> sizeEvents;
    CWnd* focus = nullptr;
    HeadlessClipboard clips;
    HeadlessScreen display;
    CRect area{0, 0, 1600, 900};
    int waiting = 0;
    std::vector<double> progressTold;
    std::size_t cancelAfter = std::size_t(-1); ///< Cancel is pressed when progress was told this often
    int writesUntilFailure = -1;               ///< changes of the profile that succeed; negative: all
    int batches = 0;                           ///< of the profile that are open

private:
    bool mayWrite()
    {
        if (writesUntilFailure == 0) return false;
        if (writesUntilFailure > 0) --writesUntilFailure;
        return true;
    }
    bool write(const std::string& section, const std::string& key, const platform::profile_value& value)
    {
        if (!mayWrite()) return false;
        values.set(section, key, value);
        return true;
    }

    platform::profile_table values;
};
