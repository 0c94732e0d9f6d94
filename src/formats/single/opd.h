#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

bool sniff_opd(std::span<const std::byte> head);
/// True for the later kind of file that only shares the name: the reader says so.
bool possible_opd(std::span<const std::byte> head);

/// Reads heights, then intensities, of an interferometer's file.
base::read_result<recording> read_opd(source& file);

} // namespace vldv::formats
