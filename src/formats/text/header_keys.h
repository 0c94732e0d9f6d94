#pragma once
#include "formats/text/text_header.h"

namespace vldv::formats {

/// A line of a header as "key: value", "key = value" or "key TAB value", without comment mark and blanks.
struct key_value {
    std::string_view key; ///< empty when the line is neither: then all of it is the value
    std::string_view value;
};
key_value split_key(std::string_view line) noexcept;

/// A line without comment marks and without blanks around it.
std::string_view without_comment_mark(std::string_view line) noexcept;

/// The value of the first line with this key, in any case; empty when there is none.
std::string_view value_of(const header_lines& lines, std::string_view key);

/// True when there is a line `index` and it starts so.
bool has_line(const header_lines& lines, std::size_t index, std::string_view start);

} // namespace vldv::formats
