#pragma once
#include "primitives/fit/plane_moments.h"
#include "primitives/map/sample_runs.h"

#include <cstdint>
#include <span>

// Range, plane and moments of an image of which some samples do not count. Plain loops: of whole images those of
// plane_moments.h are several times as fast, and their plane is exact.

namespace vldv::primitives {

/// The range of the samples that count and the plane with the smallest sum of squares over them. Where they lie on one
/// line across the image the plane rises along it alone, and one sample has a level plane.
/// \param samples  rows of `width`, which is positive
/// \param leftOut  in rising order; a range that is empty and the plane 0 when nothing is left
[[nodiscard]] plane_of_image fit_partial_plane(std::span<const std::int16_t> samples, int width,
                                               std::span<const sample_run> leftOut) noexcept;
/// Moments of what is left of the samples that count without their plane, all 0 for rests that rounding leaves of a
/// plane. There must be one that counts.
[[nodiscard]] raw_moments partial_moments(std::span<const std::int16_t> samples, int width, const fitted_plane& plane,
                                          std::span<const sample_run> leftOut) noexcept;

} // namespace vldv::primitives
