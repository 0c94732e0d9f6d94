// The picture of the curves and of the spectrum, and the marks over it.
#include "base/streams/rounding.h"
#include "base/text.h"
#include "curves/figures/display/curve_points.h"
#include "curves/figures/display/spectrum_display.h"
#include "curves/figures/measured_runs.h"
#include "curves/views/SectionView.h"
#include "curves/views/chart_drawing.h"
#include "platform/app/WinApp.h"
#include "view/axes/text_rows.h"

#include <algorithm>

using namespace vldv;

namespace {

constexpr unsigned refreshTimer = 5;
constexpr unsigned refreshDelay = 10; // milliseconds
constexpr colorEntry markColor = 0xFF0000, phaseColor = 0xC0C0C0, spectrumColor = 0x0000FF;

} // namespace

void CSectionView::RefreshDisplay()
{
    if (!isPrinting()) SetTimer(refreshTimer, refreshDelay);
    DoRefreshDisplay(true);
}

void CSectionView::OnTimer(unsigned id)
{
    if (id != refreshTimer) return CImageView::OnTimer(id);
    KillTimer(refreshTimer);
    Invalidate(false);
    DoRefreshDisplay(false);
}

void CSectionView::measurePane()
{
    pane = curves::make_pane(displayRect.Size(), section.length, min_max, valueAxis(), zeroOffset(), fixedHeights());
    pane.part = partControl.part();
}

void CSectionView::DoRefreshDisplay(bool quick)
{
    if (!hasCurves() || !stream()) return; // a window that closes is still sized and timed
    fitFixedScale();
    CountDisplayRect();
    measurePane();
    if (isOptionOn("ShowSpectrum")) {
        const auto mode =
            intOption("spectrum_mode") == 0 ? curves::spectrum_mode::power : curves::spectrum_mode::magnitude;
        spectrum = {};
        if (isMeasuredThroughout(activeCurve())) curves::evaluate_spectrum(shownCurve(), valueAxis(), mode, spectrum);
    }
    image.Resize(displayRect.Width(), displayRect.Height());
    if (CDC* const dc = GetMemDC(); dc && image.Ok() && (quick || !isQuickAlreadyFine())) {
        dc->FillSolidRect(CRect({0, 0}, displayRect.Size()), colorOption("background"));
        drawCurves(*dc, {0, 0}, quick);
    }
    for (int mark = 0; mark < static_cast<int>(marks.marks.size()); ++mark) updateMarkY(mark);
    updateText();
    if (!quick) tellSurfaces();
}

/// Thin whole lines look the same both ways, and are drawn once.
bool CSectionView::isQuickAlreadyFine() const
{
    const std::vector<shown_curve> shown = shownCurves();
    return intOption("line.width") <= 1 && std::ranges::none_of(shown, &shown_curve::isDotted);
}

void CSectionView::fitFixedScale()
{
    if (!hasFixedScale() || isSizing || displayRect.Width() == wantedSize().cx) return;
    isSizing = true;
    fitParent();
    isSizing = false;
}

/// The active curve comes last, over the others.
std::vector<CSectionView::shown_curve> CSectionView::shownCurves() const
{
    const unsigned count = section.curves, active = activeCurve();
    const int shown = intOption("show_only");
    constexpr int activeLine = 1, activePair = 2;
    std::vector<shown_curve> found;
    for (unsigned j = 0; j < count; ++j) {
        const unsigned each = (active + count - 1 - j) % count;
        if ((shown == activeLine && each != active) || (shown == activePair && each / 2 != active / 2)) continue;
        const bool isDotted = each != active && (count < 3 || shown == activePair);
        found.push_back({each, isDotted, colorOption(each % 2 == 0 ? "line1color" : "line2color")});
    }
    return found;
}

