#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// True for BCR files of whole numbers and of floating-point numbers, their header in ASCII or UTF-16.
bool sniff_bcr(std::span<const std::byte> head);

/// Reads the image of a BCR file; points marked as not measured take the lowest value.
base::read_result<recording> read_bcr(source& file);

} // namespace vldv::formats
