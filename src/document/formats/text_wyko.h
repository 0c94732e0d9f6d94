#pragma once
#include "document/formats/text_header.h"

namespace formats {

/// Text exports of optical profilers, "Wyko ASCII Data File Format": heights in wavelengths, a line for each column
/// from the bottom up.
bool fits_wyko(const header_lines& lines);
void apply_wyko(const header_lines& lines, table_header& header);

} // namespace formats
