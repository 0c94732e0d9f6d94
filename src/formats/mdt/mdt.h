#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

bool sniff_mdt(std::span<const std::byte> head);

/// Reads all images and curves of an .mdt file. A frame that is damaged, or of a kind without a known layout, is left
/// out and named in the string "Frames left out"; the file is refused only when no frame is left.
base::read_result<recording> read_mdt(source& file);

} // namespace vldv::formats
