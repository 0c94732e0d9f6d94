#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// True for a WSxM file; its exports as tables are text tables and not meant.
bool sniff_wsxm(std::span<const std::byte> head);

/// Reads images of all number types and curve files; the other kinds are refused by name.
base::read_result<recording> read_wsxm(source& file);

} // namespace vldv::formats
