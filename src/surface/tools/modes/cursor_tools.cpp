#include "surface/tools/modes/cursor_tools.h"

#include <algorithm>
#include <iterator>

namespace vldv::surface {

namespace {

struct tool_row {
    cursor_mode mode;
    const cursor_tool& (*tool)() noexcept;
};

constexpr tool_row rows[] = {
    {cursor_mode::rectangle, rectangle_tool},
    {cursor_mode::ellipse, ellipse_tool},
    {cursor_mode::section, section_tool},
    {cursor_mode::distance, distance_tool},
    {cursor_mode::angle, angle_tool},
    {cursor_mode::marks, marks_tool},
    {cursor_mode::curve, curve_tool},
    {cursor_mode::lineProfile, line_profile_tool},
    {cursor_mode::columnProfile, column_profile_tool},
    {cursor_mode::lengthyObject, lengthy_tool},
    {cursor_mode::isoline, isoline_tool},
    {cursor_mode::includeFeatures, include_tool},
    {cursor_mode::excludeFeatures, exclude_tool},
};

consteval bool are_in_order()
{
    for (std::size_t i = 0; i < std::size(rows); ++i)
        if (static_cast<std::size_t>(rows[i].mode) != i) return false;
    return true;
}
static_assert(are_in_order(), "a row is found by the number of its mode");

} // namespace

const cursor_tool& tool_of(cursor_mode mode) noexcept { return rows[static_cast<std::size_t>(mode)].tool(); }

cursor_mode mode_of(int number) noexcept
{
    return static_cast<cursor_mode>(std::clamp(number, 0, static_cast<int>(std::size(rows)) - 1));
}

} // namespace vldv::surface
