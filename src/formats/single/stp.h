#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// Molecular Imaging files: a text header and buffers of unsigned 16-bit samples.
base::read_result<recording> read_stp(source& file);

bool sniff_stp(std::span<const std::byte> head);

} // namespace vldv::formats
