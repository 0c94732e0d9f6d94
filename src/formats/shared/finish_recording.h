#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"

#include <string>

namespace vldv::formats {

/// What each recording goes through before it leaves the readers:
/// - an image with an axis whose start or scale is infinite or no number, or whose scale is 0, or with a dimension
///   without samples, is left out with a warning; when none is left the recording is refused for the first reason
/// - a negative step of value axis 0 becomes positive, see `make_step_positive`
/// - notes of images become warnings
/// A refusal is handed on as it is.
base::read_result<recording> finish_recording(base::read_result<recording> read);

/// Turns the samples over when value axis 0 falls, so that a larger number is a larger value: -1 - raw for signed
/// numbers, the largest number - raw for unsigned ones, -raw for floating ones. Starts and steps of all value axes
/// follow, and every sample keeps its value. Does nothing to a rising axis.
void make_step_positive(SPMDataStream& stream);

/// Says what is not as it should be in the text `key`, "Frames left out", and in a warning.
void leave_note(recording& out, const std::string& key, const std::string& text);

} // namespace vldv::formats
