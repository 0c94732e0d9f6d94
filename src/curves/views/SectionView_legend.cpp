// Axes, grids and figures around and over the curves.
#include "base/text.h"
#include "base/units.h"
#include "curves/figures/section_decoration.h"
#include "curves/views/SectionView.h"
#include "curves/views/chart_drawing.h"
#include "curves/views/curve_names.h"
#include "curves/views/section_legend.h"
#include "document/StorageDoc.h"
#include "view/axes/chart_axes.h"

#include <algorithm>
#include <cmath>

using namespace vldv;

/// Drawings of the surface that lie on the section throughout: their points at the heights of the curve.
void CSectionView::drawDecorations(CDC& dc, const curves::figure_pane& on) const
{
    const SPMDataStream* const source = stream();
    if (!source || source->get_dimensions_number() != 2) return;
    const curves::axes_xy axes{storageDoc()->getAxis(imageNumber, 0, 0), storageDoc()->getAxis(imageNumber, 0, 1)};
    for (const auto& [key, group] : storageDoc()->decorations(imageNumber).all())
        for (const document::decoration& each : group.members) {
            std::vector<std::uint32_t> places;
            if (each.tupleLength == 2 &&
                curves::Decoration_at_Section(each.coordinates, axes, points, section.segmentLengths, &places))
                curves::draw_places(dc, on, shownCurve(), places, each.color);
        }
}

double CSectionView::positionStart() const
{
    constexpr int absolute = 0;
    if (section.varyingDimensions.size() >= 2 || intOption("scaling.x") != absolute || points.empty()) return 0.0;
    const unsigned along = section.dimension();
    return along < points[0].size() ? positionAxis().at(points[0][along]) : 0.0;
}

curves::pane_heights CSectionView::shownHeights() const
{
    return curves::heights_of(pane, min_max, valueAxis(), zeroOffset(), fixedHeights());
}

/// The value that the lower edge is called: heights count from the lowest one unless they are absolute.
double CSectionView::heightStart() const
{
    constexpr int fromLowest = 0;
    const curves::pane_heights heights = shownHeights();
    if (pane.isFixed) return heights.start;
    return intOption("ZScale.zero") == fromLowest ? 0.0 : heights.start;
}

void CSectionView::OnDrawLegend(CDC& dc)
{
    if (!hasCurves()) return;
    const int saved = dc.SaveDC();
    drawFigures(dc);
    dc.SelectObject(font);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(colorOption("legend"));
    const VLAxis &x = positionAxis(), &y = valueAxis();
    view::draw_chart_frame(dc, *this, displayRect,
                           view::shown_span(x.get_units(), positionStart() + pane.firstShown() * x.scale,
                                            (pane.lastShown() - pane.firstShown()) * x.scale, false),
                           view::shown_span(y.get_units(), heightStart(), shownHeights().range, true));
    if (const CRect below = panes().spectrum; !below.IsRectEmpty()) drawSpectrumAxes(dc, below);
    dc.RestoreDC(saved);
}

void CSectionView::drawSpectrumAxes(CDC& dc, const CRect& below)
{
    const VLAxis& x = positionAxis();
    const double length = (shownLength() - 1.0) * std::fabs(x.scale);
    const std::string frequency = std::string("1/") + x.get_units();
    const view::shown_axis across =
        view::counted_in_powers({0.0, length == 0.0 ? 0.0 : (shownLength() / 2 + 1) / length, frequency});
    if (isOptionOn("normalize_spectrum")) return view::draw_chart_frame(dc, *this, below, across, {0.0, 1.0, ""});
    double most = spectrum.max;
    std::string units = default_units_z(valueAxis().get_units(), &most);
    if (intOption("spectrum_mode") == 0) {
        most = spectrum.max; // of a square no prefix reads as that of its side
        units = std::string(valueAxis().get_units()) + "^2";
    }
    view::draw_chart_frame(dc, *this, below, across, view::counted_in_powers({0.0, most, units}));
}

void CSectionView::drawFigures(CDC& dc)
{
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(displayRect);
    dc.SelectObject(font);
    dc.SetTextColor(colorOption("legend"));
    const curves::figure_pane on{displayRect, pane, valueAxis(), intOption("axis_thickness")};
    drawDecorations(dc, on);
    if (hasForceFigures()) {
        if (isOptionOn("ShowForceCurveStats")) curves::draw_force_lines(dc, on, stats);
        if (isOptionOn("ShowForceCurveMin")) curves::draw_minima(dc, on, shownCurve(), stats);
        if (isOptionOn("ShowForceCurveSquares")) curves::draw_valleys(dc, on, shownCurve(), stats);
    }
    if (isOptionOn("ShowTrendLine")) curves::draw_trend(dc, on, trend);
    curves::draw_joints(dc, on, section);
    drawNames(dc);
    dc.RestoreDC(saved);
}

/// Parts of force curves by their names, as approach and retract, where few of them are shown.
void CSectionView::drawNames(CDC& dc) const
{
    constexpr std::size_t most = 4;
    if (!hasForceFigures() || section.curves < 2) return;
    std::vector<shown_curve> shown = shownCurves();
    if (shown.size() > most) shown.erase(shown.begin(), shown.end() - 1); // the active one
    std::ranges::sort(shown, {}, &shown_curve::index);
    const std::vector<smart_string>& names = stream()->subimage_names();
    std::vector<curves::named_curve> named;
    for (const shown_curve& each : shown)
        named.push_back(
            {each.index < names.size() ? base::widen(names[each.index].c_str()) : L"", each.color, each.isDotted});
    curves::draw_curve_names(dc, displayRect, named);
}
