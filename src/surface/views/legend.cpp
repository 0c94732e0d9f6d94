#include "surface/views/legend.h"

#include "base/text.h"
#include "base/units.h"
#include "platform/app/dpi.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "surface/figures/measure/statistics_text.h"
#include "surface/overlay/mark_drawing.h"
#include "surface/overlay/overlay_geometry.h"
#include "view/DCView.h"
#include "view/axes/chart_axes.h"
#include "view/axes/scale_mark.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vldv::surface {

namespace {

constexpr double compactTextShare = 0.3; // of the window's width
constexpr int panelGap = 5;              // pixels
constexpr int usualTextSize = 13;        // of the option

int background_mode_of(const CDCView& view)
{
    return view.isOptionOn("CompactLegend") && view.isOptionOn("CompactLegend.transparent") ? TRANSPARENT : OPAQUE;
}

void draw_file_texts(CDC& dc, CDCView& view, const legend_content& content, CPoint& at)
{
    const std::wstring file = base::widen(string_resource(texts::file)), path = base::widen(content.path);
    const std::wstring label = base::widen(string_resource(texts::image));
    dc.SetTextAlign(TA_BOTTOM);
    if (!view.isOptionOn("CompactLegend")) {
        const int larger = std::max(view.intOption("text_size") - usualTextSize, 0); // than the space is meant for
        at.y = view.GetClientRect().Height() - view.intOption("BottomMargin") + view.intOption("TextVertSpace") +
               3 * larger;
        view.DrawLegendText(&dc, at, legendDown, L"C: C", file, path);
        view.DrawLegendText(&dc, at, legendDown, L"C: c", label, content.imageName);
        return;
    }
    double width = content.samples.cx * content.x.scale, height = content.samples.cy * content.y.scale;
    default_units(content.x.get_units(), &width);
    default_units(content.y.get_units(), &height);
    view.DrawLegendText(&dc, at, legendUp, base::widen(string_resource(texts::sizes)).c_str(), width, height);
    view.DrawLegendText(&dc, at, legendUp, L"C: c", label, content.imageName);
    view.DrawLegendText(&dc, at, legendUp, L"C: C", file, path);
}

void draw_parameters(CDC& dc, CDCView& view, const legend_content& content, CPoint& at)
{
    const bool isCompact = view.isOptionOn("CompactLegend");
    const double room = isCompact ? compactTextShare * view.GetClientRect().Width() : view.intOption("ParametersWidth");
    const LegendOffset next = isCompact ? legendUp : legendDown;
    dc.SetTextAlign(isCompact ? TA_BOTTOM : TA_TOP);
    if (isCompact) view.DrawLegendText(&dc, at, next, L" ");
    const std::size_t count = content.parameters.size();
    for (std::size_t i = 0; i < count; ++i) {
        const parameter_line& line = content.parameters[isCompact ? count - 1 - i : i];
        const std::string text = line.name + ": " + line.value;
        const int width = dc.GetTextExtent(base::widen(text)).cx;
        view.DrawLegendText(&dc, at, next, L"c", cut_text(text, width, room));
    }
    if (!isCompact) view.DrawLegendText(&dc, at, next, L" ");
}

void draw_statistics(CDC& dc, CDCView& view, const legend_content& content, CPoint& at)
{
    const bool isCompact = view.isOptionOn("CompactLegend");
    const LegendOffset next = isCompact ? legendUp : legendDown;
    const int room = isCompact ? std::numeric_limits<int>::max() : view.intOption("ParametersWidth") - panelGap;
    const auto widthOf = [&dc](const std::string& text) { return dc.GetTextExtent(base::widen(text)).cx; };
    std::vector<std::string> texts =
        row_texts(content.statistics, [&](const std::string& text) { return widthOf(text) <= room; });
    if (isCompact) std::ranges::reverse(texts); // upwards from the lowest
    dc.SetTextAlign(isCompact ? TA_BOTTOM : TA_TOP);
    if (isCompact) view.DrawLegendText(&dc, at, next, L" ");
    for (const std::string& text : texts) {
        const int width = widthOf(text);
        view.DrawLegendText(&dc, at, next, L"c", width > room ? cut_text(text, width, room) : text);
    }
}

/// A side of the picture: its axis, the samples on show and whether heights count from the image's own zero.
view::shown_axis side_of(const CDCView& view, const VLAxis& axis, int first, int last, const char* scaling)
{
    const double start = view.intOption(scaling) == 0 ? 0.0 : first * axis.scale + axis.start;
    return view::shown_span(axis.get_units(), start, (last - first) * axis.scale, false);
}

} // namespace

std::vector<parameter_line> listed_parameters(std::string_view list,
                                              const std::function<std::string(const std::string&, bool)>& value)
{
    std::vector<parameter_line> lines;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find('|'), list.size());
        const std::string_view entry = list.substr(0, end);
        list.remove_prefix(std::min(end + 1, list.size()));
        if (entry.size() < 2) continue;
        const std::string name(entry.substr(0, entry.size() - 1));
        lines.push_back({name, value(name, entry.back() == '+')});
    }
    return lines;
}

std::string cut_text(const std::string& text, int textWidth, double width)
{
    const std::wstring wide = base::widen(text);
    if (textWidth <= 0) return text;
    const double length = static_cast<double>(wide.size());
    const double fitting = std::trunc(width / textWidth * length - 1.0);
    if (fitting >= length) return text;
    constexpr double dots = 3.0;
    return base::narrow(wide.substr(0, static_cast<std::size_t>(std::max(fitting - dots, 0.0)))) + "...";
}

