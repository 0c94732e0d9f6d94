// The analysis of force curves over measured positions.
#include "base/text.h"
#include "curves/figures/pairs/pair_force.h"
#include "curves/views/ParametricCurveView.h"
#include "curves/views/force_table.h"
#include "document/StorageDoc.h"
#include "view/panes/TextView.h"

using namespace vldv;

force_curve_stats CParametricCurveView::figuresOf(const curves::pair_series& series) const
{
    return curves::pair_force_stats(series, axisX(), axisY(), doubleOption("slant_threshold"),
                                    doubleOption("zero_threshold"));
}

void CParametricCurveView::OnUpdateAnalyseAll(CCmdUI& ui) { ui.Enable(curves > 1); }

/// A row of the active curve goes into the document's window of texts, which keeps the heading once.
void CParametricCurveView::OnForceanalysis()
{
    CTextView* const window = IsGood() && !active.isEmpty() ? GetTextView(nullptr, GetDocument()) : nullptr;
    if (!window) return;
    const std::string row = curves::pair_force_row(activeCurve(), active, axisX(), axisY(), figuresOf(active));
    window->appendText(base::widen(curves::pair_force_heading(axisX(), axisY()) + row));
}

void CParametricCurveView::OnAnalyseAllCurves()
{
    if (!IsGood()) return;
    const curves::pair_source all = source();
    const auto row = [&](unsigned number) -> std::optional<std::string> {
        const curves::pair_series series = all.curve(number);
        if (series.isEmpty()) return std::nullopt;
        return curves::pair_force_row(number, series, axisX(), axisY(), figuresOf(series));
    };
    curves::append_force_rows(GetDocument(), curves::pair_force_heading(axisX(), axisY()), all.curves(), row);
}
