// Every click sets a mark; marks are numbered and counted.
#include "surface/tools/modes/marks_tool.h"

#include "platform/app/dpi.h"
#include "surface/figures/measure/measurements.h"
#include "surface/overlay/mark_drawing.h"
#include "surface/overlay/overlay_geometry.h"
#include "surface/overlay/overlay_shapes.h"
#include "surface/tools/modes/cursor_tools.h"
#include "surface/tools/modes/drag_tool.h"
#include "surface/tools/overlay_area.h"

namespace vldv::surface {

namespace {

CRect number_area(std::size_t mark, const selection_state& state, const ICursorWorld& world)
{
    if (!world.marksNumbered()) return {};
    const CPoint at = to_client(state.marks[mark], world.geometry());
    constexpr int rim = 1;
    return inflated(
        text_area({at.x + CorrectDPISize(4), at.y + CorrectDPISize(1)}, std::to_wstring(mark + 1), 0, world), rim);
}

void add_mark(CRgn& area, std::size_t mark, const selection_state& state, const ICursorWorld& world)
{
    CRect outline = mark_box(to_client(state.marks[mark], world.geometry()), world.marksStyle());
    outline.UnionRect(outline, number_area(mark, state, world));
    add(area, inflated(outline, 1));
}

class marks final : public point_tool {
public:
    void enter(const tool_context& on) const override { show_total(on.state, on.world); }
    void finish(const tool_context& on, const tool_event& event) const override
    {
        on.state.marks.push_back(event.at);
        on.state.selectionActive = false;
        show_total(on.state, on.world);
        on.world.sendToFeatures(hintMarkSet, event.at);
    }
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5006, cursor_shape::crossMark};
    }
    void addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const override;
};

/// Of the marks, those that change: the one that is dragged; all when one goes, for their numbers; or the last.
void marks::addArea(CRgn& area, const selection_state& state, const ICursorWorld& world) const
{
    add(area, end_area(state.selection, world.geometry(), handle_size()));
    if (state.hotAction == hot_action::deleteMark) return add_marks(area, state, world);
    const std::size_t count = state.marks.size();
    const std::size_t changed = state.hotAction == hot_action::moveMark ? state.hotItem.point : count - 1;
    if (changed < count) add_mark(area, changed, state, world);
}

constexpr marks tool;

} // namespace

void show_total(selection_state& state, const ICursorWorld& world)
{
    state.measure = total_text(state.marks.size(), world.frame().size());
}

void add_marks(CRgn& area, const selection_state& state, const ICursorWorld& world)
{
    CRect all = box_of(state.marks, world.geometry());
    if (all.IsRectEmpty()) return;
    all.InflateRect(CorrectDPISize(10), CorrectDPISize(7), CorrectDPISize(6), CorrectDPISize(7));
    add(area, all);
    for (std::size_t i = 0; i < state.marks.size(); ++i) add(area, number_area(i, state, world));
}

const cursor_tool& marks_tool() noexcept { return tool; }

} // namespace vldv::surface
