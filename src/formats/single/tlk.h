#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// TLK files: their layout is not public. What is a text table by its content opens as one, all others are refused
/// with a reason that says so.
base::read_result<recording> read_tlk(source& file);

/// Any file that no other format is certain of.
bool possible_tlk(std::span<const std::byte> head);

} // namespace vldv::formats
