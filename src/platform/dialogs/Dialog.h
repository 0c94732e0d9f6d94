#pragma once
#include "platform/app/Window.h"
#include "resources/dialogs.h"
#include "vldv_api.h"

/// A modal dialog whose controls stand in the resources. A host makes the widgets and tells what the user does; panes
/// are windows that the dialog draws.
class VLDV_API CDialog {
public:
    static constexpr int resultOk = 1, resultCancel = 2; ///< also the numbers of the two buttons

    /// \param parent_  null: the main window
    CDialog(unsigned resource, CWnd* parent_) : content(vldv::dialog_resource(resource)), owner(parent_) {}
    CDialog(const CDialog&) = delete;
    CDialog& operator=(const CDialog&) = delete;
    virtual ~CDialog() = default;

    const vldv::dialog_layout& layout() const noexcept { return content; }
    CWnd* parent() const noexcept { return owner; }
    /// Runs it until it is closed. \return resultOk or resultCancel
    int DoModal();
    void EndDialog(int result_) noexcept { closedBy = result_; }
    bool isOpen() const noexcept { return closedBy == 0; }
    int result() const noexcept { return closedBy; }

    /// A button was pressed, a choice was made.
    virtual void OnCommand(unsigned id);
    virtual void OnOK() { EndDialog(resultOk); }
    virtual void OnCancel() { EndDialog(resultCancel); }
    /// A choice is marked when the dialog opens.
    virtual bool isChecked(unsigned) const { return false; }
    /// The window of a pane.
    virtual CWnd* pane(unsigned) { return nullptr; }

private:
    vldv::dialog_layout content;
    CWnd* owner;
    int closedBy = 0;
};
