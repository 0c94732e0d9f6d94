#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// Text tables: images as matrices or as points on a grid, curves in columns, with or without a header, in any of the
/// usual encodings, separators and decimal marks.
base::read_result<recording> read_text_table(source& file);

/// True for headers that only a known export writes.
bool sniff_text_table(std::span<const std::byte> head);
/// True for what looks like text and holds a number.
bool possible_text_table(std::span<const std::byte> head);

} // namespace vldv::formats
