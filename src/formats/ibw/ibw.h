#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// True when version and checksum say that this is an Igor binary wave.
bool sniff_ibw(std::span<const std::byte> head);
/// True for a known version; the reader then tells what is wrong.
bool possible_ibw(std::span<const std::byte> head);

/// Reads waves of versions 1, 2, 3 and 5 as images or curves, with the names, units and segments of the MFP-3D.
base::read_result<recording> read_ibw(source& file);

} // namespace vldv::formats
