#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

namespace vldv::formats {

/// Reads a file that starts "?*File list": the usual header, then the samples of all images as decimal numbers, one
/// image after another.
base::read_result<recording> read_nanoscope_text(source& file);

} // namespace vldv::formats
