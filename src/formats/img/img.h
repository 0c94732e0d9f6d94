#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/source.h"

#include <cstddef>
#include <span>

namespace vldv::formats {

/// True for the kinds that begin with a word or a number of their own (Burleigh, DME) and for headers full of the
/// texts of the other two.
bool sniff_img(std::span<const std::byte> head);
/// Any other file under the name: the reader looks at the size of the file, too, and names what it expected.
bool possible_img(std::span<const std::byte> head);

/// Reads the image of the four kinds of .img files of probe microscopes that can be told apart.
base::read_result<recording> read_img(source& file);

} // namespace vldv::formats
