#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace vldv::formats {

/// Omicron SCALA measurements: a parameter file with the data files beside it, both directions of a channel as one
/// image, spectroscopy on a grid as a volume, of single points as curves. A data file opens the whole set, too. Data
/// files that are missing or damaged are named in the string "Missing channels".
base::read_result<recording> read_scala(source& file);

/// For each of `names` the parameter file of the set that it belongs to, or itself where there is none.
std::vector<std::string> scala_leaders(const std::vector<std::string>& names);

bool sniff_scala(std::span<const std::byte> head);
/// Data files of samples have no mark of their own: their names and the parameter file beside them tell.
bool possible_scala(std::span<const std::byte> head);

} // namespace vldv::formats
