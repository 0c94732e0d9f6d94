#pragma once
#include "spectra/figures/feature.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vldv::spectra {

/// How many features have which value of a metric.
struct feature_distribution {
    std::size_t metric = 0;
    double valueMin = 0.0, valueMax = 0.0, valueRange = 1.0; ///< the range is 1 where all values are equal
    std::vector<std::uint32_t> bins;                         ///< at least one
    std::uint32_t peakCount = 0;
};
/// \param bars  how many bins; by default as many as features
[[nodiscard]] feature_distribution distribute(std::span<const Feature> features, std::size_t metric,
                                              std::optional<unsigned> bars = {});

/// A value's place along the chart, from 0 to 1.
[[nodiscard]] double share_of(const feature_distribution& distribution, double value) noexcept;

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
