#pragma once
#include "platform/app/View.h"
#include "platform/app/menu_item.h"
#include "vldv_api.h"

#include <memory>

class CDocTemplate;
class CDocument;

/// The window around a view, which it owns. The application owns frames; `DestroyFrame` takes it out at once and frees
/// it later, between two events.
class VLDV_API CFrameWnd : public CWnd {
public:
    ~CFrameWnd() override;

    /// Makes the frame's window and the view's inside it. `template_` names menu and strings by `menuId`.
    virtual bool LoadFrame(CDocTemplate* template_, unsigned menuId, std::unique_ptr<CView> view_);

    CView* GetActiveView() const noexcept { return pane.get(); }
    CDocTemplate* GetDocTemplate() const noexcept { return docTemplate; }
    /// Number of the menu, toolbar and strings of the frame.
    unsigned menuId() const noexcept { return menu; }

    /// Brings it to the front of the main window.
    void ActivateFrame();
    static constexpr const wchar_t* changedMark = L"*"; ///< before the title of a document with unsaved changes
    /// Title from document and view. \param addNumber  with ":N" behind it where a document has several frames
    virtual void OnUpdateFrameTitle(bool addNumber);
    /// Of this frame among those of its document, from 1; 0 while it is the only one.
    int windowNumber() const noexcept { return numberAmongFrames; }
    /// Numbers the frames of a document in the order of their views and renames those whose number changed.
    static void numberFrames(const CDocument& document);
    /// Which tools the frame shows may have changed.
    virtual void OnResetToolbar() {}
    /// Buttons that the view adds to those of its toolbar's resource, made now.
    virtual std::vector<vldv::toolbar_button> addedButtons() { return {}; }
    /// The view's rectangle inside the frame's client area.
    virtual CRect viewRect() const { return GetClientRect(); }
    /// Makes the frame as large as a view of this outer size needs.
    virtual void fitToView(CSize viewOuter);
    /// Puts the view where it belongs. One that fills the screen stays there.
    virtual void RecalcLayout();

    /// Takes view and frame out of document, application and screen. Nothing of them may be used after the running
    /// handler.
    void DestroyFrame();
    bool isDestroyed() const noexcept { return destroyed; }

    void OnSize(CSize) override { RecalcLayout(); }
    void OnClose() override { DestroyFrame(); }
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;
    bool AppendMenuItems(unsigned first, std::vector<vldv::menu_item>& items) override;

private:
    std::unique_ptr<CView> pane;
    CDocTemplate* docTemplate = nullptr;
    unsigned menu = 0;
    int numberAmongFrames = 0;
    bool destroyed = false;
};
