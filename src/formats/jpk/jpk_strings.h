#pragma once
#include "formats/jpk/jpk_layout.h"

#include <map>
#include <string>

namespace vldv::formats {

/// Texts of an archive as a whole: its header, what its curves share, the date and the places of a map's curves.
std::map<std::string, std::string> jpk_document_strings(const jpk_archive& archive);

/// Adds the texts of a channel: the date, what the first curve's segments say of themselves and of the channel (several
/// values of one key " / " apart), and what force analysis needs.
void add_jpk_strings(const jpk_archive& archive, const jpk_channel_parts& parts,
                     std::map<std::string, std::string>& strings);

} // namespace vldv::formats
