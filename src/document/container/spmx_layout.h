#pragma once
#include "base/streams/byte_reader.h"

#include <optional>
#include <string>
#include <string_view>

namespace vldv::document {

struct rewritten_spmx {
    std::string xml;
    /// The text is this layout by its look only: a stream has no id, some declared sample has no stream, or a text
    /// holds what looks like an element. Another program may have laid it out.
    bool isDoubtful = false;
};

/// Texts in main.xml stand without escapes. This scanner knows the file's layout (an element a line, fixed attributes)
/// and rewrites it as well-formed XML of the same content: texts escaped, entities renamed e0, e1 …, line ends kept as
/// character references. A text ends at its closing tag when a line end and an element of the layout follow.
/// Takes a time in proportion to the text, whatever stands in it.
/// \return nothing when the text has another layout; it may be proper XML then. An error for too many entities
base::read_result<std::optional<rewritten_spmx>> well_formed_spmx(std::string_view text);

} // namespace vldv::document
