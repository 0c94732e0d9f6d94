// The analysis of force curves, and the rows that tell of it.
#include "base/text.h"
#include "curves/figures/force/force_analysis.h"
#include "curves/figures/force/force_curve.h"
#include "curves/figures/force/force_report.h"
#include "curves/views/SectionView.h"
#include "curves/views/force_table.h"
#include "document/StorageDoc.h"
#include "view/panes/TextView.h"

using namespace vldv;

bool CSectionView::hasForceFigures() const
{
    const SPMDataStream* const source = stream();
    return source && source->get_dimensions_number() != 2 && hasCurves();
}

curves::measured_curve CSectionView::measuredCurve(unsigned curve) const
{
    return {section.curve(curve), valueAxis(), section.gapsOf(curve)};
}

void CSectionView::fill_force_curve_statistics()
{
    measuredCurve(activeCurve()).findLines(doubleOption("zero_threshold"), doubleOption("slant_threshold"), stats);
}

/// Minima and valleys lie between the lines, which are found for them also where they are not shown.
void CSectionView::measureForce()
{
    const bool showsMinima = isOptionOn("ShowForceCurveMin"), showsValleys = isOptionOn("ShowForceCurveSquares");
    if (!hasForceFigures() || !(isOptionOn("ShowForceCurveStats") || showsMinima || showsValleys)) return;
    fill_force_curve_statistics();
    if (showsMinima) fill_force_curve_min();
    if (showsValleys) fill_force_curve_valleys();
}

void CSectionView::fill_force_curve_min() { measuredCurve(activeCurve()).findMinima(intOption("window_r"), stats); }

void CSectionView::fill_force_curve_valleys() { measuredCurve(activeCurve()).findValleys(stats); }

std::string CSectionView::forceHeader() const
{
    return curves::force_header(valueAxis().get_units(), curves::slope_name(positionAxis().get_units()));
}

std::string CSectionView::forceRow(unsigned curve, const force_curve_stats& found) const
{
    const VLAxis& x = positionAxis();
    return curves::force_row({curve, curves::force_slope(found, x.scale), x.scale, measuredCurve(curve).minimum(found)},
                             found);
}

void CSectionView::OnUpdateForceanalysis(CCmdUI& ui) { ui.Enable(hasForceFigures()); }
void CSectionView::OnUpdateAnalyseAll(CCmdUI& ui) { ui.Enable(hasForceFigures() && section.curves > 1); }

/// A row of the active curve goes into the document's window of texts, which keeps the heading once.
void CSectionView::OnCurveForceanalysis()
{
    CTextView* const window = hasForceFigures() ? GetTextView(nullptr, GetDocument()) : nullptr;
    if (!window) return;
    force_curve_stats found;
    measuredCurve(activeCurve()).findLines(doubleOption("zero_threshold"), doubleOption("slant_threshold"), found);
    window->appendText(base::widen(forceHeader() + forceRow(activeCurve(), found)));
}

void CSectionView::OnAnalyseAllCurves()
{
    if (!hasForceFigures()) return;
    const double zero = doubleOption("zero_threshold"), slant = doubleOption("slant_threshold");
    const auto row = [&](unsigned k) -> std::optional<std::string> {
        const curves::measured_curve curve = measuredCurve(k);
        if (curve.isEmpty()) return std::nullopt;
        force_curve_stats found;
        curve.findLines(zero, slant, found);
        return forceRow(k, found);
    };
    curves::append_force_rows(GetDocument(), forceHeader(), section.curves, row);
}
