#include "platform/FrameWnd.h"

#include "platform/Document.h"
#include "platform/WinApp.h"

#include <algorithm>

namespace {

CFrameWnd* frame_of(const CView* view) { return view->GetParentFrame(); }

} // namespace

CFrameWnd* CView::GetParentFrame() const noexcept
{
    for (CWnd* at = GetParent(); at; at = at->GetParent())
        if (auto* frame = dynamic_cast<CFrameWnd*>(at)) return frame;
    return nullptr;
}

bool CView::OnCmdMsg(unsigned id, CCmdUI* ui) { return document && document->OnCmdMsg(id, ui); }

CFrameWnd::~CFrameWnd() = default;

bool CFrameWnd::LoadFrame(CDocTemplate* template_, unsigned menuId, std::unique_ptr<CView> view_)
{
    docTemplate = template_;
    menu = menuId;
    view = std::move(view_);
    Create(nullptr, window_kind::frame);
    if (view) view->Create(this, window_kind::view);
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
    if (!view || !view->GetDocument()) return 0;
    std::vector<const CFrameWnd*> frames;
    for (const CView* each : view->GetDocument()->views())
        if (const CFrameWnd* frame = frame_of(each); frame && std::ranges::find(frames, frame) == frames.end())
            frames.push_back(frame);
    const auto own = std::ranges::find(frames, this);
    return frames.size() < 2 || own == frames.end() ? 0 : static_cast<int>(own - frames.begin()) + 1;
}

void CFrameWnd::OnUpdateFrameTitle(bool addNumber)
{
    std::wstring text = view && view->GetDocument() ? view->GetDocument()->GetTitle() : GetWindowText();
    if (const int number = windowNumber(); addNumber && number > 0) text += L":" + std::to_wstring(number);
    SetWindowText(text);
}

void CFrameWnd::RecalcLayout()
{
    if (view) view->MoveWindow(viewRect());
}

void CFrameWnd::fitToView(CSize viewOuter)
{
    if (!getPeer()) return;
    const CSize client = GetClientRect().Size(), pane = viewRect().Size();
    SetWindowSize(getPeer()->outerSize({viewOuter.cx + client.cx - pane.cx, viewOuter.cy + client.cy - pane.cy}));
    RecalcLayout(); // where the frame may not change, the view goes back
}

void CFrameWnd::DestroyFrame()
{
    if (destroyed) return;
    destroyed = true;
    CWinApp* const app = AfxGetApp();
    if (app) app->frameLeaves(*this);
    ShowWindow(false);
    if (view) {
        if (CDocument* const document = view->GetDocument()) document->RemoveView(view.get());
        view->OnFrameClosed();
    }
    if (app) app->disposeFrame(*this);
}

bool CFrameWnd::OnCmdMsg(unsigned id, CCmdUI* ui) { return view && view->OnCmdMsg(id, ui); }
