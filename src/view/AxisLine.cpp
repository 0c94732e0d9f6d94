#include "view/AxisLine.h"

#include "base/text.h"
#include "view/axes/AxisLabels.h"
#include "view/axes/TickRule.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

using namespace vldv;

namespace {

/// Pixels along an axis that a text takes.
struct text_extent {
    int first, last;
};

int gap_between(text_extent a, text_extent b) noexcept { return std::max(b.first - a.last, a.first - b.last); }

/// One axis while it is drawn. "Along" counts pixels from the start to the end, "out" from the axis to its labels.
class axis_drawing {
public:
    explicit axis_drawing(const axis_line& axis_)
        : axis(axis_),
          dc(*axis_.dc),
          vertical((axis_.flags & AXIS_VERTICAL) != 0),
          along(vertical ? (axis_.y1 < axis_.y0 ? -1 : 1) : (axis_.x1 < axis_.x0 ? -1 : 1)),
          out((axis_.flags & AXIS_OTHER_SIDE) != 0 ? -1 : 1),
          length(vertical ? std::abs(axis_.y1 - axis_.y0) : std::abs(axis_.x1 - axis_.x0)),
          penWidth(std::max(1, axis_.dc->getCurrentPen().width)),
          metric(axis_.dc->GetTextMetrics())
    {
    }

    void line() const
    {
        // Outward and longer by the same: lines along neighbouring edges meet at the corner however wide they are.
        const int shift = has(AXIS_KEEP_LINE) ? 0 : std::max(1, (penWidth + 1) / 2);
        dc.MoveTo(at(-shift, shift));
        dc.LineTo(at(length + shift, shift));
    }

    void scale()
    {
        view::find_ticks(axis.start, axis.end, length, axis.ticNumber, found);
        const std::uint32_t across = out < 0 ? TA_RIGHT : TA_LEFT;
        const std::uint32_t alignBefore =
            dc.SetTextAlign(vertical ? across | TA_BASELINE : TA_CENTER | (out < 0 ? TA_BOTTOM : TA_TOP));
        if (has(AXIS_TEXT)) unit();
        for (const view::axis_tick& tick : found.ticks) {
            if (has(AXIS_TICKS) && !(has(AXIS_NO_TICK_AT_ZERO) && tick.value == 0.0)) mark(tick.offset);
            if (has(AXIS_TEXT)) label(tick);
        }
        dc.SetTextAlign(alignBefore);
    }

    void zeroLine()
    {
        if (!((axis.start < 0.0 && axis.end > 0.0) || (axis.start > 0.0 && axis.end < 0.0))) return;
        view::find_ticks(axis.start, axis.end, length, axis.ticNumber, found);
        if (found.step == 0.0) return; // the span is not finite: no value has a place
        const CPen before = dc.SelectObject(*axis.zeroPen);
        mark(found.offsetOf(0.0, axis.start));
        dc.SelectObject(before);
    }

private:
    bool has(std::uint32_t flag) const noexcept { return (axis.flags & flag) != 0; }
    CPoint at(int alongPixels, int outPixels) const noexcept
    {
        return vertical ? CPoint{axis.x0 + out * outPixels, axis.y0 + along * alongPixels}
                        : CPoint{axis.x0 + along * alongPixels, axis.y0 + out * outPixels};
    }
    int tickLength() const noexcept { return axis.ticLength + penWidth; }

    void mark(int offset) const
    {
        dc.MoveTo(at(offset, 0));
        dc.LineTo(at(offset, tickLength()));
    }

    int sizeAlong(const std::wstring& text) const { return vertical ? metric.tmHeight : dc.GetTextExtent(text).cx; }

    /// Writes a text whose middle lies `middle` pixels along the axis. A vertical axis' text stands on a baseline that
    /// puts the digits' middle there.
    void write(int middle, const std::wstring& text) const
    {
        CPoint point = at(middle, tickLength());
        if (vertical) point.y += (metric.tmAscent - metric.tmDescent) / 2;
        dc.TextOut(point.x, point.y, text);
    }

    /// The unit ends where the axis ends; labels keep away from it.
    void unit()
    {
        if (!axis.units || !*axis.units) return;
        const std::wstring text = base::widen(axis.units);
        const int size = sizeAlong(text);
        write(length - size / 2, text);
        taken = {length - size, length};
    }

    void label(const view::axis_tick& tick)
    {
        const std::string text = view::axis_label(tick.value, found.step, axis.format);
        if (has(AXIS_NO_REPEATS) && text == view::axis_label(tick.value + found.step, found.step, axis.format)) return;
        const std::wstring wide = base::widen(text);
        const int size = sizeAlong(wide);
        const text_extent place{tick.offset - size / 2, tick.offset - size / 2 + size};
        if (previous && gap_between(*previous, place) < axis.minGap) return;
        if (taken && gap_between(place, *taken) < axis.minGap) return;
        write(tick.offset, wide);
        previous = place;
    }

    const axis_line& axis;
    CDC& dc;
    const bool vertical;
    const int along, out, length, penWidth;
    const TEXTMETRIC metric;
    view::axis_ticks found;
    std::optional<text_extent> taken;    ///< by the unit
    std::optional<text_extent> previous; ///< label
};

} // namespace

void DrawAxisLine(const axis_line* axis)
{
    if (!axis || !axis->dc) return;
    const CPen before = axis->dc->getCurrentPen();
    if (axis->axisPen) axis->dc->SelectObject(*axis->axisPen);
    axis_drawing drawing(*axis);
    if (axis->flags & AXIS_LINE) drawing.line();
    if (axis->flags & (AXIS_TICKS | AXIS_TEXT)) drawing.scale();
    if (axis->zeroPen) drawing.zeroLine();
    axis->dc->SelectObject(before);
}

void DrawGrid(CDC* dc, const CRect& rect, int mode, double xStart, double xEnd, double yStart, double yEnd,
              bool noZeroLine, int xTics, int yTics)
{
    if (!dc) return;
    view::axis_ticks found;
    const auto draw = [&](double start, double end, int pixels, int number, auto&& line) {
        view::find_ticks(start, end, pixels, number, found);
        for (const view::axis_tick& tick : found.ticks)
            if (!noZeroLine || tick.value != 0.0) line(tick.offset);
    };
    if (mode & 1)
        draw(yStart, yEnd, rect.Height(), yTics, [&](int offset) {
            dc->MoveTo(rect.left, rect.bottom - offset);
            dc->LineTo(rect.right, rect.bottom - offset);
        });
    if (mode & 2)
        draw(xStart, xEnd, rect.Width(), xTics, [&](int offset) {
            dc->MoveTo(rect.left + offset, rect.bottom);
            dc->LineTo(rect.left + offset, rect.top);
        });
}