void CSectionView::drawCurves(CDC& dc, CPoint origin, bool quick) const
{
    const int width = intOption("line.width");
    const curves::curve_pane fine = pane.finer(curves::partsOnPage);
    std::vector<CPoint> line;
    dc.SetBkMode(TRANSPARENT); // gaps of dotted curves show what is below
    for (const auto& [each, isDotted, color] : shownCurves()) {
        if (quick || isPrinting())
            dc.SelectObject(CPen{isDotted ? std::uint32_t{PS_DASH} : std::uint32_t{PS_SOLID},
                                 isDotted || width == 0 ? 0 : 1,
                                 color,
                                 {}});
        else
            dc.SelectObject(CPen{(isDotted ? PS_DOT : PS_SOLID) | PS_GEOMETRIC, width, color, {}});
        curves::for_each_measured_run(section, each, [&](std::size_t first, std::size_t end) {
            const std::span<const std::int16_t> run = section.curve(each).subspan(first, end - first);
            if (!dc.IsPrinting()) {
                curves::curve_points(run, pane, first, origin, line);
                return dc.Polyline(line);
            }
            curves::curve_points(run, fine, first, {}, line);
            curves::draw_page_line(dc, origin, line);
        });
    }
}

void CSectionView::drawSpectrum(CDC& dc, CPoint origin, bool quick) const
{
    const int width = intOption("line.width");
    dc.SelectObject(CPen{quick ? std::uint32_t{PS_SOLID} : PS_SOLID | PS_GEOMETRIC, width, phaseColor, {}});
    const CSize fine = curves::curve_pane{displayRect.Size()}.finer(curves::partsOnPage).size;
    const auto draw = [&](auto place) {
        if (dc.IsPrinting()) return curves::draw_page_line(dc, origin, place(fine, CPoint{}));
        dc.Polyline(place(displayRect.Size(), origin));
    };
    draw([&](CSize size, CPoint from) { return curves::phase_points(spectrum, shownLength(), size, from); });
    dc.SelectObject(CPen{PS_SOLID | PS_GEOMETRIC, width, spectrumColor, {}});
    draw([&](CSize size, CPoint from) { return curves::spectrum_points(spectrum, shownLength(), size, from); });
}

double CSectionView::sampleOf(int mark) const noexcept
{
    if (mark == curves::spectrumMark) return shownLength() / 2 * marks[mark].x;
    return (section.length - 1.0) * marks[mark].x;
}

void CSectionView::updateMarkY(int mark)
{
    if (!hasCurves() || mark == curves::levelMark) return;
    if (mark == curves::spectrumMark) {
        if (isOptionOn("ShowSpectrum"))
            marks[mark].y = curves::spectrum_at(spectrum, sampleOf(mark)).value / spectrum.max;
        return;
    }
    marks[mark].y = pane.share(curves::raw_between(shownCurve(), sampleOf(mark)));
}

curves::mark_panes CSectionView::panes() const
{
    curves::mark_panes made{displayRect, {}, partControl.part()};
    if (isOptionOn("ShowSpectrum")) {
        made.spectrum = displayRect;
        made.spectrum.OffsetRect(0, displayRect.Height() + intOption("BottomMargin"));
    }
    return made;
}

void CSectionView::OnDrawData(CDC& dc)
{
    if (!hasCurves()) return;
    const curves::mark_panes shown = panes();
    const int saved = dc.SaveDC();
    dc.SetBkMode(TRANSPARENT);
    dc.IntersectClipRect(shown.curve);
    if (!isPrinting() && GetMemDC() && image.Ok()) {
        dc.BitBlt(shown.curve, *GetMemDC(), {0, 0}, SRCCOPY);
    } else {
        dc.FillSolidRect(shown.curve, colorOption("background"));
        drawCurves(dc, shown.curve.TopLeft(), false);
    }
    if (marksMode() == curves::marks_mode::verticalLines) draw_marks(dc);
    if (marksMode() == curves::marks_mode::crossbar) {
        draw_crossbar(dc);
        draw_step_pointer(dc);
    }
    dc.RestoreDC(saved);
    if (!shown.spectrum.IsRectEmpty()) drawSpectrumPane(dc, shown.spectrum);
    drawTexts(dc);
}

