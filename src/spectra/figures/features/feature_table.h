#pragma once
#include "spectra/figures/features/feature.h"
#include "spectra/figures/features/feature_metrics.h"
#include "spectra/figures/features/items_table.h"
#include "spectra/figures/features/value_distribution.h"
#include "vldv_api.h"

#include <array>
#include <span>
#include <string>
#include <vector>

namespace vldv::spectra {

/// What is told of all features together, for each metric.
VLDV_INTERNAL_API std::array<value_summary, featureMetrics> summarize(std::span<const Feature> features);

/// All metrics of some features. \param numbers  of the list, in rising order; none: all features
items_table items_of(std::span<const Feature> features, std::span<const std::size_t> numbers, const feature_axes& axes);

/// "S_px, nm^2"
std::string metric_heading(std::size_t metric, const feature_axes& axes);
/// As many digits as tell features apart.
std::string metric_cell(double value);

} // namespace vldv::spectra
