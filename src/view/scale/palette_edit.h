#pragma once
#include "platform/draw/geometry.h"
#include "view/scale/ColorTable.h"

#include <vector>

/// What the palette editor does to a table, on plain values. The table has at least one entry everywhere.
namespace vldv::view {

enum class color_channel : unsigned { red = 0, green = 8, blue = 16 }; ///< bits below it

constexpr int channel_of(colorEntry color, color_channel channel) noexcept
{
    return static_cast<int>(color >> static_cast<unsigned>(channel) & 255u);
}

/// Draws with the pen from one mouse position to the next over `pane`, whose width is the table and whose height the
/// value from 255 to 0: the entry under `from` keeps its value, that under `to` takes the pen's height, those between
/// lie on the line, so that a fast hand leaves no gaps. Positions outside count as the nearest inside.
void draw_stroke(color_table& table, color_channel channel, CPoint from, CPoint to, const CRect& pane);

/// Moving average over three entries, then over five where there are so many. Both ends stay, their neighbours keep
/// the average of three.
void smooth(color_table& table);

/// The channel as a line in a pane of this size, a point a column.
std::vector<CPoint> channel_line(const color_table& table, color_channel channel, CSize pane);

/// Entry that column `x` of `width` shows.
colorEntry column_color(const color_table& table, int x, int width) noexcept;

} // namespace vldv::view
