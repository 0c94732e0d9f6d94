#pragma once
#include "formats/recording.h"
#include "formats/shared/heights.h"
#include "formats/shared/void_ranges.h"

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// One dimension of a stream: how many samples, and where they lie.
struct extent {
    unsigned length = 0;
    VLAxis axis;
};

/// The scale of a side whose stated length is below 0: no calculation has this number by chance, as it has -0.
inline constexpr double sideBelowZero = -std::numeric_limits<double>::denorm_min();

/// The place of `points` samples on a side of this length. A stated length that is not above 0 makes an axis that no
/// finished recording holds: its scale is 0, or `sideBelowZero`.
VLAxis stated_side(double start, double length, unsigned points, const std::string& units);
/// Names the header's field of a length that is not above 0 or no number, for the reason why the image is left out.
/// \param text  of the field, for one that is no number
void note_length(recorded_image& image, const std::string& field, double length, const std::string& text = {});

/// Magnitudes that no place and no value of any unit has.
constexpr double absurdMagnitude = 1e30;

/// The header's fields behind an axis.
struct axis_fields {
    const char *scale, *start; ///< start: null when it is always 0
};
/// Names them for the reason why the image is left out, where an axis of a dimension cannot place anything. The fields
/// of the values stand in the origin of their scale.
void name_axis_fields(recorded_image& image, std::initializer_list<axis_fields> dimensions);

/// A stream named `id` and labelled `label` of `frames` sub-images with these dimensions, fastest first, its value
/// axis and "\Z scale" set. Its elements of `type` are not initialised; numbers that are not 16-bit have to be settled
/// with `settle_samples` when they are filled. \throws std::bad_alloc when there are more than 2^32 - 1 samples
recorded_image make_samples(const std::string& id, const std::string& label, std::span<const extent> dimensions,
                            unsigned frames, const value_scale& scale, SPMVarArrayType type = SPM_ARRAY_INT16);

/// The elements of a stream; T must be its element type.
template <class T>
std::span<T> elements_of(recorded_image& image) noexcept
{
    return {static_cast<T*>(image.stream.array_data()), image.stream.array_length()};
}

/// Fills samples that are no measurement, counts them in "\Void points" and a note and tells in "\Void samples" which
/// they are: `voids`, NaN, and absurd ones, which "\Absurd points" counts, too. In curves they lie between their
/// neighbours, in surfaces they get the lowest measured value (void_points.h). Absurd are magnitudes from 1e30 up, and
/// samples that are further from the middle 99.8 % of all than 10^6 times the span of these. Numbers of another type
/// then become 16-bit ones: whole numbers that fit signed or unsigned 16 bits stay as they are, others are fitted onto
/// an axis of six digits, all values within half a step. A note says so when a step is more than a tenth of the
/// middle's span, or than what half of the samples span.
void settle_samples(recorded_image& image, std::span<const void_range> voids = {});

/// Settles 16-bit samples of which some raw numbers mean "not measured".
void settle_markers(recorded_image& image, std::span<const std::int16_t> markers);

/// Adds another meaning of the same raw numbers as a further value axis, which views offer as "AxisZ". `first` is the
/// scale that the image was made with, `other` turns the same raw numbers into the other quantity.
void add_calibration(recorded_image& image, const value_scale& first, const value_scale& other);

/// Names the sub-images: "Forward", "Reverse"; "Approach", "Retract".
void name_subimages(recorded_image& image, std::span<const std::string> names);

/// Curves of a set may be shorter than the longest: their rest takes their last value, `lengths` tells in "\Curve
/// lengths", in stored order, separated by blanks. Nothing is set when all have `points`.
void note_curve_lengths(recorded_image& image, unsigned points, std::span<const unsigned> lengths);

/// True for a side from 1 to 65536.
bool is_image_side(std::uint64_t length) noexcept;

} // namespace vldv::formats
