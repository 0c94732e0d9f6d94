// The curves of pairs, their axes, and what stands over and below them.
#include "base/text.h"
#include "curves/figures/pairs/pair_text.h"
#include "curves/views/ParametricCurveView.h"
#include "curves/views/chart_drawing.h"
#include "curves/views/curve_names.h"
#include "document/StorageDoc.h"
#include "platform/draw/DC.h"
#include "view/axes/chart_axes.h"

#include <algorithm>

using namespace vldv;

namespace {

constexpr colorEntry markColor = 0xFF0000, statisticsColor = 0x0000FF;
constexpr int crossArm = 5; // pixels
constexpr int textGap = 20; // from the picture to the line of text below it
constexpr int nameGap = 3;  // between an axis and its name

void draw_line(CDC& dc, CPoint from, CPoint to)
{
    dc.MoveTo(from);
    dc.LineTo(to);
}

std::string name_of(const SPMDataStream& image)
{
    return *image.get_description() ? image.get_description() : image.get_name();
}

} // namespace

bool CParametricCurveView::isShown(unsigned curve) const
{
    constexpr int activeLine = 1, activePair = 2;
    const int wanted = intOption("show_only");
    if (wanted == activeLine) return curve == activeCurve();
    return wanted != activePair || curve / 2 == activeCurve() / 2;
}

void CParametricCurveView::RefreshDisplay()
{
    curves = source().curves();
    active = source().curve(activeCurve());
    if (!IsGood()) {
        updateText();
        return;
    }
    drawAgain();
    if (showsStatistics()) fill_parametric_curve_stats();
    settleMarks();
    updateText();
}

void CParametricCurveView::drawAgain()
{
    const curves::pair_source all = source();
    CountDisplayRect();
    curves::pair_ranges ranges;
    for (unsigned k = 0; k < curves; ++k)
        if (isShown(k)) ranges.add(k == activeCurve() ? active : all.curve(k));
    pane = curves::pair_pane(displayRect.Size(), axisX(), axisY(), ranges);
    pane.show(partControl.part());
    image.Resize(displayRect.Width(), displayRect.Height());
    if (CDC* const dc = GetMemDC(); dc && image.Ok()) {
        dc->FillSolidRect(CRect({0, 0}, displayRect.Size()), colorOption("background"));
        drawCurves(*dc, {0, 0});
    }
}

/// Of two curves the other one is dotted.
bool CParametricCurveView::isDotted(unsigned curve) const
{
    constexpr int activePair = 2;
    return curve != activeCurve() && (curves < 3 || intOption("show_only") == activePair);
}

colorEntry CParametricCurveView::colorOf(unsigned curve) const
{
    return colorOption(curve % 2 == 0 ? "line1color" : "line2color");
}

/// Parts of a force curve by their names, where few of them are shown.
void CParametricCurveView::drawNames(CDC& dc) const
{
    constexpr std::size_t most = 4;
    const std::vector<smart_string>& names = storageDoc()->getImage(imageNumber).subimage_names();
    if (curves < 2 || names.size() < curves) return;
    std::vector<curves::named_curve> named;
    for (unsigned each = 0; each < curves && named.size() <= most; ++each)
        if (isShown(each)) named.push_back({base::widen(names[each].c_str()), colorOf(each), isDotted(each)});
    if (named.size() > most) named = {{base::widen(names[activeCurve()].c_str()), colorOf(activeCurve()), false}};
    curves::draw_curve_names(dc, displayRect, named);
}

/// The active curve comes last, over the others.
void CParametricCurveView::drawCurves(CDC& dc, CPoint origin) const
{
    const curves::pair_source all = source();
    const unsigned count = all.curves(), shown = activeCurve();
    const bool onPage = dc.IsPrinting();
    const curves::pair_pane fine = pane.finer(curves::partsOnPage);
    std::vector<CPoint> line;
    dc.SetBkMode(TRANSPARENT); // gaps of dotted curves show what is below
    for (unsigned j = 0; j < count; ++j) {
        const unsigned each = (shown + count - 1 - j) % count;
        if (!isShown(each)) continue;
        dc.SelectObject(CPen{isDotted(each) ? std::uint32_t{PS_DOT} : std::uint32_t{PS_SOLID}, 1, colorOf(each), {}});
        const curves::pair_series series = each == shown ? active : all.curve(each);
        curves::for_each_measured_stretch(series, [&](std::size_t first, std::size_t end) {
            (onPage ? fine : pane).line(series, first, end, onPage ? CPoint{} : origin, line);
            if (line.size() == 1) line.push_back({line[0].x + 1, line[0].y}); // one pixel
            if (!onPage) return dc.Polyline(line);
            curves::draw_page_line(dc, origin, line);
        });
    }
}

