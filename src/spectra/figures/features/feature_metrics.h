#pragma once
#include "base/VLAxis.h"
#include "platform/draw/geometry.h"
#include "primitives/map/threshold.h"
#include "spectra/figures/features/feature.h"
#include "vldv_api.h"

#include <cstdint>
#include <span>
#include <string>

namespace vldv::spectra {

/// Axes of the image that features are measured with.
struct feature_axes {
    VLAxis x, y, z;
};

/// From sample to sample along rows and columns: lengths in the unit of the X axis, whichever way the axes run.
struct feature_steps {
    double x = 1.0, y = 1.0;
    double area() const noexcept { return x * y; }
};
feature_steps steps_of(const feature_axes& axes);

/// What the metrics of a feature are made of. Lengths are in the unit of the X axis.
struct feature_figures {
    std::int64_t pixels = 0;
    primitives::run_sums heights; ///< raw
    double contourLength = 0.0, skeletonTracing = 0.0;
    double contourArea = 0.0; ///< samples
    double sampleArea = 1.0;  ///< of one of them
};

/// A measurement of features.
struct feature_metric {
    const char* name;
    std::string (*units)(const feature_axes& axes);
    double (*value)(const feature_figures& of, const feature_axes& axes, short zeroLevel);
};
/// All of them, in the order of `Feature::metrics`.
VLDV_INTERNAL_API std::span<const feature_metric, featureMetrics> feature_metrics() noexcept;
/// "P_proj", "H" and "H_av" among them.
constexpr std::size_t outlineMetric = 1, heightMetric = 7, meanHeightMetric = 8;

/// The length of a line whose points are neighbours or the same; 0 for fewer than two.
double tracing_length(std::span<const CPoint> points, double stepX, double stepY) noexcept;
/// The area of a polygon in samples, halves up; 0 for fewer than three points.
double polygon_area(std::span<const CPoint> points) noexcept;

} // namespace vldv::spectra
