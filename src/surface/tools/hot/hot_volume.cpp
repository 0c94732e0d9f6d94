// The mark where a volume shows its curve: it follows the mouse.
#include "base/streams/rounding.h"
#include "surface/tools/hit_test.h"
#include "surface/tools/hot/hot_tools.h"

namespace vldv::surface {

namespace {

/// Where it lies on an image of this size.
CPoint place_of(const volume_mark& mark, CSize image) noexcept
{
    const CPoint cell{base::nearest_int(mark.x * (mark.size.cx - 1)), base::nearest_int(mark.y * (mark.size.cy - 1))};
    return rescaled(cell, mark.size, image);
}

class volume_tool final : public hot_tool {
public:
    bool does(hot_action action) const noexcept override { return action == hot_action::volumeMark; }
    hit find(const selection_state&, const ICursorWorld& world, const tool_event& event) const override
    {
        const std::optional<volume_mark> mark = world.volumeMark();
        if (!mark || !is_vertex_hit(place_of(*mark, world.frame().size()), event.at, event.reach)) return {};
        return {hot_action::volumeMark, {.view = mark->view}};
    }
    tool_pointer pointerFor(const selection_state&, modifier_keys) const noexcept override
    {
        return {5019, cursor_shape::move};
    }
    void press(const tool_context& on, const tool_event& event) const override
    {
        on.world.beginVolumeDrag();
        move(on, event.at);
    }
    void move(const tool_context& on, CPoint at) const override;
    void abandon(const tool_context& on) const override { on.world.endVolumeDrag(); }
};

void volume_tool::move(const tool_context& on, CPoint at) const
{
    const std::optional<volume_mark> mark = on.world.volumeMark();
    if (!mark) return;
    const CPoint cell = rescaled(at, on.world.frame().size(), mark->size);
    const auto fraction = [](int index, int length) {
        return length > 1 ? static_cast<double>(index) / (length - 1) : 0;
    };
    on.world.moveVolumeMark(fraction(cell.x, mark->size.cx), fraction(cell.y, mark->size.cy));
}

constexpr volume_tool tool;

} // namespace

const hot_tool& hot_volume_mark() noexcept { return tool; }

} // namespace vldv::surface
