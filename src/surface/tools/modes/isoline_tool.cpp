// The region inside the line of equal height through the sample under the mouse.
#include "surface/figures/measure/isoline.h"
#include "surface/overlay/overlay_geometry.h"
#include "surface/overlay/overlay_shapes.h"
#include "surface/tools/modes/cursor_tools.h"
#include "surface/tools/modes/region_tool.h"
#include "surface/tools/overlay_area.h"

namespace vldv::surface {

namespace {

constexpr const char* noArea = "No selection: the isoline encloses no area";

bool is_line(const selection_state& state) { return state.isoline.size() >= 3 && is_closed(state.isoline); }

void trace(const tool_context& on, CPoint seed)
{
    on.world.showWait(true);
    on.state.isoline = trace_isoline(on.world.frame(), seed);
    on.world.showWait(false);
}

class isoline final : public region_tool {
public:
    bool movesOnPress() const noexcept override { return true; }
    void move(const tool_context& on, CPoint at) const override
    {
        on.state.selection.endAt(at);
        if (on.state.combine != combine_mode::move) trace(on, at);
    }
    void finish(const tool_context& on, const tool_event& event) const override;
    void showStatus(const tool_context& on, CPoint at) const override;
    void draw(CDC& dc, const selection_state& state, const view::view_geometry& geometry,
              const selection_style& style) const override
    {
        region_tool::draw(dc, state, geometry, style);
        draw_handle(dc, to_client(state.selection.end(), geometry), endColor);
    }
    void addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const override
    {
        region_tool::addArea(area, state, world);
        if (state.tracking) add(area, inflated(box_of(state.isoline, world.geometry()), handle_size()));
    }

private:
    const pointer_row& pointers() const noexcept override
    {
        static constexpr pointer_row row = {{5011, cursor_shape::crossIsoline},
                                            {5037, cursor_shape::crossPlus},
                                            {5038, cursor_shape::crossMinus},
                                            {5039, cursor_shape::move}};
        return row;
    }
    /// By the odd-even rule; no pixel below 3 points.
    CRgn shape(const selection_state& state) const override
    {
        return state.isoline.size() < 3 ? CRgn() : CRgn::polygon(state.isoline, ALTERNATE);
    }
    void drawShape(CDC& dc, const selection_state& state, const view::view_geometry& geometry) const override
    {
        if (state.isoline.size() > 2) dc.Polyline(to_client(state.isoline, geometry));
    }
};

void isoline::finish(const tool_context& on, const tool_event& event) const
{
    selection_state& state = on.state;
    const bool isMoved = state.combine == combine_mode::move;
    state.isoline.clear();
    if (!isMoved) trace(on, event.at);
    if (!isMoved) showStatus(on, event.at);
    if (isMoved || is_line(state))
        join(on);
    else if (state.combine == combine_mode::replace || state.region.isEmpty())
        state.selectionActive = false;
    share(on.world);
}

/// Where a line is wanted and there is none, or one around nothing, why.
void isoline::showStatus(const tool_context& on, CPoint at) const
{
    if (on.state.combine == combine_mode::move) return on.world.showStatus(at);
    const char* const reason = why_no_isoline(on.world.frame(), at);
    if (*reason)
        on.world.showNotice(reason);
    else if (is_line(on.state) && shape(on.state).isEmpty())
        on.world.showNotice(noArea);
    else
        on.world.showStatus(at);
}

constexpr isoline tool;

} // namespace

const cursor_tool& isoline_tool() noexcept { return tool; }

} // namespace vldv::surface
