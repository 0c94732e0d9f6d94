#include "surface/tools/hot/hot_tools.h"

namespace vldv::surface {

namespace {

/// In the order of the hit test.
constexpr const hot_tool& (*kinds[])() noexcept = {
    hot_pan, hot_decorations, hot_marks, hot_curves, hot_section_points, hot_section_lines, hot_volume_mark,
};

} // namespace

const hot_tool* hot_tool_of(hot_action action) noexcept
{
    for (const auto kind : kinds)
        if (kind().does(action)) return &kind();
    return nullptr;
}

hit find_hit(const selection_state& state, const ICursorWorld& world, const tool_event& event)
{
    for (const auto kind : kinds)
        if (const hit found = kind().find(state, world, event); found.action != hot_action::none) return found;
    return {};
}

} // namespace vldv::surface
