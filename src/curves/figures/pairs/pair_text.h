#pragma once
#include "curves/figures/force/force_curve_stats.h"
#include "curves/figures/pairs/pair_marks.h"
#include "curves/figures/pairs/pair_source.h"
#include "vldv_api.h"

#include <string>

namespace vldv::curves {

/// What the marks of a curve of pairs tell: "dX: …\tdY: …" between two lines, "X: …\tY: …" of each cross or of the
/// crossbar. Empty when no pair was measured.
VLDV_INTERNAL_API std::string pair_marks_text(const pair_mark_set& marks, pair_marks_mode mode,
                                              const pair_series& series, const VLAxis& x, const VLAxis& y);

/// Slope of the contact and adhesion, each behind a tab; empty when nothing was found. Lines run over positions.
VLDV_INTERNAL_API std::string pair_force_text(const pair_series& series, const VLAxis& x, const VLAxis& y,
                                              const force_curve_stats& stats);

/// All curves as a table: a heading with the names of the images for each curve, then a line a sample with X and Y of
/// each, 12 digits, parted by tabs. Where a curve is shorter, and where nothing was measured, cells are empty. Lines
/// end with CR LF.
VLDV_INTERNAL_API std::string pair_table(const pair_source& source, const VLAxis& x, const VLAxis& y,
                                         const std::string& xName, const std::string& yName);

} // namespace vldv::curves
