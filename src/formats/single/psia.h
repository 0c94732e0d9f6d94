#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// The heights that PSIA and Park microscopes keep in private tags of a TIFF file, the page of which is no more than a
/// picture of them. Line profiles, spectroscopy and packed samples are refused.
base::read_result<recording> read_psia(source& file);

bool sniff_psia(std::span<const std::byte> head);
/// Whether a file is one also where its directory lies behind the head.
bool is_psia(source& file);

} // namespace vldv::formats
