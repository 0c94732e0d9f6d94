#include "view/scale/PaletteMenuButton.h"

#include "view/Scale.h"
#include "view/scale/strip.h"

using namespace vldv;

namespace {

constexpr int gap = 10, smallestStrip = 50;
constexpr int above = 1, right = 5, below = 2; ///< free around the strip

} // namespace

CPaletteMenuButton::CPaletteMenuButton(int paletteId_, unsigned commandId_, const wchar_t* text_, int)
    : paletteId(paletteId_), command(commandId_), name(text_ ? text_ : L"")
{
}

CSize CPaletteMenuButton::OnCalculateSize(const menu_metrics& metrics)
{
    return {4 * metrics.textMargin + smallestStrip, metrics.textHeight + 2 * metrics.imageMargin};
}

CRect CPaletteMenuButton::stripArea(const CRect& item, const menu_metrics& metrics)
{
    const int column = metrics.imageWidth + 2 * metrics.textMargin;
    // All strips of a menu begin behind the longest name.
    const int start = std::max(gap + 2 * column, column + metrics.widestText + gap);
    return {item.left + start, item.top + above, item.right - right, item.bottom - below};
}

void CPaletteMenuButton::OnDraw(CDC& dc, const CRect& item, const menu_metrics& metrics, bool isHorizontal) const
{
    const CRect area = stripArea(item, metrics);
    const color_table* const table = CScale::getPalette(paletteId);
    if (!table || area.IsRectEmpty()) return;
    view::scale_state state;
    state.active = false; // nothing but the colours
    view::draw_strip(dc, area, state, *table, isHorizontal ? tdHorizontal : tdVertical, false);
}
