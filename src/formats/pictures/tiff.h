#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// All pages of a TIFF file, classic or BigTIFF. Grey levels and palettes of up to 8 bits and colours become pictures;
/// grey of more bits, signed and floating samples become height images, one for each channel, with axes from the
/// resolution. 16-bit samples are kept bit for bit. Alpha is left out. A file with a damaged page is refused.
base::read_result<recording> read_tiff(source& file);

bool sniff_tiff(std::span<const std::byte> head);

} // namespace vldv::formats
