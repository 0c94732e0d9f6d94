#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// True for the first bytes of a NanoScope file, also of one whose line ends were damaged in a text-mode transfer:
/// the reader then says so.
bool sniff_nanoscope(std::span<const std::byte> head);

/// Reads images, force curves and force volumes of a NanoScope file, header versions 2 to 10: 16-bit samples stay as
/// they are, 32-bit ones are fitted onto 16 bits. A channel that was recorded in both directions of the fast axis
/// becomes one image with the sub-images "Forward" and "Reverse". Approach and retract are sub-images of one image, a
/// force volume has the curve as its first dimension.
base::read_result<recording> read_nanoscope(source& file);

} // namespace vldv::formats
