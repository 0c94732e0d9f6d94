#pragma once
#include "primitives/fit/linear_fit.h"
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <vector>

class VLAxis;

namespace vldv::curves {

/// The line A + B * sample through a curve.
struct trend_line {
    linear_fit line;
    double r2 = 1.0; ///< share of the variance that the line explains; 1 for a curve without any
    double sd = 0.0; ///< standard deviation from the line, over n - 1
};
VLDV_INTERNAL_API trend_line fit_trend(std::span<const double> y);
VLDV_INTERNAL_API trend_line fit_trend(std::span<const std::int16_t> curve, const VLAxis& values);
/// The line through the samples that `gaps` does not mark, by least squares; all stay where they stand.
/// \param gaps  one entry a sample, or empty; must leave one
VLDV_INTERNAL_API trend_line fit_trend(std::span<const std::int16_t> curve, const VLAxis& values,
                                       const std::vector<bool>& gaps);

} // namespace vldv::curves
