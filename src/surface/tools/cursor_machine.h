#pragma once
#include "surface/tools/tool_context.h"

namespace vldv::surface {

class cursor_tool;
class mouse_tool;

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
    /// \return whether the key is one of the mode's, as those that move a profile
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
    /// Those of a file behind those that are there; the number of all marks is told.
    void addDrawings(std::span<const std::vector<CPoint>> curves, std::span<const CPoint> marks);

    void setDefaultCursor();
    /// What the state draws in this mode, client pixels. Whoever changes the state invalidates it before and after.
    CRgn invalidateRgn(cursor_mode shown) const;
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
    const cursor_tool& mode() const noexcept;
    const mouse_tool& acting() const noexcept;
    cursor_mode changedMode() const;
    /// What a press would do at this client point, and the cursor for it.
    void hoverTest(unsigned flags, CPoint client);
    void repaint(const CRgn& before, bool erase);
    void modifierChanged(unsigned key);

    void begin(const tool_event& event, CPoint client);
    void holdToPan(const tool_event& event);

    selection_state& state;
    ICursorWorld& world;
    drag_memory drag;
};

} // namespace vldv::surface
