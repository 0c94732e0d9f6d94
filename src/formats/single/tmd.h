#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// TrueMap height maps of version 2. Files of the name that are another program's have no layout that is public.
base::read_result<recording> read_tmd(source& file);

bool sniff_tmd(std::span<const std::byte> head);
/// Any file: the reader tells what cannot be opened.
bool possible_tmd(std::span<const std::byte> head);

} // namespace vldv::formats
