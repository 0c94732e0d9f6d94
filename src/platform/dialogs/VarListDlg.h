#pragma once
#include "platform/dialogs/VarListCtrl.h"
#include "platform/dialogs/variable_layout.h"
#include "vldv_api.h"

#include <istream>
#include <memory>
#include <string>

class CVarListDlg;
class CWnd;

/// Told of the user buttons of a variable dialog.
class VLDV_API CVarListDlgHandler {
public:
    virtual void OnCommandMessage(const char* id, CVarListDlg* dialog) = 0;

protected:
    ~CVarListDlgHandler() = default;
};

namespace vldv {

/// A window of the host around a variable dialog.
class VLDV_API IVarListDialogPeer {
public:
    virtual ~IVarListDialogPeer() = default;
    /// The dialog has ended: the window goes and asks for nothing more.
    virtual void close() = 0;
};

} // namespace vldv

/// The dialog that edits a list of variables in a grid, with the buttons of its layout. A host makes the widgets.
class VLDV_API CVarListDlg {
public:
    static constexpr int resultOk = 1, resultCancel = 2;

    CVarListDlg() = default;
    CVarListDlg(const CVarListDlg&) = delete;
    CVarListDlg& operator=(const CVarListDlg&) = delete;
    /// A window that is still open goes too.
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
    /// What the button that accepts does.
    void setAcceptTip(const std::string& text);
    void EndDialog(int result);
    int result() const noexcept { return closedBy; }
    bool isOpen() const noexcept { return closedBy == 0; }

    const vldv::platform::variable_layout& layout() const noexcept { return dialogLayout; }
    CVarListCtrl& grid() noexcept { return rows; }
    SPMVarList& list() const noexcept { return *rows.GetVarList(); }
    CWnd* parent() const noexcept { return owner; }

    // What the grid shows and takes.
    unsigned rowCount() const { return rows.rowCount(); }
    const SPMVar& row(unsigned index) const { return rows.row(index); }
    std::string rowText(unsigned index) const { return rows.rowText(index); }
    bool isHeading(unsigned index) const { return rows.isHeading(index); }
    bool edit(unsigned index, const char* text) { return rows.edit(index, text); }
    /// A button of the layout was pressed.
    void press(const vldv::platform::layout_button& button);

    void setPeer(std::unique_ptr<vldv::IVarListDialogPeer> peer_) { peer = std::move(peer_); }

private:
    void setUp(SPMVarList* list, std::istream* layoutXml, unsigned fallback, CWnd* parent);

    CVarListCtrl rows;
    vldv::platform::variable_layout dialogLayout;
    CVarListDlgHandler* handler = nullptr;
    CWnd* owner = nullptr;
    int closedBy = 0;
    std::unique_ptr<vldv::IVarListDialogPeer> peer;
};
