#pragma once
#include "base/VLAxis.h"
#include "vldv_api.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace vldv::curves {

/// "HorizontalValue": what the text tells of the stretch between the two vertical marks.
enum class stretch_value { length = 0, fullLength = 1, integral = 2, chordArea = 3, time = 4 };

/// A number with its unit.
struct quantity {
    double value = 0.0;
    std::string units;
};

/// Two places on a curve, in samples.
struct marked_stretch {
    double first = 0.0, second = 0.0;
};

/// The length of the curve itself between the marks, in units of the positions; nothing when the values have others.
VLDV_INTERNAL_API std::optional<quantity> arc_length(std::span<const std::int16_t> curve, const marked_stretch& marks,
                                                     const VLAxis& positions, const VLAxis& values);
/// The area between the curve and a level; as a square when values and positions have units of one kind.
/// \param lowest  the raw level
VLDV_INTERNAL_API quantity area_over_level(std::span<const std::int16_t> curve, const marked_stretch& marks, int lowest,
                                           const VLAxis& positions, const VLAxis& values);
/// The area between the curve and the straight line from mark to mark.
VLDV_INTERNAL_API quantity area_over_chord(std::span<const std::int16_t> curve, const marked_stretch& marks,
                                           const VLAxis& positions, const VLAxis& values);
/// Milliseconds that the probe took from mark to mark. \param rate  lines a second; not 0
/// \param lineSamples  of a scan line, which is scanned there and back
VLDV_INTERNAL_API double stretch_time(const marked_stretch& marks, double rate, std::uint32_t lineSamples) noexcept;

} // namespace vldv::curves
