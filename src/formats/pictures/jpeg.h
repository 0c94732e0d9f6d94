#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// JPEG pictures: grey ones as 8-bit indices on a grey palette, colours (also the inks of print files) as 24 bits. The
/// resolution is that of the JFIF header. A damaged or cut picture is refused.
base::read_result<recording> read_jpeg(source& file);

bool sniff_jpeg(std::span<const std::byte> head);

} // namespace vldv::formats
