// Curves: vertices are dragged and taken away, segments get new ones, and another curve becomes the active one.
#include "surface/tools/hit_test.h"
#include "surface/tools/hot/hot_tools.h"
#include "surface/tools/modes/curve_tool.h"

#include <algorithm>

namespace vldv::surface {

namespace {

constexpr tool_pointer moveVertexPointer{5017, cursor_shape::move}, deleteVertexPointer{5018, cursor_shape::eraser},
    insertVertexPointer{5020, cursor_shape::crossPlus}, activatePointer{5040, cursor_shape::hand},
    deleteRestPointer{5042, cursor_shape::eraser};

using curve = std::vector<CPoint>;

/// Of the first curve that has a vertex there, which becomes the active one.
void hold_vertex(selection_state& state, const tool_event& event)
{
    state.hotItem.point = hot_item::none;
    for (curve& each : state.curves) {
        const std::size_t vertex = find_vertex(each, event.at, event.reach);
        if (vertex == hot_item::none) continue;
        each.swap(state.curves.front());
        state.hotItem = {.list = 0, .point = vertex};
        return;
    }
}

/// A curve that lost all its vertices goes, and its measurement with it.
void drop_emptied(selection_state& state, std::size_t index)
{
    state.measure.isVisible = false;
    if (index == 0) state.selectionActive = false;
    state.curves.erase(state.curves.begin() + static_cast<std::ptrdiff_t>(index));
}

/// The vertex alone; the first one, and any with Ctrl, with all behind it.
void delete_vertex(const tool_context& on, const tool_event& event)
{
    selection_state& state = on.state;
    for (std::size_t i = 0; i < state.curves.size(); ++i) {
        curve& cut = state.curves[i];
        const std::size_t vertex = find_vertex(cut, event.at, event.reach);
        if (vertex == hot_item::none) continue;
        const auto place = cut.begin() + static_cast<std::ptrdiff_t>(vertex);
        const bool deletesRest = vertex == 0 || (event.flags & MK_CONTROL) != 0;
        cut.erase(place, deletesRest ? cut.end() : place + 1);
        state.hotItem = {};
        return cut.empty() ? drop_emptied(state, i) : show_length(state, on.world);
    }
}

/// Puts a vertex into the segment and goes on as if that had been pressed on.
void insert_vertex(selection_state& state, const tool_event& event)
{
    for (curve& each : state.curves) {
        const std::size_t end = find_segment(each, event.at, event.reach);
        if (end == hot_item::none) continue;
        each.insert(each.begin() + static_cast<std::ptrdiff_t>(end), event.at);
        each.swap(state.curves.front());
        state.hotAction = hot_action::moveVertex;
        state.hotItem = {.list = 0, .point = end};
        return;
    }
}

void activate(const tool_context& on, const tool_event& event)
{
    const auto isHit = [&event](const curve& each) {
        return find_vertex(each, event.at, event.reach) != hot_item::none ||
               find_segment(each, event.at, event.reach) != hot_item::none;
    };
    std::vector<curve>& curves = on.state.curves;
    if (const auto found = std::ranges::find_if(curves, isHit); found != curves.end()) found->swap(curves.front());
    show_length(on.state, on.world);
}

class curves_tool final : public hot_tool {
public:
    bool does(hot_action action) const noexcept override
    {
        return action == hot_action::moveVertex || action == hot_action::deleteVertex ||
               action == hot_action::insertVertex || action == hot_action::activateCurve;
    }
    hit find(const selection_state& state, const ICursorWorld& world, const tool_event& event) const override;
    tool_pointer pointerFor(const selection_state& state, modifier_keys keys) const noexcept override;
    void press(const tool_context& on, const tool_event& event) const override;
    void move(const tool_context& on, CPoint at) const override;
    cursor_mode changedMode(cursor_mode) const noexcept override { return cursor_mode::curve; }
};

/// Curve by curve, vertices before segments.
hit curves_tool::find(const selection_state& state, const ICursorWorld&, const tool_event& event) const
{
    for (std::size_t i = 0; i < state.curves.size(); ++i) {
        const bool isActive = i == 0;
        if (const std::size_t vertex = find_vertex(state.curves[i], event.at, event.reach); vertex != hot_item::none) {
            const hot_action plain = isActive ? hot_action::deleteVertex : hot_action::activateCurve;
            return {event.flags & MK_SHIFT ? hot_action::moveVertex : plain, {.list = i, .point = vertex}};
        }
        if (const std::size_t end = find_segment(state.curves[i], event.at, event.reach); end != hot_item::none)
            return {isActive ? hot_action::insertVertex : hot_action::activateCurve, {.list = i, .point = end}};
    }
    return {};
}

tool_pointer curves_tool::pointerFor(const selection_state& state, modifier_keys keys) const noexcept
{
    switch (state.hotAction) {
    case hot_action::moveVertex:
        return moveVertexPointer;
    case hot_action::deleteVertex:
        return keys.control ? deleteRestPointer : deleteVertexPointer;
    case hot_action::insertVertex:
        return insertVertexPointer;
    default:
        return activatePointer;
    }
}

void curves_tool::press(const tool_context& on, const tool_event& event) const
{
    switch (on.state.hotAction) {
    case hot_action::moveVertex:
        return hold_vertex(on.state, event);
    case hot_action::deleteVertex:
        return delete_vertex(on, event);
    case hot_action::insertVertex:
        return insert_vertex(on.state, event);
    default:
        return activate(on, event);
    }
}

void curves_tool::move(const tool_context& on, CPoint at) const
{
    selection_state& state = on.state;
    if (state.hotAction != hot_action::moveVertex) return;
    if (state.curves.empty() || state.hotItem.point >= state.curves.front().size()) return;
    state.curves.front()[state.hotItem.point] = at;
    show_length(state, on.world);
}

constexpr curves_tool tool;

} // namespace

const hot_tool& hot_curves() noexcept { return tool; }

} // namespace vldv::surface
