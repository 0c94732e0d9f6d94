#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// PNG pictures. Grey levels of 16 bits are heights: raw numbers that are the levels less 32768. Fewer bits, indices
/// and colours are a picture, colours of 16 bits with their upper eight; transparency is dropped. The resolution is
/// that of the chunk pHYs, the text chunks become strings. A damaged or cut picture is refused.
base::read_result<recording> read_png(source& file);

bool sniff_png(std::span<const std::byte> head);

} // namespace vldv::formats