void draw_measure_text(CDC& dc, CDCView& view, const measure_text& text)
{
    if (!text.isVisible) return;
    const auto longText = static_cast<std::size_t>(std::max(view.intOption("text.compact_length"), 0));
    if (view.isOptionOn("ShowStatistics") && text.text.size() >= longText) return; // it stands in the panel
    const int saved = dc.SaveDC();
    dc.SetBkMode(OPAQUE);
    dc.SetTextColor(view.colorOption("text"));
    dc.SetBkColor(view.colorOption("text_background"));
    dc.SetTextAlign(text.alignment);
    const CPoint at{view.xsrc2clnt(text.position.x), view.ysrc2clnt(text.position.y)};
    const CPoint clamped =
        clamped_text(at, dc.GetTextExtent(text.text), text.alignment, dc.GetTextMetrics().tmAscent, view.displayRect);
    dc.TextOut(clamped.x, clamped.y, text.text);
    dc.RestoreDC(saved);
}

void draw_legend_texts(CDC& dc, CDCView& view, const legend_content& content)
{
    const int saved = dc.SaveDC();
    const bool isCompact = view.isOptionOn("CompactLegend");
    const CRect client = view.GetClientRect();
    dc.SetBkMode(background_mode_of(view));
    dc.setTextRim(true);
    dc.SetBkColor(view.colorOption(isCompact ? "legend" : "background"));
    dc.SetTextColor(view.colorOption(isCompact ? "background" : "legend"));
    CPoint at{0, isCompact ? client.Height() : 0};
    if (view.isOptionOn("ShowAdditionalLegend")) draw_file_texts(dc, view, content, at);
    if (!isCompact) at = {client.Width() - view.intOption("ParametersWidth") + panelGap, view.intOption("TopMargin")};
    if (view.isOptionOn("ShowParameters")) draw_parameters(dc, view, content, at);
    if (view.isOptionOn("ShowStatistics")) draw_statistics(dc, view, content, at);
    dc.RestoreDC(saved);
}

void draw_legend_scale_mark(CDC& dc, CDCView& view, const legend_content& content)
{
    const bool isCompact = view.isOptionOn("CompactLegend");
    if (!view.isOptionOn(isCompact ? "CompactLegend.scale_mark" : "FullLegend.scale_mark")) return;
    view::scale_mark_style style;
    style.isHorizontal = view.intOption("CompactLegend.scale_mark.direction") == 1;
    style.position = view.intOption("CompactLegend.scale_mark.position");
    style.margin = view.doubleOption("CompactLegend.scale_mark.margin");
    style.size = view.doubleOption("CompactLegend.scale_mark.size");
    style.thickness = CorrectDPISize(2);
    const VLAxis& axis = style.isHorizontal ? content.x : content.y;
    // A bar has a length, whichever way the axis runs.
    double span = (style.isHorizontal ? view.sourceRect.Width() : view.sourceRect.Height()) * std::fabs(axis.scale);
    const std::string units = default_units(axis.get_units(), &span);
    const int saved = dc.SaveDC();
    dc.SetBkMode(view.isOptionOn("CompactLegend.transparent") ? TRANSPARENT : OPAQUE); // as all of the mark's options
    dc.setTextRim(true);
    dc.SetBkColor(view.colorOption(isCompact ? "legend" : "background"));
    dc.SetTextColor(view.colorOption(isCompact ? "background" : "legend"));
    view::draw_scale_mark(view, dc, view.displayRect, span, units, style);
    dc.RestoreDC(saved);
}

void draw_legend_axes(CDC& dc, CDCView& view, const legend_content& content)
{
    if (view.isOptionOn("CompactLegend")) return;
    const int saved = dc.SaveDC();
    dc.SetBkMode(OPAQUE);
    dc.SetBkColor(view.colorOption("background"));
    dc.SetTextColor(view.colorOption("legend"));
    const CPen pen = view::axis_pen(view);
    const CRect& display = view.displayRect;
    const bool hasMark = view.isOptionOn("FullLegend.scale_mark");
    constexpr std::uint32_t labelled = AXIS_TICKS | AXIS_TEXT;
    const view::shown_axis y = side_of(view, content.y, view.sourceRect.top, view.sourceRect.bottom, "scaling.y");
    const int yTics = view.intOption("tics.y.number"), yLength = view.intOption("tics.y.length");
    const std::uint32_t vertical = AXIS_VERTICAL | AXIS_LINE;
    view::draw_side(
        dc, pen, y,
        {{display.left, display.bottom}, display.TopLeft(), vertical | AXIS_OTHER_SIDE | (hasMark ? 0u : labelled)},
        yTics, yLength);
    view::draw_side(dc, pen, y,
                    {display.BottomRight(), {display.right, display.top}, vertical | (hasMark ? 0u : AXIS_TICKS)},
                    yTics, yLength);
    const view::shown_axis x = side_of(view, content.x, view.sourceRect.left, view.sourceRect.right, "scaling.x");
    const int xTics = view.intOption("tics.x.number"), xLength = view.intOption("tics.x.length");
    view::draw_side(dc, pen, x,
                    {{display.left, display.bottom}, display.BottomRight(), AXIS_LINE | (hasMark ? 0u : labelled)},
                    xTics, xLength);
    view::draw_side(
        dc, pen, x,
        {display.TopLeft(), {display.right, display.top}, AXIS_LINE | AXIS_OTHER_SIDE | (hasMark ? 0u : AXIS_TICKS)},
        xTics, xLength);
    if (const int grid = view.intOption("grid.show")) {
        dc.SelectObject(view::grid_pen(view));
        DrawGrid(&dc, display, grid, x.start, x.end, y.start, y.end, false, xTics, yTics);
    }
    dc.RestoreDC(saved);
}

} // namespace vldv::surface
