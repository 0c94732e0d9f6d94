#pragma once
#include "surface/tools/tool_context.h"

namespace surface {

/// What mouse and keyboard do on a surface: select, draw and measure in samples of its image. It changes the state and
/// tells the world what follows from that; it knows no window. Client points and `mouse_flags` come in as the host
/// tells them.
class cursor_machine {
public:
    /// Both must outlive this.
    cursor_machine(selection_state& state_, ICursorWorld& world_) noexcept : state(state_), world(world_) {}

    // Messages
    void press(unsigned flags, CPoint client);
    void move(unsigned flags, CPoint client);
    void release(unsigned flags, CPoint client);
    /// \return the key moved a line profile
    bool keyDown(unsigned key);
    void keyUp(unsigned key);
    /// The mouse went to another window in the middle of a drag: what the drag began stays as it is.
    void captureLost();
    /// What the drag works on is gone or has another shape: it ends, and what is under the cursor is looked for anew.
    void endDrag();

    // Commands
    /// \param number  the command's less 6001; brought into range
    void setMode(int number);
    void inverseSelection();
    void removeMarks();
    void removeCurves();
    void addMark(CPoint mark);
    /// Moves the document's first line profile; by 0, to where the selection is.
    void moveLineView(int delta);

    void setDefaultCursor();
    /// What the state draws in this mode, client pixels. Whoever changes the state invalidates it before and after.
    CRgn invalidateRgn(cursor_mode mode) const;
    CRgn invalidateRgn() const { return invalidateRgn(changedMode()); }

private:
    /// The samples and the client point of an event, snapped.
    struct event_point {
        CPoint source, client;
    };

    event_point snapped(CPoint client) const;
    int tolerance(CPoint client, int pixels) const;
    CPoint toSource(CPoint client) const;
    tool_context context() noexcept { return {state, world, drag}; }
    cursor_mode changedMode() const;
    /// What a press would do at this client point, and the cursor for it.
    void hoverTest(unsigned flags, CPoint client);
    void repaint(const CRgn& before, bool erase);
    void modifierChanged(unsigned key);

    // press
    void holdToPan(const tool_event& event);
    void pressMode(unsigned flags, event_point at);
    void pressRegion(unsigned flags, event_point at);
    void spanLine(CPoint at);

    // move
    void moveMode(CPoint at);

    // release
    void releaseMode(unsigned flags, CPoint at);
    void releaseRegion();
    void releaseIsoline(CPoint at);
    void releaseSection();
    void releaseDistance();
    void releaseAngle();
    void releaseCurve(unsigned flags, CPoint at);
    void releaseLengthy(CPoint at);
    void finishRegion();
    void traceIsoline(CPoint seed);
    void showStatus(CPoint at);

    selection_state& state;
    ICursorWorld& world;
    drag_memory drag;
    lengthy_trace finishedLengthy; ///< what a drag continues
};

} // namespace surface
