#pragma once
#include "platform/app/Window.h"
#include "vldv_api.h"

#include <cstdint>
#include <string>
#include <variant>

class CDocument;
class CFrameWnd;
class CView;

namespace vldv {

/// What goes along with an update hint: nothing, a view, a point, a text, a number or a rectangle.
using hint_object = std::variant<std::monostate, CView*, CPoint, std::string, double, CRect>;

} // namespace vldv

/// What shows a document, in the pane of a frame. Attached by `CDocument::AddView`, detached by `RemoveView` or by its
/// destructor.
class VLDV_API CView : public CWnd {
public:
    ~CView() override;

    CDocument* GetDocument() const noexcept { return attachedTo; }
    CFrameWnd* GetParentFrame() const noexcept;
    /// Something changed. \param sender  the view that changed it, or null; \param hint  what, see `CDocument`
    virtual void OnUpdate(CView* sender, std::uint32_t hint, const vldv::hint_object& object) = 0;
    /// The view has its document, frame and window. Passes hint 0 to the view.
    virtual void OnInitialUpdate() { OnUpdate(nullptr, 0, {}); }
    /// Draws for the window or the printer.
    virtual void OnDraw(CDC&) {}
    /// The frame goes: the view has left its document already and may let others go; its memory is freed later.
    virtual void OnFrameClosed() {}

    /// The view became that of the active frame (`activates`), or is no longer. `activated` and `deactivated` are the
    /// views of the frames that change, null where there is none; either way both are attached still.
    virtual void OnActivateView(bool /*activates*/, CView* /*activated*/, CView* /*deactivated*/) {}

    /// What kind of pane the host makes for it.
    virtual vldv::window_kind kind() const noexcept { return vldv::window_kind::view; }

    /// It has left its frame and fills a screen.
    virtual bool isFullScreen() const noexcept { return false; }

    // What the host tells of a table. Rows and columns count from 0; headings are no row.
    /// What the user typed into the search field.
    virtual void setFilter(const std::wstring&) {}
    /// A heading was clicked.
    virtual void OnTableHeading(unsigned /*column*/) {}
    /// A row became the current one, by click or key.
    virtual void OnTableRow(unsigned /*row*/) {}
    /// A row was clicked twice, or Return pressed on it.
    virtual void OnTableRowActivated(unsigned /*row*/) {}

    void OnPaint(CDC& dc) override { OnDraw(dc); }
    /// The view first, then its document.
    bool OnCmdMsg(unsigned id, CCmdUI* ui) override;
    bool AppendMenuItems(unsigned first, std::vector<vldv::menu_item>& items) override;

private:
    friend class CDocument;
    CDocument* attachedTo = nullptr;
};
