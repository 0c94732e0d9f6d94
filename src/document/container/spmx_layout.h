#pragma once
#include "base/streams/byte_reader.h"

#include <optional>
#include <string>
#include <string_view>

namespace vldv::document {

/// Texts in main.xml stand without escapes. This scanner knows the file's layout (an element a line, fixed attributes)
/// and rewrites it as well-formed XML of the same content: texts escaped, entities renamed e0, e1 …, line ends kept as
/// character references. A text ends at its closing tag when a line end and an element of the layout follow.
/// Takes a time in proportion to the text, whatever stands in it.
/// \return nothing when the text has another layout; it may be proper XML then. An error for too many entities
base::read_result<std::optional<std::string>> well_formed_spmx(std::string_view text);

} // namespace vldv::document
