#include "platform/app/FrameWnd.h"

#include "platform/app/Document.h"
#include "platform/app/WinApp.h"

#include <utility>
#include <vector>

using namespace vldv;

CFrameWnd* CView::GetParentFrame() const noexcept
{
    for (CWnd* at = GetParent(); at; at = at->GetParent())
        if (auto* frame = dynamic_cast<CFrameWnd*>(at)) return frame;
    return nullptr;
}

bool CView::OnCmdMsg(unsigned id, CCmdUI* ui) { return attachedTo && attachedTo->OnCmdMsg(id, ui); }

bool CView::AppendMenuItems(unsigned first, std::vector<menu_item>& items)
{
    return attachedTo && attachedTo->AppendMenuItems(first, items);
}

CFrameWnd::~CFrameWnd() = default;

bool CFrameWnd::LoadFrame(CDocTemplate* template_, unsigned menuId, std::unique_ptr<CView> view_)
{
    docTemplate = template_;
    menu = menuId;
    pane = std::move(view_);
    Create(nullptr, window_kind::frame);
    if (pane) pane->Create(this, pane->kind());
    RecalcLayout();
    return true;
}

void CFrameWnd::ActivateFrame()
{
    ShowWindow(true);
    if (getPeer()) getPeer()->bringToFront();
    if (CWinApp* const app = AfxGetApp()) app->setActiveFrame(this);
}

void CFrameWnd::numberFrames(const CDocument& document)
{
    std::vector<CFrameWnd*> frames;
    for (const CView* each : document.views())
        if (CFrameWnd* const frame = each->GetParentFrame(); frame && frame->GetActiveView() == each)
            frames.push_back(frame);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const int counted = frames.size() < 2 ? 0 : static_cast<int>(i) + 1;
        if (std::exchange(frames[i]->numberAmongFrames, counted) != counted) frames[i]->OnUpdateFrameTitle(true);
    }
}

void CFrameWnd::OnUpdateFrameTitle(bool addNumber)
{
    const CDocument* const document = pane ? pane->GetDocument() : nullptr;
    std::wstring text = document ? document->GetTitle() : GetWindowText();
    if (document && document->isChanged()) text.insert(0, changedMark);
    if (const int number = windowNumber(); addNumber && number > 0) text += L":" + std::to_wstring(number);
    SetWindowText(text);
}

void CFrameWnd::RecalcLayout()
{
    if (pane && !pane->isFullScreen()) pane->MoveWindow(viewRect());
}

void CFrameWnd::fitToView(CSize viewOuter)
{
    if (!getPeer()) return;
    // What the frame has inside beside the view, such as strips of tools and tabs, keeps its size.
    const CSize client = GetClientRect().Size(), inside = viewRect().Size();
    SetWindowSize(getPeer()->outerSize({viewOuter.cx + client.cx - inside.cx, viewOuter.cy + client.cy - inside.cy}));
    RecalcLayout(); // where the frame may not change, the view goes back
}

void CFrameWnd::DestroyFrame()
{
    if (destroyed) return;
    destroyed = true;
    CWinApp* const app = AfxGetApp();
    if (app) app->frameLeaves(*this);
    ShowWindow(false);
    if (pane) {
        if (CDocument* const document = pane->GetDocument()) {
            // With its last view the document closes as well. It still lives here, as it is freed between two events
            // like the frame.
            document->RemoveView(pane.get());
            numberFrames(*document);
        }
        pane->OnFrameClosed();
    }
    if (app) app->disposeFrame(*this);
}

bool CFrameWnd::OnCmdMsg(unsigned id, CCmdUI* ui) { return pane && pane->OnCmdMsg(id, ui); }

bool CFrameWnd::AppendMenuItems(unsigned first, std::vector<menu_item>& items)
{
    return pane && pane->AppendMenuItems(first, items);
}
