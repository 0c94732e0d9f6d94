#pragma once
#include "base/byte_reader.h"
#include "document/formats/recording.h"
#include "document/formats/source.h"

#include <cstddef>
#include <span>

namespace formats {

bool sniff_opd(std::span<const std::byte> head);
/// True for the later kind of file that only shares the name: the reader says so.
bool possible_opd(std::span<const std::byte> head);

/// Reads heights, then intensities, of an interferometer's file.
base::read_result<recording> read_opd(source& file);

} // namespace formats
