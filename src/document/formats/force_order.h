#pragma once
#include "document/formats/recording.h"

#include <span>
#include <string_view>
#include <vector>

// Force records start at the contact: sample 0 of approach and retract is where probe and sample touch, the last one is
// the free end. What is told here does not depend on a format.

namespace formats {

/// Where the contact lies in a record as a file stores it.
enum class contact_end { unknown, first, last };

/// What the probe does in a part of a record.
enum class force_way { unknown, approach, retract };

/// `curve_lengths` as the image's texts tell them.
std::vector<std::size_t> curve_lengths_of(const recorded_image& image);

/// The way that the name of a part tells: "Approach", "Retract 2", "Curve 3, Approach".
force_way way_of_part(std::string_view name) noexcept;

/// Of samples in the order of time: an approach ends in contact, a retract begins in it.
contact_end contact_in_time(force_way way) noexcept;

/// Of samples whose positions are known: the end that lies nearer to `contact`, where the approach ended. Unknown when
/// no end is nearer.
contact_end contact_by_position(double first, double last, double contact) noexcept;

/// Of forces or deflections of which nothing is told: the end whose tenth is clearly higher, by a fifth of the range
/// and ten times the noise from sample to sample; else unknown.
contact_end contact_by_force(std::span<const double> forces);

/// Turns the curves of an image (dimension 0 runs along them) whose contact comes last, padding stays behind them. With
/// all of them the axis turns, so that positions stay; an axis that only some could keep counts from the contact then.
/// "\Recorded order" tells how the file has them, nothing when no end is known.
/// \param ends  one a curve, or one a sub-image
void order_from_contact(recorded_image& image, std::span<const contact_end> ends);

/// Turns what readers left as it was: force and deflection over a length (axis or parameter stream) of which the file
/// does not say where the contact lies, with its parameter streams, when the forces themselves tell it.
void order_by_forces(recording& content);

/// True for the label of a vertical deflection: "vDeflection", "Deflection Error", "Defl", "DFL".
bool is_deflection_name(std::string_view label);

/// Says in "\Deflection sign" when a further value axis, such as the volts, falls where the first one, such as the
/// force, rises: the sensitivity is below 0 then. Only for deflections.
void note_deflection_sign(recorded_image& image);

} // namespace formats
