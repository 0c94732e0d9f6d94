#pragma once
#include "base/streams/byte_reader.h"
#include "view/scale/ColorTable.h"

#include <cstddef>
#include <span>
#include <vector>

namespace vldv::view {

/// Reads a `.pal` palette file: little-endian RIFF, four bytes an entry (red, green, blue, flags).
/// \param bytes  the whole file; may be empty, cut short or hostile
/// \return the entries in file order, flags dropped; or where and why it was refused
/// The entry count comes from the RIFF size; the size in the data chunk is ignored. The entries begin right behind that
/// size: the two words that some programs write before them are taken for a colour.
base::read_result<color_table> read_palette_file(std::span<const std::byte> bytes);

/// The file for a table: 20 bytes of headers, then whole entries, the top byte as flags.
std::vector<std::byte> write_palette_file(const color_table& table);

} // namespace vldv::view
