// What functions and modules have drawn over the image: a press selects it or no longer.
#include "surface/tools/hit_test.h"
#include "surface/tools/hot/hot_tools.h"

namespace vldv::surface {

namespace {

bool is_hit(const document::decoration& drawing, const ICursorWorld& world, const tool_event& event)
{
    const bool isLine = drawing.type == DECORATION_POLYLINE || drawing.type == DECORATION_POLYLINE_3D;
    const bool isPoints = drawing.type == DECORATION_POINTS || drawing.type == DECORATION_POINTS_3D;
    if (!(drawing.state & DECORATION_HIT_TESTABLE) || !(isLine || isPoints)) return false;
    const std::vector<CPoint> points = samples_of(drawing, world.drawingAxes());
    return find_vertex(points, event.at, event.reach) != hot_item::none ||
           (isLine && find_segment(points, event.at, event.reach) != hot_item::none);
}

class decoration_tool final : public hot_tool {
public:
    bool does(hot_action action) const noexcept override { return action == hot_action::decoration; }
    hit find(const selection_state& state, const ICursorWorld& world, const tool_event& event) const override;
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5043, cursor_shape::hand};
    }
    void press(const tool_context& on, const tool_event&) const override
    {
        on.world.toggleDecoration(on.state.hotItem.list, on.state.hotItem.point);
    }
};

hit decoration_tool::find(const selection_state&, const ICursorWorld& world, const tool_event& event) const
{
    const document::decorations* const drawings = world.decorations();
    if (!drawings) return {};
    std::size_t group = 0;
    for (const auto& [key, content] : drawings->all()) {
        for (std::size_t i = 0; i < content.members.size(); ++i)
            if (is_hit(content.members[i], world, event)) return {hot_action::decoration, {.list = group, .point = i}};
        ++group;
    }
    return {};
}

constexpr decoration_tool tool;

} // namespace

const hot_tool& hot_decorations() noexcept { return tool; }

} // namespace vldv::surface
