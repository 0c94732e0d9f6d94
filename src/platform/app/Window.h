#pragma once
#include "platform/app/CmdTarget.h"
#include "platform/app/WindowPeer.h"
#include "vldv_api.h"

/// A window: logic that a host shows. Everything works without a peer, as before it is created and after it is gone:
/// rectangles are empty then, requests do nothing. Interface thread only.
class VLDV_API CWnd : public CCmdTarget {
public:
    CWnd() = default;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    ~CWnd() override;

    /// Asks the application's host for a window inside `parent_`, or on its own for null.
    /// \return false when the host has no windows
    bool Create(CWnd* parent_, vldv::window_kind kind);
    void setPeer(std::unique_ptr<vldv::IWindowPeer> peer_) { peer = std::move(peer_); }
    vldv::IWindowPeer* getPeer() const noexcept { return peer.get(); }
    /// Gives the window back to the host; the logic stays.
    void DestroyWindow() { peer.reset(); }
    CWnd* GetParent() const noexcept { return parentWindow; }

    CRect GetClientRect() const { return peer ? peer->clientRect() : CRect(); }
    CRect GetWindowRect() const { return peer ? peer->windowRect() : CRect(); }
    void MoveWindow(const CRect& rect);
    /// Without moving it.
    void SetWindowSize(CSize outer);
    CPoint ClientToScreen(CPoint point) const { return peer ? peer->clientToScreen(point) : point; }
    CPoint ScreenToClient(CPoint point) const;
    CRect ScreenToClient(const CRect& rect) const;
    void ShowWindow(bool on);
    bool IsWindowVisible() const { return peer && peer->isVisible(); }
    bool IsIconic() const { return peer && peer->isMinimized(); }
    bool IsZoomed() const { return peer && peer->isMaximized(); }
    void SetWindowText(const std::wstring& text);
    const std::wstring& GetWindowText() const noexcept { return title; }

    void Invalidate(bool erase = true);
    void InvalidateRect(const CRect& rect, bool erase = true);
    void InvalidateRgn(const CRgn& region, bool erase = true);
    void UpdateWindow(); ///< paints now what is invalid
    void SetCapture();
    void ReleaseCapture();
    bool hasCapture() const { return peer && peer->hasCapture(); }
    void SetFocus();
    bool hasFocus() const { return peer && peer->hasFocus(); }
    void SetCursor(vldv::cursor_shape shape);
    void SetTimer(unsigned id, unsigned milliseconds);
    void KillTimer(unsigned id);
    void flushTimers();

    // What the host tells. Points are client coordinates, `flags` are `mouse_flags`.
    virtual void OnPaint(CDC&) {}
    /// Clears what `OnPaint` does not cover. \return false: the host clears
    virtual bool OnEraseBkgnd(CDC&) { return false; }
    virtual void OnSize(CSize) {}
    virtual void OnMouseMove(unsigned, CPoint) {}
    virtual void OnMouseLeave() {}
    virtual void OnLButtonDown(unsigned, CPoint) {}
    virtual void OnLButtonUp(unsigned, CPoint) {}
    virtual void OnLButtonDblClk(unsigned, CPoint) {}
    virtual void OnRButtonDown(unsigned, CPoint) {}
    virtual void OnRButtonUp(unsigned, CPoint) {}
    virtual void OnMButtonDown(unsigned, CPoint) {}
    virtual void OnMButtonUp(unsigned, CPoint) {}
    /// \param delta  120 a notch, away from the user positive \return handled
    virtual bool OnMouseWheel(unsigned, int, CPoint) { return false; }
    /// At a point of the screen.
    virtual void OnContextMenu(CPoint) {}
    /// \param key  a `key_code` \return handled
    virtual bool OnKeyDown(unsigned) { return false; }
    virtual bool OnKeyUp(unsigned) { return false; }
    virtual void OnTimer(unsigned) {}
    virtual void OnSetFocus() {}
    virtual void OnKillFocus() {}
    virtual void OnCaptureChanged() {}
    /// The user closes the window.
    virtual void OnClose() {}

private:
    std::unique_ptr<vldv::IWindowPeer> peer;
    CWnd* parentWindow = nullptr;
    std::wstring title;
};
