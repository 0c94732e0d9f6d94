#include "curves/views/section_legend.h"

#include "base/streams/rounding.h"
#include "base/text.h"
#include "platform/draw/DC.h"

#include <algorithm>

namespace vldv::curves {

namespace {

constexpr colorEntry lineColor = 0x0000FF, minimumColor = 0xFF0000;
constexpr int dotRadius = 2;

CPen line_pen(int thickness)
{
    return {PS_SOLID | PS_GEOMETRIC | PS_ENDCAP_FLAT | PS_JOIN_BEVEL, thickness, lineColor, {}};
}

CPen dashed_pen(int thickness)
{
    const auto width = static_cast<std::uint32_t>(std::max(thickness, 0));
    return {
        PS_USERSTYLE | PS_GEOMETRIC | PS_ENDCAP_FLAT | PS_JOIN_BEVEL, thickness, lineColor, {width + 1, 2 * width + 2}};
}

/// Between two samples, as far as it is in sight.
void draw_line(CDC& dc, const figure_pane& on, double a, double b, double begin, double end)
{
    const double first = std::max(begin, on.pane.firstShown()), last = std::min(end, on.pane.lastShown());
    if (first > last) return;
    dc.MoveTo(on.columnOf(first), on.rowOf(a + b * first, on.values.start));
    dc.LineTo(on.columnOf(last), on.rowOf(a + b * last, on.values.start));
}

} // namespace

int figure_pane::rowOf(double value, double zero) const noexcept
{
    return place.top + pane.row(values.scale == 0.0 ? 0.0 : (value - zero) / values.scale);
}

int figure_pane::columnOf(double sample) const noexcept { return place.left + pane.column(sample); }

void draw_force_lines(CDC& dc, const figure_pane& on, const force_curve_stats& stats)
{
    dc.SelectObject(line_pen(on.thickness));
    if (stats.hasSlant()) draw_line(dc, on, stats.slant_a, stats.slant_b, stats.slant_first, stats.slant_last);
    if (stats.hasZero()) draw_line(dc, on, stats.zero_a, stats.zero_b, stats.zero_first, stats.zero_last);
}

void draw_minima(CDC& dc, const figure_pane& on, std::span<const std::int16_t> curve, const force_curve_stats& stats)
{
    dc.SelectObject(CPen::solid(1, minimumColor));
    dc.SelectObject(CBrush::solid(minimumColor));
    for (const std::int32_t at : stats.local_minima) {
        if (at < 0 || static_cast<std::size_t>(at) >= curve.size()) continue;
        const int x = on.columnOf(at), y = on.place.top + on.pane.row(curve[static_cast<std::size_t>(at)]);
        dc.Ellipse({x - dotRadius, y - dotRadius, x + dotRadius, y + dotRadius});
    }
}

void draw_valleys(CDC& dc, const figure_pane& on, std::span<const std::int16_t> curve, const force_curve_stats& stats)
{
    dc.SetBkMode(TRANSPARENT);
    for (std::uint32_t k = 0; k < stats.valley_count; ++k) {
        const auto [first, last] = stats.valleys[k];
        if (first < 0 || last <= first || static_cast<std::size_t>(last) >= curve.size()) continue;
        const auto rowAt = [&](std::int32_t i) {
            return on.place.top + on.pane.row(curve[static_cast<std::size_t>(i)]);
        };
        std::vector<CPoint> outline;
        for (std::int32_t i = first; i <= last; ++i) outline.push_back({on.columnOf(i), rowAt(i)});
        dc.SelectObject(CPen::solid(1, lineColor));
        dc.SelectObject(CBrush::hatched(k % 2 == 0 ? HS_FDIAGONAL : HS_BDIAGONAL, lineColor));
        dc.Polygon(outline);
        const std::wstring label = base::widen(base::formatted("S%u", k + 1));
        const CSize extent = dc.GetTextExtent(label);
        const CPoint foot{std::max(on.columnOf((first + last) * 0.5), on.place.left + on.thickness + 1),
                          (rowAt(first) + rowAt(last)) / 2};
        dc.SetTextAlign(TA_LEFT | TA_TOP);
        dc.TextOut(foot.x, foot.y - 2 * extent.cy, label);
        dc.MoveTo(foot.x, foot.y - extent.cy);
        dc.LineTo(foot);
    }
}

void draw_trend(CDC& dc, const figure_pane& on, const trend_line& trend)
{
    dc.SelectObject(dashed_pen(on.thickness));
    draw_line(dc, on, trend.line.A, trend.line.B, 0.0, on.pane.samples - 1.0);
}

void draw_places(CDC& dc, const figure_pane& on, std::span<const std::int16_t> curve,
                 std::span<const std::uint32_t> places, colorEntry color)
{
    std::vector<CPoint> line;
    for (const std::uint32_t place : places)
        if (place < curve.size()) line.push_back({on.columnOf(place), on.place.top + on.pane.row(curve[place])});
    dc.SelectObject(CPen::solid(1, color));
    dc.SelectObject(CBrush::solid(color));
    if (line.size() > 1) return dc.Polyline(line);
    for (const CPoint& at : line)
        dc.Ellipse({at.x - dotRadius, at.y - dotRadius, at.x + dotRadius + 1, at.y + dotRadius + 1});
}

void draw_joints(CDC& dc, const figure_pane& on, const profile& section)
{
    dc.SelectObject(dashed_pen(on.thickness));
    double position = 0.0;
    for (std::size_t i = 0; i + 1 < section.segmentLengths.size(); ++i) {
        position += section.segmentLengths[i] - 1.0;
        const int x = on.columnOf(position);
        dc.MoveTo(x, on.place.top);
        dc.LineTo(x, on.place.bottom);
    }
}

} // namespace vldv::curves
