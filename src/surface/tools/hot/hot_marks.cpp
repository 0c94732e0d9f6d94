// Marks: a press takes one away, with Shift it drags it.
#include "surface/tools/hit_test.h"
#include "surface/tools/hot/hot_tools.h"
#include "surface/tools/modes/marks_tool.h"

namespace vldv::surface {

namespace {

constexpr tool_pointer movePointer{5015, cursor_shape::move}, deletePointer{5016, cursor_shape::eraser};

void delete_mark(const tool_context& on, const tool_event& event)
{
    selection_state& state = on.state;
    const std::size_t found = find_vertex(state.marks, event.at, event.reach);
    if (found == hot_item::none) return;
    const CPoint mark = state.marks[found];
    state.marks.erase(state.marks.begin() + static_cast<std::ptrdiff_t>(found));
    state.hotItem = {};
    show_total(state, on.world);
    on.world.sendHint(hintMarkRemoved, mark);
}

class mark_tool final : public hot_tool {
public:
    bool does(hot_action action) const noexcept override
    {
        return action == hot_action::moveMark || action == hot_action::deleteMark;
    }
    hit find(const selection_state& state, const ICursorWorld&, const tool_event& event) const override
    {
        const std::size_t mark = find_vertex(state.marks, event.at, event.reach);
        if (mark == hot_item::none) return {};
        return {event.flags & MK_SHIFT ? hot_action::moveMark : hot_action::deleteMark, {.point = mark}};
    }
    tool_pointer pointerFor(const selection_state& state, modifier_keys) const noexcept override
    {
        return state.hotAction == hot_action::moveMark ? movePointer : deletePointer;
    }
    void press(const tool_context& on, const tool_event& event) const override
    {
        if (on.state.hotAction == hot_action::deleteMark) return delete_mark(on, event);
        on.state.hotItem = {.point = find_vertex(on.state.marks, event.at, event.reach)};
    }
    void move(const tool_context& on, CPoint at) const override
    {
        selection_state& state = on.state;
        if (state.hotAction == hot_action::moveMark && state.hotItem.point < state.marks.size())
            state.marks[state.hotItem.point] = at;
    }
    cursor_mode changedMode(cursor_mode) const noexcept override { return cursor_mode::marks; }
};

constexpr mark_tool tool;

} // namespace

const hot_tool& hot_marks() noexcept { return tool; }

} // namespace vldv::surface
