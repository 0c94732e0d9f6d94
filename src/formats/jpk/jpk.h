#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// True for an image (a TIFF with the grid's size in a private tag) and for an archive of force curves whose first
/// entries lie in `head`.
bool sniff_jpk(std::span<const std::byte> head);
/// True for any zip archive.
bool possible_jpk(std::span<const std::byte> head);

/// Reads images with their calibrations, single force curves, maps and series.
base::read_result<recording> read_jpk(source& file);

} // namespace vldv::formats
