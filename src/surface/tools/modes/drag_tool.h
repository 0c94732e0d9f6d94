#pragma once
#include "surface/tools/modes/cursor_tool.h"

namespace vldv::surface {

/// Something is selected or measured from now on, and what was measured before goes.
void activate(selection_state& state) noexcept;
/// Activates a selection that begins and ends at the sample.
void begin_drag(selection_state& state, CPoint at) noexcept;

constexpr int shortDrag = 3; // samples; what is shorter is a slip of the hand
/// Short on both axes.
bool is_short(const selection_rect& drag) noexcept;

/// A mode that draws a line from the press to the release.
class drag_tool : public cursor_tool {
public:
    void press(const tool_context& on, const tool_event& event) const override { begin_drag(on.state, event.at); }
    void move(const tool_context& on, CPoint at) const override { on.state.selection.endAt(at); }
    void draw(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
              const selection_style& style) const override;
    void addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const override;

protected:
    ~drag_tool() = default;
};

/// A mode that draws points: each drag moves one until it is where it belongs.
class point_tool : public drag_tool {
public:
    void draw(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
              const selection_style& style) const override;

protected:
    ~point_tool() = default;
};

} // namespace vldv::surface
