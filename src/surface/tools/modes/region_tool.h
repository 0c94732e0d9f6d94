#pragma once
#include "surface/tools/modes/cursor_tool.h"

namespace vldv::surface {

/// What regions and new shapes are framed with.
CBrush region_brush();

/// A mode that selects a region: new shapes join it, leave it, replace it or move it, as the keys at the press say.
class region_tool : public cursor_tool {
public:
    void press(const tool_context& on, const tool_event& event) const override;
    void move(const tool_context& on, CPoint at) const override { on.state.selection.endAt(at); }
    void finish(const tool_context& on, const tool_event& event) const override;
    void abandon(const tool_context& on) const override { on.state.selectionActive = !on.state.region.isEmpty(); }
    tool_pointer pointerFor(const selection_state& state, modifier_keys keys) const noexcept override;
    bool showsModifiers() const noexcept override { return true; }
    void draw(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
              const selection_style& style) const override;
    void addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const override;

protected:
    ~region_tool() = default;

    /// One for each `combine_mode`.
    using pointer_row = tool_pointer[4];
    virtual const pointer_row& pointers() const noexcept = 0;
    /// The shape, in samples.
    virtual CRgn shape(const selection_state& state) const = 0;
    /// Draws the shape that the drag has reached.
    virtual void drawShape(CDC& dc, const selection_state& state, const view::view_geometry& geometry) const = 0;
    /// Joins the drawn shape to the region.
    void join(const tool_context& on) const;
    /// Similar images take the selection over, where the user wants it.
    static void share(ICursorWorld& world);
};

} // namespace vldv::surface
