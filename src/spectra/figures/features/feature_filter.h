#pragma once
#include "spectra/figures/features/feature.h"
#include "spectra/figures/features/value_distribution.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vldv::spectra {

/// How many features have which value of a metric.
struct feature_distribution : value_distribution {
    std::size_t metric = 0;
};
/// \param bars  how many bins; by default as many as features
[[nodiscard]] feature_distribution distribute(std::span<const Feature> features, std::size_t metric,
                                              std::optional<unsigned> bars = {});
/// A metric of all features, in their order.
[[nodiscard]] std::vector<double> metric_values(std::span<const Feature> features, std::size_t metric);

/// Two places along the chart, as shares of its width, and which features pass: those in the bins of both and between
/// them, or the others. Crossed places have nothing between them.
struct feature_filter {
    double f1 = 0.25, f2 = 0.75;
    bool keepsInner = true;
};
[[nodiscard]] bool passes(const Feature& feature, const feature_distribution& distribution,
                          const feature_filter& filter) noexcept;

/// By a metric; features of equal values keep their order.
void sort_features(std::vector<Feature>& features, std::size_t metric, bool isDescending);

} // namespace vldv::spectra
