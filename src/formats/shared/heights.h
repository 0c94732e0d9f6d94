#pragma once
#include "formats/recording.h"

#include <span>
#include <string>

namespace vldv::formats {

/// How the samples of one channel turn into physical values.
struct value_scale {
    double step = 1.0;   ///< physical units a raw number
    double offset = 0.0; ///< physical value of raw 0
    std::string units;   ///< UTF-8, may be empty
    std::string origin;  ///< header fields that the scale was derived from, for people
};

/// Where a channel's samples lie in space.
struct image_frame {
    unsigned width = 0, height = 0, frames = 1;
    VLAxis x, y;
};

/// An image named `id` (file-wide unique) and labelled `label`, with its axes and the string "\Z scale" set, its
/// array of frames * height * width `int16` still to be filled. \throws std::bad_alloc
recorded_image make_image(const std::string& id, const std::string& label, const image_frame& frame,
                          const value_scale& scale);

/// An image with samples made from floating-point numbers (row 0 is the bottom row) that `scale` gives their meaning,
/// as `settle_samples` makes them 16-bit ones.
recorded_image make_image_from_values(const std::string& id, const std::string& label, const image_frame& frame,
                                      const value_scale& scale, std::span<const double> values);

/// A curve of equally spaced points on `x`; several sub-images when the values are a multiple of `points`.
recorded_image make_curve_from_values(const std::string& id, const std::string& label, unsigned points, const VLAxis& x,
                                      const value_scale& scale, std::span<const double> values);

/// Makes an id from a channel name: letters, digits, "_", "." and "-" stay, other characters become "_"; never empty,
/// never one that `used` holds already. The new id is added to `used`.
std::string unique_id(const std::string& channel, std::vector<std::string>& used);

/// Stands for an empty origin.
constexpr const char* unknownOrigin = "the numbers as they stand";
/// "raw * 1.5 + 0 [nm] from Z scale, Sens. Zsens": how a scale came to be.
std::string describe_scale(const value_scale& scale);

} // namespace vldv::formats
