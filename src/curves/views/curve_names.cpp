#include "curves/views/curve_names.h"

#include "platform/draw/DC.h"

#include <algorithm>

namespace vldv::curves {

namespace {

constexpr int sampleLength = 18, gap = 5, margin = 4; // pixels
constexpr int rowsOfPane = 4;                         // that a line of names takes one of at most

} // namespace

void draw_curve_names(CDC& dc, const CRect& pane, std::span<const named_curve> named)
{
    int width = margin, height = 0;
    for (const named_curve& each : named) {
        if (each.name.empty()) return;
        const CSize extent = dc.GetTextExtent(each.name);
        width += sampleLength + gap + extent.cx + 2 * gap;
        height = std::max<int>(height, extent.cy);
    }
    if (width > pane.Width() || height * rowsOfPane > pane.Height()) return;
    CPoint at{pane.right - width, pane.top + margin};
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextAlign(TA_LEFT | TA_TOP);
    for (const named_curve& each : named) {
        dc.SelectObject(CPen{each.isDotted ? std::uint32_t{PS_DOT} : std::uint32_t{PS_SOLID}, 1, each.color, {}});
        const int middle = at.y + height / 2;
        dc.MoveTo(at.x, middle);
        dc.LineTo(at.x + sampleLength, middle);
        at.x += sampleLength + gap;
        dc.TextOut(at.x, at.y, each.name);
        at.x += dc.GetTextExtent(each.name).cx + 2 * gap;
    }
}

} // namespace vldv::curves
