#pragma once
#include "formats/text/text_header.h"

namespace vldv::formats {

/// Matrix export with "# Channel:", "# Width:", "# Height:" and "# Value units:". The words are translated into the
/// user's language, so the form of the lines decides: a name, then two sizes with units, then a unit. One line may be
/// missing, stand twice or lack its comment mark.
bool fits_channel_export(const header_lines& lines);
/// What is damaged becomes a note, or a size without a number.
void apply_channel_export(const header_lines& lines, table_header& header);

} // namespace vldv::formats
