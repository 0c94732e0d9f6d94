#pragma once
#include "formats/recording.h"
#include "formats/scala/scala_parameters.h"
#include "formats/shared/stream_shape.h"
#include "formats/source.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// The data file of a channel, beside the parameter file of name `parameterName`: under the name that is written
/// there, or, in a renamed set, under the set's own name with the same extension. Null when there is none.
std::unique_ptr<source> find_scala_data(source& beside, const std::string& parameterName, const scala_channel& channel);

/// Dimensions of a channel's samples: a picture, or a volume with the curve fastest. Empty for curves of single points.
std::vector<extent> scala_extents(const scala_parameters& parameters, const scala_channel& channel);

/// Fills `out` with one direction of a channel, bottom row first.
/// \return a reason why the file does not hold it, or an empty text
std::string read_scala_samples(source& data, const scala_channel& channel, std::span<std::int16_t> out);

/// "V" for a voltage, "nm" for a distance, else nothing.
std::string scala_parameter_units(const scala_channel& channel);

} // namespace vldv::formats
