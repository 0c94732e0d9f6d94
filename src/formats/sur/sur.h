#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"
#include "vldv_api.h"

#include <cstddef>
#include <span>

/// Reads one Digital Surf file (.sur, .pro): each object as an image, profiles and spectra as curves, a spectral map
/// as a volume with the spectrum as its fastest dimension.
VLDV_API vldv::base::read_result<vldv::formats::recording> sur_reader(vldv::formats::source& file);

namespace vldv::formats {

/// A Digital Surf file with the other channels of the same scan.
base::read_result<recording> read_sur_group(source& file);

bool sniff_sur(std::span<const std::byte> head);

} // namespace vldv::formats