void CSectionView::drawSpectrumPane(CDC& dc, const CRect& shown)
{
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(shown);
    dc.FillSolidRect(shown, colorOption("background"));
    drawSpectrum(dc, shown.TopLeft(), false);
    drawUprightMark(dc, curves::spectrumMark, shown);
    drawMarkDot(dc, curves::spectrumMark, shown);
    dc.RestoreDC(saved);
}

/// Client pixels; outside of the pane for a mark that is out of sight.
int CSectionView::columnOfMark(int mark, const CRect& shown) const
{
    const double share = mark == curves::spectrumMark ? marks[mark].x : partControl.part().toPane(marks[mark].x);
    return shown.left + base::nearest_int((shown.Width() - 1) * share);
}

void CSectionView::drawUprightMark(CDC& dc, int mark, const CRect& shown) const
{
    dc.SelectObject(CPen::dotted(markColor));
    const int x = columnOfMark(mark, shown);
    dc.MoveTo(x, shown.top);
    dc.LineTo(x, shown.bottom);
}

void CSectionView::drawMarkDot(CDC& dc, int mark, const CRect& shown) const
{
    const int height = shown.Height() - 1;
    curves::draw_mark_dot(dc,
                          {columnOfMark(mark, shown), shown.top + base::nearest_int(height - height * marks[mark].y)});
}

void CSectionView::draw_marks(CDC& dc) const
{
    for (const int mark : {curves::firstMark, curves::secondMark}) drawUprightMark(dc, mark, displayRect);
    for (const int mark : {curves::firstMark, curves::secondMark}) drawMarkDot(dc, mark, displayRect);
}

void CSectionView::draw_crossbar(CDC& dc) const
{
    dc.SelectObject(CPen::dotted(markColor));
    const int height = displayRect.Height() - 1;
    const int y = displayRect.top + base::nearest_int(height - height * marks[curves::levelMark].y);
    dc.MoveTo(displayRect.left, y);
    dc.LineTo(displayRect.right, y);
    drawUprightMark(dc, curves::positionMark, displayRect);
}

void CSectionView::draw_step_pointer(CDC& dc) const { drawMarkDot(dc, curves::positionMark, displayRect); }

int CSectionView::rowHeight() const
{
    constexpr int leading = 3; // between rows, pixels
    return intOption("text_size") + leading;
}

/// Texts move up towards the numbers of the axis where the margin has no room for all of their rows.
CRect CSectionView::textRect(int line) const
{
    const int margin = intOption("BottomMargin");
    const int space =
        view::rows_below{intOption("TextVertSpace"), margin, rowHeight(), line == 0 ? textRows : 1}.space();
    const int top = displayRect.top + displayRect.Height() * (line + 1) + margin * line + space;
    return {displayRect.left, top, displayRect.right + intOption("RightMargin"), top + std::max(margin - space, 0)};
}

void CSectionView::drawTexts(CDC& dc)
{
    const int saved = dc.SaveDC();
    dc.SelectObject(font);
    dc.SetTextColor(colorOption("legend"));
    dc.SetBkMode(TRANSPARENT);
    const int room = displayRect.Width() + intOption("RightMargin");
    const std::wstring rows =
        view::in_rows(text, [&](std::wstring_view row) { return dc.GetTabbedTextExtent(row, {}).cx <= room; });
    textRows = 1 + static_cast<int>(std::ranges::count(rows, L'\n'));
    CRect place = textRect(0);
    dc.DrawText(rows, place, DT_EXPANDTABS);
    if (isOptionOn("ShowSpectrum")) {
        const CRect below = textRect(1);
        dc.TabbedTextOut(below.left, below.top, spectrumLine, {}, below.left);
    }
    dc.RestoreDC(saved);
}
