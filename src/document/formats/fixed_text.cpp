#include "document/formats/fixed_text.h"

#include "base/text.h"

#include <algorithm>

namespace formats {

std::string fixed_text(base::byte_reader& in, std::size_t width) { return fixed_text(as_text(in.take(width))); }

std::string fixed_text(std::string_view bytes)
{
    std::string text = base::cp1252_to_utf8(bytes.substr(0, bytes.find('\0')));
    std::ranges::replace_if(text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, ' ');
    return std::string(base::trimmed(text));
}

} // namespace formats
