#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// Images of the ProScan program: HDF 4 files with a header block of its own. Other HDF files are refused by name.
base::read_result<recording> read_hdf(source& file);

/// True for any HDF file, so that the others are told apart with a reason.
bool sniff_hdf(std::span<const std::byte> head);

} // namespace vldv::formats
