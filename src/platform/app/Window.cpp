#include "platform/app/Window.h"

#include "platform/app/WinApp.h"

using namespace vldv;

CWnd::~CWnd() = default;

bool CCmdTarget::OnCmdMsg(unsigned, CCmdUI*) { return false; }

bool CCmdTarget::AppendMenuItems(unsigned, std::vector<menu_item>&) { return false; }

bool CWnd::Create(CWnd* parent_, window_kind kind)
{
    parentWindow = parent_;
    CWinApp* const app = AfxGetApp();
    if (app) peer = app->host().createWindow(*this, parent_, kind);
    if (peer && !title.empty()) peer->setTitle(title);
    return peer != nullptr;
}

void CWnd::MoveWindow(const CRect& rect)
{
    if (peer) peer->place(rect);
}

void CWnd::SetWindowSize(CSize outer)
{
    if (!peer) return;
    const CRect now = parentWindow ? parentWindow->ScreenToClient(GetWindowRect()) : GetWindowRect();
    peer->place(CRect(now.TopLeft(), outer));
}

CPoint CWnd::ScreenToClient(CPoint point) const { return point - (ClientToScreen({}) - CPoint()); }

CRect CWnd::ScreenToClient(const CRect& rect) const { return {ScreenToClient(rect.TopLeft()), rect.Size()}; }

void CWnd::ShowWindow(bool on)
{
    if (peer) peer->show(on);
}

void CWnd::SetWindowText(const std::wstring& text)
{
    if (text == title) return; // no flicker
    title = text;
    if (peer) peer->setTitle(text);
}

void CWnd::Invalidate(bool erase)
{
    if (peer) peer->invalidate(nullptr, erase);
}

void CWnd::InvalidateRect(const CRect& rect, bool erase) { InvalidateRgn(CRgn(rect), erase); }

void CWnd::InvalidateRgn(const CRgn& region, bool erase)
{
    if (peer && !region.isEmpty()) peer->invalidate(&region, erase);
}

void CWnd::UpdateWindow()
{
    if (peer) peer->update();
}

void CWnd::SetCapture()
{
    if (peer) peer->setCapture(true);
}

void CWnd::ReleaseCapture()
{
    if (peer) peer->setCapture(false);
}

void CWnd::SetFocus()
{
    if (peer) peer->setFocus();
}

void CWnd::SetCursor(cursor_shape shape)
{
    if (peer) peer->setCursor(shape);
}

void CWnd::SetTimer(unsigned id, unsigned milliseconds)
{
    if (peer) peer->setTimer(id, milliseconds);
}

void CWnd::KillTimer(unsigned id)
{
    if (peer) peer->killTimer(id);
}

void CWnd::flushTimers()
{
    if (peer) peer->flushTimers();
}
