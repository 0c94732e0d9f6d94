#pragma once
#include "primitives/map/range.h"

#include <cstdint>
#include <span>

namespace vldv::primitives {

/// offset + slopeX * column + slopeY * row.
struct fitted_plane {
    double offset = 0.0, slopeX = 0.0, slopeY = 0.0;
};

/// Range and best plane of an image, out of one pass with whole numbers: an image that is a plane of whole numbers
/// gives exactly that plane.
struct plane_of_image {
    height_range range;
    fitted_plane plane;
};
/// \param samples  rows of `width`, which is positive; not empty
[[nodiscard]] plane_of_image fit_plane(std::span<const std::int16_t> samples, int width) noexcept;
/// The plain definition: with cx = (W - 1) / 2 and the variance vx of the columns (1 where there is one column only),
/// slopeX = (sum(column * mean of column) / W - cx * mean) / vx, slopeY the same over the rows, and the plane passes
/// the mean in the middle. Its sums round, those of `fit_plane` do not: the two agree to 1e-9 of the largest sample.
[[nodiscard]] plane_of_image fit_plane_reference(std::span<const std::int16_t> samples, int width);

/// Means of the powers of z and of |z - mean|.
struct raw_moments {
    double m1 = 0.0, m2 = 0.0, m3 = 0.0, m4 = 0.0;
    double meanDeviation = 0.0;
};
/// Moments of what is left of an image without its plane, in one pass. The plane must be the fitted one: then the mean
/// is 0, and the deviation is taken from there. Agrees with the definition to 1e-9.
/// Sums of powers of z, and of |z|.
struct power_sums {
    double second = 0.0, third = 0.0, fourth = 0.0, absolute = 0.0;
};
[[nodiscard]] raw_moments residual_moments(std::span<const std::int16_t> samples, int width,
                                           const fitted_plane& plane) noexcept;
/// The plain definition: first the mean, then the deviation from it.
[[nodiscard]] raw_moments residual_moments_reference(std::span<const std::int16_t> samples, int width,
                                                     const fitted_plane& plane);

} // namespace vldv::primitives
