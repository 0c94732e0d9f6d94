#pragma once
#include "formats/nanoscope/nanoscope_header.h"

#include <map>
#include <string>

namespace vldv::formats {

/// Text parameters of an image or a document. The keys that views look up start with a backslash and have one spelling
/// ("\Scan rate"); all others are the instrument's own without it.
using string_table = std::map<std::string, std::string>;

/// Adds all lines of an image list that have a value. A second, different value of a key joins the first after " / ".
void add_section_strings(string_table& strings, const nanoscope_section& section);

/// Adds what views read from the image though the instrument tells it once for the whole file.
void add_shared_strings(string_table& strings, const nanoscope_header& header);

/// The plain lines of all lists that are no image; a key that occurs in several lists has the first list's value.
/// Lines with "@", many hundreds of them, are controller settings that mean nothing outside the instrument.
string_table document_strings(const nanoscope_header& header);

} // namespace vldv::formats
