#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// WITec projects: pictures as images, single spectra as curves, spectral maps as volumes with the spectrum fastest.
/// An object that cannot be read is named in the string "Skipped objects" and does not stop the others.
base::read_result<recording> read_wip(source& file);

bool sniff_wip(std::span<const std::byte> head);

} // namespace vldv::formats
