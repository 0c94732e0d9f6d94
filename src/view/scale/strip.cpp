#include "view/scale/strip.h"

#include "base/text.h"
#include "base/units.h"
#include "view/AxisLine.h"
#include "view/axes/chart_axes.h"

#include <algorithm>
#include <cstdlib>

namespace vldv::view {

namespace {

constexpr int penWidth = 2; ///< of a colour's line: neighbours overlap, so that no gap shows at any zoom
constexpr std::size_t maxSizeText = 40;
constexpr double largestRatio = 0.00390625; ///< 1 / 256

CPen color_pen(std::uint32_t end, colorEntry color) { return {PS_SOLID | PS_GEOMETRIC | end, penWidth, color, {}}; }

void draw_colors(CDC& dc, const CRect& rect, const scale_state& state, const color_table& table, bool isVertical)
{
    if (isVertical) {
        for (int i = rect.Height(); i >= 0; --i) {
            dc.SelectObject(color_pen(PS_ENDCAP_SQUARE, color_at(table, state.inverse, i, rect.Height())));
            dc.MoveTo(rect.left, rect.bottom - i);
            dc.LineTo(rect.right, rect.bottom - i);
        }
        return;
    }
    for (int i = 0; i <= rect.Width(); ++i) {
        dc.SelectObject(color_pen(PS_ENDCAP_ROUND, color_at(table, state.inverse, i, rect.Width())));
        dc.MoveTo(rect.left + i, rect.top);
        dc.LineTo(rect.left + i, rect.bottom);
    }
}

void draw_delimiters(CDC& dc, const CRect& rect, const scale_state& state, bool isVertical)
{
    if (state.scaleLength < 1) return;
    dc.SelectObject(CPen::dotted(0xffffff));
    dc.SetBkColor(0);
    dc.SetBkMode(OPAQUE);
    for (const int delimiter : {state.upperDelimiter, state.lowerDelimiter}) {
        if (isVertical) {
            const int y = delimiter * (rect.Height() + 1) / state.scaleLength + rect.top;
            dc.MoveTo(rect.left, y);
            dc.LineTo(rect.right, y);
        } else {
            const int x = delimiter * (rect.Width() + 1) / state.scaleLength; // from 0, not from the left side
            dc.MoveTo(x, rect.top);
            dc.LineTo(x, rect.bottom);
        }
    }
}

/// Span of the window, while it is being changed.
void draw_window_size(CDC& dc, const CRect& rect, const scale_state& state, const color_table& table)
{
    const std::string text = base::formatted("%G %s", state.fixedSize, state.fixedUnits.c_str());
    const std::wstring shown = base::widen(text).substr(0, maxSizeText);
    dc.SetTextColor(contrast(color_at(table, state.inverse, 1, 2)));
    dc.SetTextAlign(TA_CENTER | TA_TOP);
    dc.TextOut(rect.left + rect.Width() / 2, rect.top + (rect.Height() / 2 - dc.GetTextExtent(shown).cy) / 2, shown);
}

void draw_axis(CDC& dc, const CRect& rect, const scale_state& state, const color_table& table, bool isVertical)
{
    const colorEntry color = contrast(table[(table.size() - 1) >> 1]);
    const CPen pen = CPen::solid(1, color);
    dc.SetTextColor(color);
    axis_line axis;
    axis.dc = &dc;
    axis.axisPen = &pen;
    axis.flags = isVertical ? AXIS_VERTICAL | AXIS_TICKS | AXIS_TEXT : AXIS_OTHER_SIDE | AXIS_TICKS | AXIS_TEXT;
    axis.ticNumber = 4;
    axis.reserved = 4;
    axis.ticLength = 1;
    axis.minGap = 1;
    axis.x0 = rect.left;
    axis.y0 = rect.bottom;
    axis.x1 = isVertical ? rect.left : rect.right;
    axis.y1 = isVertical ? rect.top : rect.bottom;
    const shown_axis shown =
        counted_in_powers({state.fixedStart, state.fixedStart + state.fixedSize, state.fixedUnits});
    axis.start = shown.start;
    axis.end = shown.end;
    axis.units = shown.units.c_str();
    DrawAxisLine(&axis);
}

} // namespace

const CFont& strip_font()
{
    static const CFont font{-10, 400, false, false, {}};
    return font;
}

void draw_strip(CDC& dc, const CRect& rect, const scale_state& state, const color_table& table, tdTileDirection along,
                bool withAxis)
{
    if (table.empty()) return;
    const bool isVertical = (along == tdOwn ? state.direction : along) == tdVertical;
    const int saved = dc.SaveDC();
    draw_colors(dc, rect, state, table, isVertical);
    if (state.autoScaling == fixedScale && state.active) {
        draw_delimiters(dc, rect, state, isVertical);
        dc.SelectObject(strip_font());
        dc.SetBkMode(TRANSPARENT);
        if (!isVertical && state.dragging && state.hotDelimiter) draw_window_size(dc, rect, state, table);
        if (withAxis) draw_axis(dc, rect, state, table, isVertical);
    }
    dc.RestoreDC(saved);
}

int along_strip(const scale_state& state, CPoint point) noexcept
{
    return state.direction == tdVertical ? point.y - state.stripRect.top : point.x - state.stripRect.left;
}

strip_delimiter delimiter_at(const scale_state& state, CPoint point) noexcept
{
    CRect reach(state.stripRect);
    reach.InflateRect(state.grabTolerance, state.grabTolerance);
    const int position = along_strip(state, point);
    const int toUpper = std::abs(state.upperDelimiter - position), toLower = std::abs(state.lowerDelimiter - position);
    if (std::min(toUpper, toLower) > state.grabTolerance || !reach.PtInRect(point)) return noDelimiter;
    return toUpper > toLower ? lowerOne : upperOne;
}

bool move_delimiter(scale_state& state, int position) noexcept
{
    // The distance between the two stands for the size of the window, so that pulling one changes the size in
    // proportion. The upper one moves the start of the window and leaves its end, start + size, where it is; the lower
    // one moves the end.
    const double between = state.lowerDelimiter - state.upperDelimiter;
    if (between < 1.0) return false; // a strip without length
    if (state.hotDelimiter == upperOne) {
        const int moved = std::min(state.lowerDelimiter - 1, position);
        if (moved == state.upperDelimiter) return false;
        const double size = state.fixedSize * (state.lowerDelimiter - moved) / between;
        const double change = size - state.fixedSize;
        state.fixedStart -= change;
        state.relativeMeanOffset -= change * 0.5;
        state.fixedSize = size;
        state.upperDelimiter = moved;
        return true;
    }
    const int moved = std::max(state.upperDelimiter + 1, position);
    if (state.hotDelimiter != lowerOne || moved == state.lowerDelimiter) return false;
    state.fixedSize *= (moved - state.upperDelimiter) / between;
    state.lowerDelimiter = moved;
    return true;
}

void reset_delimiters(scale_state& state) noexcept
{
    state.upperDelimiter = state.scaleLength >> 2;
    state.lowerDelimiter = state.scaleLength - (state.scaleLength >> 2);
}

bool window_suits(const scale_state& state, const data_range& data, bool absolute) noexcept
{
    if (units_convertable(state.fixedUnits.c_str(), data.units) <= 0) return false;
    const double span = data.high - data.low;
    const double start = absolute ? state.fixedStart : state.relativeMeanOffset, low = absolute ? data.low : 0.0;
    return start < low + span && start + state.fixedSize > low && !(state.fixedSize * largestRatio > span) &&
           !(span * largestRatio > state.fixedSize);
}

void take_window(scale_state& state, const data_range& data)
{
    state.fixedUnits = data.units;
    state.fixedStart = data.low;
    state.fixedSize = data.high - data.low;
    state.relativeMeanOffset = 0.0;
}

} // namespace vldv::view
