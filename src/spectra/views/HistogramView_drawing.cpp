// The picture of the bars, the delimiters over it, and what stands around.
#include "document/StorageDoc.h"
#include "platform/draw/DC.h"
#include "spectra/views/HistogramView.h"
#include "view/axes/chart_axes.h"
#include "view/axes/text_rows.h"

#include <algorithm>

using namespace vldv;

namespace {

constexpr colorEntry upperColor = 0xFF0000, lowerColor = 255;

} // namespace

spectra::count_scale CHistogramView::countScale() const
{
    constexpr int logarithmic = 1;
    return {histogram.peakCount, intOption("CountScale") == logarithmic};
}

void CHistogramView::RefreshDisplay()
{
    CountDisplayRect();
    image.Resize(displayRect.Width(), displayRect.Height());
    if (CDC* const dc = GetMemDC(); dc && image.Ok()) DrawHistogram(*dc, {0, 0});
}

void CHistogramView::DrawHistogram(CDC& dc, CPoint origin)
{
    const CSize pane = displayRect.Size();
    dc.FillSolidRect(CRect(origin, pane), colorOption("background"));
    dc.SelectObject(CPen::solid(0, colorOption("BarColor")));
    for (const CPoint top : spectra::bar_tops(histogram, pane, countScale(), partControl.part())) {
        dc.MoveTo({origin.x + top.x, origin.y + pane.cy - 1});
        dc.LineTo({origin.x + top.x, origin.y + top.y});
    }
    if (!isOptionOn("ShowCumulative")) return;
    dc.SelectObject(CPen::solid(1, colorOption("CumulativeColor")));
    std::vector<CPoint> line = spectra::cumulative_line(histogram, pane, partControl.part());
    for (CPoint& each : line) each = {origin.x + each.x, origin.y + each.y};
    dc.Polyline(line);
}

/// Dotted above the bar on which it stands, solid in it.
void CHistogramView::drawDelimiters(CDC& dc)
{
    for (const int number : {0, 1}) {
        const double share = control.share(number);
        const int x = spectra::column_of(share, displayRect, partControl.part());
        const std::uint32_t count = hasBars() ? histogram.bins[spectra::bin_at(histogram, share)] : 0;
        const int top = displayRect.bottom - countScale().rows(count, displayRect.Height());
        dc.SelectObject(CPen::dotted(upperColor));
        dc.MoveTo({x, displayRect.top});
        dc.LineTo({x, top});
        dc.SelectObject(CPen::solid(1, lowerColor));
        dc.MoveTo({x, top});
        dc.LineTo({x, displayRect.bottom});
    }
}

void CHistogramView::OnDrawData(CDC& dc)
{
    const int saved = dc.SaveDC();
    dc.SetBkMode(TRANSPARENT);
    dc.IntersectClipRect(displayRect);
    if (!isPrinting() && GetMemDC() && image.Ok())
        dc.BitBlt(displayRect, *GetMemDC(), {0, 0}, SRCCOPY);
    else
        DrawHistogram(dc, displayRect.TopLeft());
    drawDelimiters(dc);
    dc.RestoreDC(saved);
}

/// In as many rows as the window's width asks for.
void CHistogramView::drawText(CDC& dc)
{
    constexpr int leading = 3; // between rows, pixels
    const int room = displayRect.Width() + intOption("RightMargin"), margin = intOption("BottomMargin");
    const std::wstring rows =
        view::in_rows(text, [&](std::wstring_view row) { return dc.GetTabbedTextExtent(row, {}).cx <= room; });
    const view::rows_below below{intOption("TextVertSpace"), margin, intOption("text_size") + leading,
                                 1 + static_cast<int>(std::ranges::count(rows, L'\n'))};
    textRect = {displayRect.left, displayRect.bottom + below.space(), displayRect.right + intOption("RightMargin"),
                displayRect.bottom + margin};
    CRect place = textRect;
    dc.DrawText(rows, place, DT_EXPANDTABS);
}

void CHistogramView::OnDrawLegend(CDC& dc)
{
    const int saved = dc.SaveDC();
    dc.SelectObject(font);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(colorOption("legend"));
    if (hasBars()) {
        const double width = histogram.valueMax - histogram.valueMin;
        const auto at = [&](double share) { return histogram.valueMin + share * width; };
        view::draw_chart_frame(dc, *this, displayRect,
                               {at(partControl.part().from), at(partControl.part().to), shownUnits}, {0.0, 1.0, {}});
    }
    drawText(dc);
    dc.RestoreDC(saved);
}
