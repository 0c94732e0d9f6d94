#pragma once
#include "platform/draw/DC.h"
#include "view/scale/ColorTable.h"
#include "view/scale/scale_state.h"

/// The strip that shows a scale's colours, and the two handles on it that move and stretch the fixed window: arithmetic
/// on a plain state, for windows, menus and legends alike.
namespace vldv::view {

/// What `hotDelimiter` says. The upper one comes first along the strip.
enum strip_delimiter : int { noDelimiter = 0, upperOne = 1, lowerOne = 2 };

/// A colour that can be read on `color`: each channel in the other half of its range.
constexpr colorEntry contrast(colorEntry color) noexcept
{
    const auto away = [](unsigned channel) {
        const int value = static_cast<int>(channel);
        const auto distance = [value](int from) { return value < from ? from - value : value - from; };
        return static_cast<unsigned>(value < 128 ? distance(64) + 191 : 64 - distance(192));
    };
    return color_of(away(red_of(color)), away(green_of(color)), away(blue_of(color)));
}

/// Font of what is written on strips.
const CFont& strip_font();

/// Draws colours, and on an active strip in fixed mode its delimiters. The settings of `dc` are as before afterwards.
/// \param along     the low end is left, or at the bottom; `tdOwn` for the state's own direction
/// \param withAxis  in that mode, an axis of the fixed window
void draw_strip(CDC& dc, const CRect& rect, const scale_state& state, const color_table& table, tdTileDirection along,
                bool withAxis);

/// Position of a point along the strip, pixels.
int along_strip(const scale_state& state, CPoint point) noexcept;
/// The delimiter that can be grabbed at a point; between two at the same distance the upper one.
strip_delimiter delimiter_at(const scale_state& state, CPoint point) noexcept;
/// Moves the delimiter that is held; it stops one pixel before the other, and the fixed window changes with the
/// distance of both. \return whether it moved
bool move_delimiter(scale_state& state, int position) noexcept;
/// Puts the delimiters at the strip's quarters.
void reset_delimiters(scale_state& state) noexcept;

/// Physical range of data, from `low` to `high`.
struct data_range {
    double low = 0.0, high = 0.0;
    const char* units = "";
};
/// The fixed window overlaps data of this range, and neither is more than 256 times the other. Numbers are compared as
/// they stand, whatever their units.
/// \param absolute  the window begins at `fixedStart`, else `relativeMeanOffset` above the lowest value
bool window_suits(const scale_state& state, const data_range& data, bool absolute) noexcept;
/// Makes the fixed window the range of the data.
void take_window(scale_state& state, const data_range& data);

} // namespace vldv::view
