#pragma once
#include "formats/nanoscope/nanoscope_header.h"
#include "formats/nanoscope/nanoscope_image.h"
#include "formats/source.h"

#include <span>
#include <string>

namespace vldv::formats {

/// The first bytes of the file, at most `count`; empty when they cannot be read.
std::string read_head(source& file, std::uint64_t count);

/// Whether samples stand where the header is filled up to its stated length: it is shorter than it says, as when it
/// has lost line ends on its way.
bool has_lost_bytes(source& file, const nanoscope_header& header);

/// What is to be said of samples that stand elsewhere than the header tells, since its text was edited: bytes are
/// lost, or as many bytes of filler stand in front of the first sample as are left behind the last. Empty for none.
/// \param images  all that the file has, placed
std::string told_shift(source& file, const nanoscope_header& header, std::span<const nanoscope_image> images);

} // namespace vldv::formats
