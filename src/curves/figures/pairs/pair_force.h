#pragma once
#include "base/VLAxis.h"
#include "curves/figures/force/force_curve_stats.h"
#include "curves/figures/pairs/pair_series.h"
#include "vldv_api.h"

#include <string>

// The analysis of a force curve over measured positions.

namespace vldv::curves {

/// The figures over physical positions. What was not measured at the ends is left out, between them it takes part in no
/// stretch; samples are numbered in the whole curve.
VLDV_INTERNAL_API force_curve_stats pair_force_stats(const pair_series& series, const VLAxis& x, const VLAxis& y,
                                                     double slantThreshold, double zeroThreshold);

/// The smallest value above the zero line, physical.
VLDV_INTERNAL_API double pair_minimum(const pair_series& series, const VLAxis& x, const VLAxis& y,
                                      const force_curve_stats& stats);

/// The line over the rows of curves, with its end.
VLDV_INTERNAL_API std::string pair_force_heading(const VLAxis& x, const VLAxis& y);
/// What the figures of a curve say, as a row without an end. \param number  of the curve, counted from 0
VLDV_INTERNAL_API std::string pair_force_row(unsigned number, const pair_series& series, const VLAxis& x,
                                             const VLAxis& y, const force_curve_stats& stats);

} // namespace vldv::curves
