// The analysis of force curves, and the rows that tell of it.
#include "base/text.h"
#include "curves/figures/force/force_analysis.h"
#include "curves/figures/force/force_curve.h"
#include "curves/figures/force/force_report.h"
#include "curves/figures/physical.h"
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

void CSectionView::fill_force_curve_statistics()
{
    const std::vector<double> y = curves::physical_values(shownCurve(), valueAxis());
    get_force_curve_stats(y.data(), static_cast<int>(y.size()), doubleOption("zero_threshold"),
                          doubleOption("slant_threshold"), stats, section.gapsOf(activeCurve()));
}

void CSectionView::fill_force_curve_min()
{
    const std::vector<double> y = curves::physical_values(shownCurve(), valueAxis());
    stats.local_minima.clear();
    find_loc_fmin(y.data(), static_cast<int>(y.size()), stats, intOption("window_r"));
}

void CSectionView::fill_force_curve_valleys()
{
    const std::vector<double> y = curves::physical_values(shownCurve(), valueAxis());
    get_force_curve_valleys(y.data(), static_cast<int>(y.size()), stats);
}

std::string CSectionView::forceHeader() const
{
    return curves::force_header(valueAxis().get_units(), curves::slope_name(positionAxis().get_units()));
}

std::string CSectionView::forceRow(unsigned curve, const force_curve_stats& found) const
{
    const VLAxis& x = positionAxis();
    const std::vector<double> values = curves::physical_values(section.curve(curve), valueAxis());
    return curves::force_row(
        {curve, curves::force_slope(found, x.scale), x.scale, curves::force_minimum(values.data(), found)}, found);
}

void CSectionView::OnUpdateForceanalysis(CCmdUI& ui) { ui.Enable(hasForceFigures()); }
void CSectionView::OnUpdateAnalyseAll(CCmdUI& ui) { ui.Enable(hasForceFigures() && section.curves > 1); }

/// A row of the active curve goes into the document's window of texts, which keeps the heading once.
void CSectionView::OnCurveForceanalysis()
{
    CTextView* const window = hasForceFigures() ? GetTextView(nullptr, GetDocument()) : nullptr;
    if (!window) return;
    if (!isOptionOn("ShowForceCurveStats")) fill_force_curve_statistics();
    if (!isOptionOn("ShowForceCurveSquares")) fill_force_curve_valleys();
    window->appendText(base::widen(forceHeader() + forceRow(activeCurve(), stats)));
}

void CSectionView::OnAnalyseAllCurves()
{
    if (!hasForceFigures()) return;
    const double zero = doubleOption("zero_threshold"), slant = doubleOption("slant_threshold");
    const auto row = [&](unsigned k) -> std::optional<std::string> {
        const std::vector<double> y = curves::physical_values(section.curve(k), valueAxis());
        if (y.empty()) return std::nullopt;
        force_curve_stats found;
        get_force_curve_stats(y.data(), static_cast<int>(y.size()), zero, slant, found, section.gapsOf(k));
        return forceRow(k, found);
    };
    curves::append_force_rows(GetDocument(), forceHeader(), section.curves, row);
}
