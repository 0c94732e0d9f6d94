#pragma once
#include "curves/figures/force/force_curve_stats.h"
#include "vldv_api.h"

// Analysis of force curves: functions on physical values in order of the samples, contact first.

/// Finds the slant and the zero stretch and fits their lines. The curve is smoothed (means of 3 samples up to 64, of 5
/// up to 256, else a spline of a span for each 64) for the search alone; lines are fitted to the values as they are.
/// Thresholds multiply what the steps between samples are compared with: a larger `slantThreshold` takes gentler steps
/// for contact, a larger `zeroThreshold` rougher ones for the free stretch. A zero stretch that reaches sample 0 is
/// refused. All of `stats` is replaced. \param gaps  which samples were not measured and lie between neighbours: a
/// stretch of mostly such is none; empty where all were \throws std::bad_alloc
VLDV_API void get_force_curve_stats(const double* y, int n, double zeroThreshold, double slantThreshold,
                                    force_curve_stats& stats, const std::vector<bool>& gaps = {});

/// Stretches, lines and thresholds for y over x: stretches are those of dY/dX away from the contact, whether x rises or
/// falls along the samples, lines are fitted over x and their intercepts lie at x = 0. The spread of the slopes is that
/// of the steps of y over the mean step of x, and a step of x counts for half of that mean at least, so that a position
/// that lingers or trembles neither looks steep nor breaks a stretch. Over even positions all is as
/// `get_force_curve_stats` has it. A curve of fewer than 3 samples leaves `stats` cleared, one whose x does not travel,
/// or turns back, has no stretches. Thresholds come in the other order.
VLDV_API void get_parametric_curve_stats(const double* x, const double* y, int n, double slantThreshold,
                                         double zeroThreshold, force_curve_stats& stats,
                                         const std::vector<bool>& gaps = {});

namespace vldv::curves {
/// What positions do along a record. `turnsBack`: they go further than they get, as in a record of both ways in one
/// series; their smoothed way goes back, or reaches beyond its ends, by a quarter of what lies between them. `rests`:
/// it reaches no further than four times the noise of the positions.
enum class position_way { travels, turnsBack, rests };
position_way way_of_positions(const double* x, int n);
} // namespace vldv::curves

/// Appends to `local_minima` the samples that lie lowest, above the zero line, within `window` samples to either side,
/// from the end of the slant stretch to the begin of the zero stretch. \param x  positions of the samples, along which
/// the zero line then runs; null for their numbers
VLDV_API void find_loc_fmin(const double* y, int n, force_curve_stats& stats, int window, const double* x = nullptr);

/// Finds the valleys between the contact and the zero stretch: dips below the zero line, each cut off at equal heights
/// on both flanks. Without both stretches, or without a valley, `stats` stays as it is. \param x  positions, or null
VLDV_API void get_force_curve_valleys(const double* y, int n, force_curve_stats& stats, const double* x = nullptr);

namespace vldv::curves {

/// Slope of the contact against the zero line, in units of the values over those of the position.
double force_slope(const force_curve_stats& stats, double positionScale) noexcept;
/// The angle of a slope, in degrees.
VLDV_INTERNAL_API double slope_angle(double slope) noexcept;
/// The smallest value above the zero line: negative for adhesion. \param x  positions, or null
double force_minimum(const double* y, const force_curve_stats& stats, const double* x = nullptr) noexcept;

/// How raw samples become heights: raw * scale + zero.
struct raw_scale {
    double scale = 1.0, zero = 0.0;
};
/// Area between the zero line and the curve over a valley, in units of values times position.
double valley_area(const std::int16_t* raw, raw_scale values, double positionScale, const force_curve_stats& stats,
                   force_curve_stats::valley valley) noexcept;
/// Area of a valley over positions, by trapezoids.
double valley_area_over(const double* x, const double* y, const force_curve_stats& stats,
                        force_curve_stats::valley valley) noexcept;

} // namespace vldv::curves
