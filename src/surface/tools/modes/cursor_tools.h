#pragma once
#include "surface/tools/modes/cursor_tool.h"

namespace vldv::surface {

// Modes that are alike share a file: regions, distances, profiles, features.
const cursor_tool& rectangle_tool() noexcept;
const cursor_tool& ellipse_tool() noexcept;
const cursor_tool& section_tool() noexcept;
const cursor_tool& distance_tool() noexcept;
const cursor_tool& angle_tool() noexcept;
const cursor_tool& marks_tool() noexcept;
const cursor_tool& curve_tool() noexcept;
const cursor_tool& line_profile_tool() noexcept;
const cursor_tool& column_profile_tool() noexcept;
const cursor_tool& lengthy_tool() noexcept;
const cursor_tool& isoline_tool() noexcept;
const cursor_tool& include_tool() noexcept;
const cursor_tool& exclude_tool() noexcept;

const cursor_tool& tool_of(cursor_mode mode) noexcept;
/// The mode of this number; the nearest one for others.
cursor_mode mode_of(int number) noexcept;

} // namespace vldv::surface
