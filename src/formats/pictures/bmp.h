#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// Windows and OS/2 bitmaps of 1, 4, 8, 16, 24 and 32 bits, plain, with bit fields or run-length coded, either way up.
/// Indexed pixels keep their palette; plain pixels of any depth stay as they are, 5-5-5 fields too. Other fields become
/// 24-bit colours without alpha. A file without all of its pixels is refused.
base::read_result<recording> read_bmp(source& file);

bool sniff_bmp(std::span<const std::byte> head);

} // namespace vldv::formats
