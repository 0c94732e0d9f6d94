#include "view/axes/scale_mark.h"

#include "base/streams/rounding.h"
#include "base/units.h"
#include "view/DCView.h"

#include <cmath>

namespace vldv::view {

namespace {

constexpr double smallestShare = 0.01;   // of the span
constexpr double leastLength = 1e-9;     // below it there is no bar
constexpr int atBottom = 1, atRight = 2; // bits of a position

CPoint anchor_of(const CRect& display, const scale_mark_style& style)
{
    const double near = style.margin, far = 1.0 - style.margin;
    const bool isRight = (style.position & atRight) != 0, isBottom = (style.position & atBottom) != 0;
    const double x = isRight ? display.right * far + display.left * near : display.right * near + display.left * far;
    const double y = isBottom ? display.bottom * far + display.top * near : display.bottom * near + display.top * far;
    return {base::nearest_int(x), base::nearest_int(y)};
}

void draw_bar(CDC& dc, CPoint from, CPoint to, int thickness)
{
    for (const auto& [color, shift] : {std::pair{0xFFFFFFu, 0}, std::pair{0u, 1}}) {
        dc.SelectObject(CPen{PS_SOLID | PS_GEOMETRIC | PS_ENDCAP_FLAT, thickness, color, {}});
        dc.MoveTo(from.x + shift, from.y + shift);
        dc.LineTo(to.x + shift, to.y + shift);
    }
}

} // namespace

double scale_bar_length(double span, const char* units, double wantedNm, double margin, double share)
{
    double bar = share * span;
    if (units_convertable(units, "nm") >= 1 && wantedNm > 0.0) bar = convert_size("nm", units, wantedNm);
    if ((1.0 - 2.0 * margin) * span < bar || bar < smallestShare * span) bar = share * span;
    if (!(std::fabs(bar) >= leastLength)) return 0.0;
    // Down to its leading digit, so that the number at the bar is a short one.
    const double power = std::pow(10.0, std::floor(std::log10(std::fabs(bar))));
    return std::copysign(std::floor(std::fabs(bar) / power) * power, bar);
}

void draw_scale_mark(CDCView& view, CDC& dc, const CRect& display, double span, const std::string& units,
                     const scale_mark_style& style)
{
    const double bar = scale_bar_length(span, units.c_str(), style.size, style.margin, style.share);
    if (bar == 0.0) return;
    const int extent = style.isHorizontal ? display.Width() : display.Height();
    const int pixels = base::nearest_int(extent * bar / span);
    const bool isRight = (style.position & atRight) != 0, isBottom = (style.position & atBottom) != 0;
    const CPoint anchor = anchor_of(display, style);
    const CPoint end = style.isHorizontal ? anchor + CSize{isRight ? -pixels : pixels, 0}
                                          : anchor + CSize{0, isBottom ? -pixels : pixels};
    const int saved = dc.SaveDC();
    draw_bar(dc, anchor, end, style.thickness);
    const int inward = 2 * style.thickness;
    CPoint label = style.isHorizontal ? anchor + CSize{0, isBottom ? -inward : inward}
                                      : anchor + CSize{isRight ? -inward : inward, 0};
    dc.SetTextAlign((isBottom ? TA_BOTTOM : TA_TOP) | (isRight ? TA_RIGHT : TA_LEFT));
    view.DrawLegendText(&dc, label, legendDown, L"d c", bar, units);
    dc.RestoreDC(saved);
}

} // namespace vldv::view
