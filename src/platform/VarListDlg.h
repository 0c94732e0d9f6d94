#pragma once
#include "base/SPMVarList.h"
#include "platform/variable_layout.h"

#include <istream>
#include <memory>
#include <string>

class CVarListDlg;
class CWnd;

/// Told of the user buttons of a variable dialog.
class CVarListDlgHandler {
public:
    virtual void OnCommandMessage(const char* id, CVarListDlg* dialog) = 0;

protected:
    ~CVarListDlgHandler() = default;
};

/// A window of the host around a variable dialog.
class IVarListDialogPeer {
public:
    virtual ~IVarListDialogPeer() = default;
    /// Shows the present values.
    virtual void refresh() = 0;
};

/// The dialog that edits a list of variables in a grid: what it shows and what edits do. A host makes the widgets. The
/// list changes with every edit, so that those who listen follow live.
class CVarListDlg : private SPMVarListHandler {
public:
    static constexpr int resultOk = 1, resultCancel = 2;

    CVarListDlg() = default;
    CVarListDlg(const CVarListDlg&) = delete;
    CVarListDlg& operator=(const CVarListDlg&) = delete;
    ~CVarListDlg();

    /// Sets the dialog up on `list`, which must outlive it.
    /// \param layoutXml  null or unusable: `fallback`, a layout of the string table
    bool CreateModalDlg(SPMVarList* list, std::istream* layoutXml, unsigned fallback, CWnd* parent);
    /// Runs it until it is closed. \return resultOk or resultCancel
    int DoModal();
    /// Shows it beside the program; `EndDialog` or the user closes it.
    bool CreateModelessDlg(SPMVarList* list, std::istream* layoutXml, unsigned fallback, CWnd* parent);

    void setHandler(CVarListDlgHandler* handler_) noexcept { handler = handler_; }
    void setTitle(const std::string& text) { dialogLayout.title = text; }
    void EndDialog(int result);
    int result() const noexcept { return closedBy; }
    bool isOpen() const noexcept { return closedBy == 0; }

    const platform::variable_layout& layout() const noexcept { return dialogLayout; }
    SPMVarList& list() const noexcept { return *variables; }
    CWnd* parent() const noexcept { return owner; }

    /// Rows are the variables with a label, in the order of the list.
    unsigned rowCount() const;
    const SPMVar& row(unsigned index) const;
    std::string rowText(unsigned index) const;
    /// Stores what the user typed or chose. \return false, with the value as it was, when it cannot be
    bool edit(unsigned index, const char* text);
    /// A button of the layout was pressed.
    void press(const platform::layout_button& button);

    void setPeer(std::unique_ptr<IVarListDialogPeer> peer_) { peer = std::move(peer_); }

private:
    void OnFireVariableChange(int index, const SPMVarList* list) override;
    void setUp(SPMVarList* list, std::istream* layoutXml, unsigned fallback, CWnd* parent);

    SPMVarList* variables = nullptr;
    platform::variable_layout dialogLayout;
    CVarListDlgHandler* handler = nullptr;
    CWnd* owner = nullptr;
    int closedBy = 0;
    std::unique_ptr<IVarListDialogPeer> peer;
};
