#pragma once
#include "formats/recording.h"
#include "formats/shared/force/contact_cues.h"

#include <span>
#include <string_view>
#include <vector>

// Force records start at the contact: sample 0 of approach and retract is where probe and sample touch, the last one is
// the free end. What is told here does not depend on a format.

namespace vldv::formats {

/// The text that tells how a file has the curves of an image.
inline constexpr const char* recordedOrderKey = "\\Recorded order";

/// `curve_lengths` as the image's texts tell them.
std::vector<std::size_t> curve_lengths_of(const recorded_image& image);

/// Turns the curves of an image (dimension 0 runs along them) whose contact comes last, padding stays behind them. With
/// all of them the axis turns, so that positions stay; an axis that only some could keep counts from the contact then.
/// "\Recorded order" tells how the file has them, nothing when no end is known.
/// \param ends  one a curve, or one a sub-image
void order_from_contact(recorded_image& image, std::span<const contact_end> ends);

/// Turns what readers left as it was: forces and deflections over a length, a time or a mere count (axis or parameter
/// stream) of which the file does not say where the contact lies, with all that is measured at the same samples.
/// Curves over the same positions have one contact: it lies where those whose forces tell it agree that it lies. Over a
/// time, and where the forces say so, approaches and retracts run in time as their names tell. What contradicts itself
/// stays as it is, and the text and a warning say so.
void order_by_forces(recording& content);

/// True for the label of a vertical deflection: "vDeflection", "Deflection Error", "Defl", "DFL".
bool is_deflection_name(std::string_view label);

/// True for forces and vertical deflections, by unit or label, by id where there is no label; not for friction
/// and the like.
bool holds_forces(const SPMDataStream& stream);

/// Says in "\Deflection sign" when a further value axis, such as the volts, falls where the first one, such as the
/// force, rises: the sensitivity is below 0 then. Only for deflections.
void note_deflection_sign(recorded_image& image);

} // namespace vldv::formats
