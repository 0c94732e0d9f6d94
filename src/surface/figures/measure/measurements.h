#pragma once
#include "base/VLAxis.h"
#include "surface/figures/selection_state.h"

#include <span>
#include <string>

namespace vldv::surface {

/// The steps from sample to sample, both in the unit of the X axis.
struct sample_steps {
    double x = 1.0, y = 1.0;
    std::string units;
};
sample_steps steps_of(const VLAxis& x, const VLAxis& y);

/// Length of the way along the points, in the unit of the steps; 0 below two points.
double path_length(std::span<const CPoint> points, const sample_steps& steps) noexcept;
/// Between the directions of two drags, degrees from 0 to 180.
double angle_between(const selection_rect& first, const selection_rect& second, const sample_steps& steps) noexcept;

/// Where the text of a measured way stands: at its end, on the side from which it does not come.
struct text_place {
    CPoint at;
    std::uint32_t alignment = 0; ///< flags of `text_align`
};
text_place text_output_point(std::span<const CPoint> points) noexcept;

// What is shown of a measurement, lengths in the unit in which they read well.
measure_text length_text(std::span<const CPoint> points, const sample_steps& steps);
measure_text lengthy_object_text(std::span<const CPoint> path, const sample_steps& steps);
measure_text angle_text(const selection_rect& first, const selection_rect& second, const sample_steps& steps);
/// A measurement taken again over other steps.
measure_text remeasured(const measure_text& measure, const sample_steps& steps);
/// The number of marks, in the lower right corner; nothing for none.
measure_text total_text(std::size_t marks, CSize image);

} // namespace vldv::surface
