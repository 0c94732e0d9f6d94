#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

namespace vldv::formats {

/// Reads the one square height image of a NanoScope file of version 2, "Data_File_Type 7": 2048 bytes of
/// `key = value` lines, then 16-bit samples.
base::read_result<recording> read_nanoscope_version2(source& file);

} // namespace vldv::formats
