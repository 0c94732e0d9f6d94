#pragma once
#include "formats/recording.h"
#include "formats/shared/heights.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// A curve among others of the same channel.
struct named_curve {
    std::string name; ///< of the sub-image: "Approach", "Point 3 Forward"; may be empty
    std::vector<double> values;
};

/// False when curves of very different lengths would take far more room padded than they have samples: only hostile
/// files hold such sets.
bool is_modest_padding(std::uint64_t paddedSamples, std::uint64_t samples) noexcept;
bool is_modest_padding(std::span<const named_curve> curves) noexcept;

/// A 1-D image with one sub-image a curve, all on one axis. Shorter curves are padded by their last value, their
/// lengths kept in "\Curve lengths". At least one curve must have values, and the
/// padding be modest. Names are set when any is not empty.
recorded_image make_curve_group(const std::string& id, const std::string& label, const VLAxis& x,
                                const value_scale& scale, std::span<const named_curve> curves);

/// What curves are seen against, a list of values for each.
struct curve_positions {
    std::string id, label;
    value_scale scale;
    std::vector<named_curve> curves;
};

/// Curves on an axis where all have the same evenly spaced positions. Else two images, first the positions, which the
/// second has as parameter stream. The ids are made from `label` and the positions' id, unlike those in `ids`.
std::vector<recorded_image> make_curves_over(const curve_positions& positions, const std::string& label,
                                             const value_scale& scale, std::span<const named_curve> curves,
                                             std::vector<std::string>& ids);

} // namespace vldv::formats
