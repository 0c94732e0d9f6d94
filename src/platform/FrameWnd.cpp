#include "platform/FrameWnd.h"

#include "platform/Document.h"
#include "platform/WinApp.h"

#include <algorithm>

namespace {

CFrameWnd* frame_of(const CView* pane) { return pane->GetParentFrame(); }

} // namespace

CFrameWnd* CView::GetParentFrame() const noexcept
{
    for (CWnd* at = GetParent(); at; at = at->GetParent())
        if (auto* frame = dynamic_cast<CFrameWnd*>(at)) return frame;
    return nullptr;
}

bool CView::OnCmdMsg(unsigned id, CCmdUI* ui) { return attachedTo && attachedTo->OnCmdMsg(id, ui); }

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

int CFrameWnd::windowNumber() const
{
    if (!pane || !pane->GetDocument()) return 0;
    std::vector<const CFrameWnd*> frames;
    for (const CView* each : pane->GetDocument()->views())
        if (const CFrameWnd* frame = frame_of(each); frame && std::ranges::find(frames, frame) == frames.end())
            frames.push_back(frame);
    const auto own = std::ranges::find(frames, this);
    return frames.size() < 2 || own == frames.end() ? 0 : static_cast<int>(own - frames.begin()) + 1;
}

void CFrameWnd::OnUpdateFrameTitle(bool addNumber)
{
    std::wstring text = pane && pane->GetDocument() ? pane->GetDocument()->GetTitle() : GetWindowText();
    if (const int number = windowNumber(); addNumber && number > 0) text += L":" + std::to_wstring(number);
    SetWindowText(text);
}

void CFrameWnd::RecalcLayout()
{
    if (pane) pane->MoveWindow(viewRect());
}

void CFrameWnd::fitToView(CSize viewOuter)
{
    if (!getPeer()) return;
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
        if (CDocument* const document = pane->GetDocument()) document->RemoveView(pane.get());
        pane->OnFrameClosed();
    }
    if (app) app->disposeFrame(*this);
}

bool CFrameWnd::OnCmdMsg(unsigned id, CCmdUI* ui) { return pane && pane->OnCmdMsg(id, ui); }
