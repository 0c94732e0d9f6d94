#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// AIST-NT files: rasters as images and curves, both directions of a channel as one.
base::read_result<recording> read_aist(source& file);

/// The format has no mark that is sure, so its extension has to fit as well.
bool possible_aist(std::span<const std::byte> head);

} // namespace vldv::formats
