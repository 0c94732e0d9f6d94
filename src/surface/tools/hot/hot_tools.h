#pragma once
#include "surface/tools/hot/hot_tool.h"

namespace vldv::surface {

// Each kind stands in a file of its name.
const hot_tool& hot_pan() noexcept; ///< both keys down: of all things the whole picture
const hot_tool& hot_decorations() noexcept;
const hot_tool& hot_marks() noexcept;
const hot_tool& hot_curves() noexcept;
const hot_tool& hot_section_points() noexcept;
const hot_tool& hot_section_lines() noexcept;
const hot_tool& hot_volume_mark() noexcept;

/// The kind of thing that the action belongs to; null for `hot_action::none`.
const hot_tool* hot_tool_of(hot_action action) noexcept;
/// What lies under the mouse: of the kinds in their order, the first that is hit.
hit find_hit(const selection_state& state, const ICursorWorld& world, const tool_event& event);

} // namespace vldv::surface