void CParametricCurveView::OnDrawData(CDC& dc)
{
    if (!IsGood()) return;
    const int saved = dc.SaveDC();
    dc.SetBkMode(TRANSPARENT);
    dc.IntersectClipRect(displayRect);
    if (!isPrinting() && GetMemDC() && image.Ok()) {
        dc.BitBlt(displayRect, *GetMemDC(), {0, 0}, SRCCOPY);
    } else {
        dc.FillSolidRect(displayRect, colorOption("background"));
        drawCurves(dc, displayRect.TopLeft());
    }
    if (isOptionOn("ShowMarks")) draw_marks(&dc);
    dc.RestoreDC(saved);
    drawTexts(dc);
}

CPoint CParametricCurveView::placeOf(int mark) const noexcept
{
    const CPoint at = pane.point(pane.positionAt(marks[mark].x), pane.valueAt(marks[mark].y));
    return {displayRect.left + at.x, displayRect.top + at.y};
}

void CParametricCurveView::draw_marks(CDC* dc)
{
    for (const int mark : curves::pair_mark_set::shownIn(marksMode())) {
        if (!marks[mark].sample) continue;
        const CPoint at = placeOf(mark);
        if (marksMode() == curves::pair_marks_mode::crosses) {
            dc->SelectObject(CPen::solid(1, markColor));
            draw_line(*dc, {at.x - crossArm, at.y}, {at.x + crossArm + 1, at.y});
            draw_line(*dc, {at.x, at.y - crossArm}, {at.x, at.y + crossArm + 1});
            continue;
        }
        dc->SelectObject(CPen::dotted(markColor));
        draw_line(*dc, {at.x, displayRect.top}, {at.x, displayRect.bottom});
        if (marksMode() == curves::pair_marks_mode::crossbar)
            draw_line(*dc, {displayRect.left, at.y}, {displayRect.right, at.y});
        curves::draw_mark_dot(*dc, at);
    }
}

/// The lines of contact and free stretch, as far as they lie below "start_level", a share of the height.
void CParametricCurveView::drawStatistics(CDC& dc) const
{
    const force_curve_stats found = getStatistics();
    const CRect below(displayRect.left,
                      displayRect.bottom - static_cast<int>(displayRect.Height() * doubleOption("start_level") + 0.5),
                      displayRect.right, displayRect.bottom);
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(below);
    dc.SelectObject(CPen{
        PS_SOLID | PS_GEOMETRIC | PS_ENDCAP_FLAT | PS_JOIN_BEVEL, intOption("axis_thickness"), statisticsColor, {}});
    const auto draw = [&](double a, double b, std::int32_t first, std::int32_t last) {
        const auto end = [&](std::int32_t at) {
            const double position = pane.position(active, static_cast<std::size_t>(at));
            const CPoint shown = pane.point(position, a + b * position);
            return CPoint{displayRect.left + shown.x, displayRect.top + shown.y};
        };
        draw_line(dc, end(first), end(last));
    };
    if (found.hasSlant()) draw(found.slant_a, found.slant_b, found.slant_first, found.slant_last);
    if (found.hasZero()) draw(found.zero_a, found.zero_b, found.zero_first, found.zero_last);
    dc.RestoreDC(saved);
}

void CParametricCurveView::OnDrawLegend(CDC& dc)
{
    if (!IsGood()) return;
    const int saved = dc.SaveDC();
    drawStatistics(dc);
    dc.SelectObject(font);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(colorOption("legend"));
    const curves::raw_span x = pane.positions(), y = pane.values();
    view::draw_chart_frame(dc, *this, displayRect, view::shown_span(axisX().get_units(), x.low, x.high - x.low, false),
                           view::shown_span(axisY().get_units(), y.low, y.high - y.low, true));
    // The axes' names stand in the corners at their ends.
    const std::wstring across = base::widen(name_of(*positions()));
    const std::wstring up = base::widen(name_of(storageDoc()->getImage(imageNumber)));
    const CSize extent = dc.GetTextExtent(across);
    dc.IntersectClipRect(displayRect);
    dc.TextOut(displayRect.right - nameGap - extent.cx, displayRect.bottom - nameGap - extent.cy, across);
    dc.TextOut(displayRect.left + nameGap, displayRect.top + nameGap, up);
    drawNames(dc);
    dc.RestoreDC(saved);
}

void CParametricCurveView::updateText()
{
    text.clear();
    if (!IsGood()) return;
    std::string line;
    if (isOptionOn("ShowMarks")) line = curves::pair_marks_text(marks, marksMode(), active, axisX(), axisY());
    if (showsStatistics())
        if (const std::string force = curves::pair_force_text(active, axisX(), axisY(), getStatistics());
            !force.empty())
            line += "\r\n" + force.substr(1);
    text = base::widen(line);
}

void CParametricCurveView::drawTexts(CDC& dc)
{
    const int top = displayRect.bottom + textGap;
    textRect = {displayRect.left, top, displayRect.right + intOption("RightMargin"),
                std::max(top, displayRect.bottom + intOption("BottomMargin"))};
    const int saved = dc.SaveDC();
    dc.SelectObject(font);
    dc.SetTextColor(colorOption("legend"));
    dc.SetBkMode(TRANSPARENT);
    CRect place = textRect;
    dc.DrawText(text, place, DT_EXPANDTABS);
    dc.RestoreDC(saved);
}
