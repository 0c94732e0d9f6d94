#pragma once
#include "base/byte_reader.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace formats {

/// Bytes as text, as they stand.
inline std::string_view as_text(std::span<const std::byte> bytes) noexcept
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// A text of a binary header that fills `width` bytes of code page 1252: up to its first NUL, without blanks around it,
/// control characters as blanks, as UTF-8.
std::string fixed_text(base::byte_reader& in, std::size_t width);
std::string fixed_text(std::string_view bytes);

} // namespace formats
