#pragma once
#include "base/streams/byte_reader.h"
#include "formats/source.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vldv::formats {

/// The text header of a binary file: all before the first `endMark`, which has to stand within `longest` bytes. Reads
/// on until it is found, so that the samples need not be looked at. The reason for a failure names the mark.
base::read_result<std::string> read_text_before(source& file, std::string_view endMark, std::uint64_t longest);

/// The first bytes of a file, fewer when it is shorter; empty when they cannot be read.
std::string read_start(source& file, std::uint64_t bytes);

} // namespace vldv::formats
