#pragma once
#include "curves/figures/display/curve_pane.h"
#include "curves/figures/force/force_curve_stats.h"
#include "curves/figures/profile.h"
#include "curves/figures/trend_line.h"
#include "platform/draw/drawing.h"

#include <span>

class CDC;
class CDCView;

/// What is drawn over and around the curves of a section, each piece by itself. Panes are client pixels.
namespace vldv::curves {

/// What the lines of figures are drawn from.
struct figure_pane {
    CRect place;
    const curve_pane& pane;
    const VLAxis& values;
    int thickness = 1; ///< "axis_thickness"

    /// Of a value in its own units; `zero` is what was added to raw * scale.
    int rowOf(double value, double zero) const noexcept;
    int columnOf(double sample) const noexcept;
};

/// The lines through contact and free stretch, from their first to their last sample.
void draw_force_lines(CDC& dc, const figure_pane& on, const force_curve_stats& stats);
/// A dot on each local minimum.
void draw_minima(CDC& dc, const figure_pane& on, std::span<const std::int16_t> curve, const force_curve_stats& stats);
/// Hatched areas with their numbers.
void draw_valleys(CDC& dc, const figure_pane& on, std::span<const std::int16_t> curve, const force_curve_stats& stats);
/// The line through all samples, dashed.
void draw_trend(CDC& dc, const figure_pane& on, const trend_line& trend);
/// A drawing whose points lie on the curve: a dot, or a line through all of them.
void draw_places(CDC& dc, const figure_pane& on, std::span<const std::int16_t> curve,
                 std::span<const std::uint32_t> places, colorEntry color);
/// An upright line where two parts of a polyline meet.
void draw_joints(CDC& dc, const figure_pane& on, const profile& section);

} // namespace vldv::curves
