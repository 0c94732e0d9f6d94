#pragma once
#include "formats/text/text_header.h"

namespace vldv::formats {

/// Text exports of optical profilers, "Wyko ASCII Data File Format": heights in wavelengths, a line for each column
/// from the bottom up. Further arrays of the same size may follow, each behind a line that begins with its name.
bool fits_wyko(const header_lines& lines);
void apply_wyko(const header_lines& lines, table_header& header);
/// Label and scale of the array that `nameLine` names: only heights have the wavelength for a unit.
void apply_wyko_array(const header_lines& lines, const std::string& nameLine, table_header& header);
/// The values of the header under their keys, without the types and lengths that stand between them.
std::map<std::string, std::string> wyko_strings(const header_lines& lines);

} // namespace vldv::formats
