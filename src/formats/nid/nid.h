#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// Nanosurf files, .nid and the older .ezd: scans as images, spectroscopy as curves or, on a grid of points, as
/// volumes, sweeps and spectra as curves.
base::read_result<recording> read_nid(source& file);

bool sniff_nid(std::span<const std::byte> head);

} // namespace vldv::formats
