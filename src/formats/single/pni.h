#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"
#include "vldv_api.h"

#include <cstddef>
#include <span>

/// Reads one Pacific Nanotechnology file (.pni): one channel in one direction.
VLDV_API vldv::base::read_result<vldv::formats::recording> pni_reader(vldv::formats::source& file);

namespace vldv::formats {

/// A Pacific Nanotechnology file with the other channels of the same scan.
base::read_result<recording> read_pni_group(source& file);

/// The version and a possible shape; the reader also holds the shape against the size of the file.
bool sniff_pni(std::span<const std::byte> head);
/// The version alone, of a file whose name says what it is.
bool possible_pni(std::span<const std::byte> head);

} // namespace vldv::formats
