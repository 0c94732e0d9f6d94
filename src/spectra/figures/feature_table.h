#pragma once
#include "spectra/figures/feature.h"
#include "spectra/figures/feature_metrics.h"
#include "vldv_api.h"

#include <array>
#include <span>
#include <string>
#include <vector>

namespace vldv::spectra {

/// What is told of all features together, for each metric.
struct metric_summary {
    double mean = 0.0, deviation = 0.0, sum = 0.0, lowest = 0.0, highest = 0.0; ///< deviation divides by the count
};
/// Values that are no numbers do not count. All 0 without features.
VLDV_INTERNAL_API std::array<metric_summary, featureMetrics> summarize(std::span<const Feature> features);

/// "S_px, nm^2"
std::string metric_heading(std::size_t metric, const feature_axes& axes);
/// As many digits as tell features apart.
std::string metric_cell(double value);

} // namespace vldv::spectra
