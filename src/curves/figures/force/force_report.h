#pragma once
#include "curves/figures/force/force_curve_stats.h"
#include "vldv_api.h"

#include <string>
#include <string_view>

namespace vldv::curves {

/// What the analysis of a curve says, as its row in the text window.
struct force_figures {
    unsigned curve = 0; ///< counted from 0
    double slope = 0.0, positionScale = 1.0, minimum = 0.0;
};
/// The line over the rows, with its end. \param slope  its name and unit: "dF/dZ, nN/nm"
VLDV_INTERNAL_API std::string force_header(std::string_view units, std::string_view slope);
/// The row of a curve, without an end; three digits a number.
VLDV_INTERNAL_API std::string force_row(const force_figures& figures, const force_curve_stats& stats);

} // namespace vldv::curves
