// The part of the curves that is shown along X, and what stands under the pointer.
#include "base/streams/rounding.h"
#include "base/text.h"
#include "curves/figures/display/curve_points.h"
#include "curves/figures/display/pointer_text.h"
#include "curves/figures/display/spectrum_display.h"
#include "curves/figures/display/typed_marks.h"
#include "curves/views/SectionView.h"
#include "platform/app/keys.h"
#include "view/dialogs/resolution_dialog.h"
#include "view/dialogs/variable_rows.h"

#include <algorithm>
#include <cmath>

using namespace vldv;

void CSectionView::showPart()
{
    Invalidate(true); // texts of the axis reach beyond the pane
    RefreshDisplay();
}

bool CSectionView::OnMouseWheel(unsigned flags, int delta, CPoint point)
{
    if (flags != MK_CONTROL || !hasCurves()) return CImageView::OnMouseWheel(flags, delta, point);
    if (partControl.turnWheel(delta, point, displayRect, section.length)) showPart();
    return true;
}

CRect CSectionView::axisRect() const { return platform::axis_strip(displayRect, intOption("TextVertSpace")); }

/// What is read at a point: a value of the active curve, or of the spectrum; empty outside of both.
std::string CSectionView::pointerText(CPoint point) const
{
    const curves::mark_panes shown = panes();
    const auto across = [&point](const CRect& place) {
        return (point.x - place.left) / std::max(place.Width() - 1.0, 1.0);
    };
    if (shown.spectrum.PtInRect(point)) return spectrumTextAt(shownLength() / 2 * across(shown.spectrum));
    if (!shown.curve.PtInRect(point)) return {};
    const VLAxis &x = positionAxis(), &y = valueAxis();
    const double at = (section.length - 1.0) * partControl.part().fromPane(across(shown.curve));
    const double position = positionStart() + at * x.scale;
    const auto nearest = static_cast<std::size_t>(std::lround(at));
    const std::span<const std::int16_t> curve = shownCurve();
    if (nearest >= curve.size() || !section.isMeasured(activeCurve(), nearest))
        return curves::unmeasured_text(position, x.get_units());
    const double value = heightStart() + shownHeights().range * pane.share(curves::raw_between(curve, at));
    return curves::pointer_text(position, x.get_units(), value, y.get_units());
}

void CSectionView::tellPointer(CPoint point)
{
    const std::string told = pointerText(point);
    if (told.empty()) return forgetPlace();
    setPlaceText(base::widen(told));
}

void CSectionView::OnUpdateTypeMarks(CCmdUI& ui) { ui.Enable(hasCurves() && marksMode() != curves::marks_mode::none); }

/// Asks for the places of the marks in physical units.
void CSectionView::OnTypeMarks()
{
    if (!hasCurves() || marksMode() == curves::marks_mode::none) return;
    const VLAxis &x = positionAxis(), &y = valueAxis();
    const curves::typed_marks typed(marksMode(), {positionStart(), (section.length - 1.0) * x.scale, x.get_units()},
                                    {heightStart(), shownHeights().range, y.get_units()});
    std::vector<SPMVar> variables = typed.variables(marks);
    SPMVarList list;
    list.set_variables(variables.data(), static_cast<unsigned>(variables.size()));
    if (!view::ask_variables(list, "Marks", this)) return;
    list.get_variables(variables.data(), static_cast<unsigned>(variables.size()));
    typed.put(variables, marks);
    for (int mark = 0; mark < static_cast<int>(marks.marks.size()); ++mark) marksMoved(mark);
    Invalidate(true);
    if (marksMode() == curves::marks_mode::crossbar) update_step_data();
}

/// Lets the user correct the axes, by the distance between both upright lines where he knows it.
void CSectionView::OnViewResolution()
{
    const auto placeOf = [this](int mark) {
        return curves::point_of_sample(points, section.segmentLengths, std::llround(sampleOf(mark)));
    };
    const curves::grid_point first = placeOf(curves::firstMark), second = placeOf(curves::secondMark);
    const auto difference = [&](std::size_t side) { return side < first.size() ? second[side] - first[side] : 0; };
    const double rise = marks[curves::secondMark].y - marks[curves::firstMark].y;
    const view::measured_distance between{
        {difference(0), difference(1)},
        base::nearest_int(std::fabs(rise) * shownHeights().range / std::fabs(valueAxis().scale))};
    view::run_resolution(*storageDoc(), imageNumber,
                         {static_cast<unsigned>(intOption("AxisX")), 0, static_cast<unsigned>(intOption("AxisZ"))},
                         between, this);
}
