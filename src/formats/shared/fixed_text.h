#pragma once
#include "base/streams/byte_reader.h"
#include "formats/shared/header_text.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace vldv::formats {

/// Bytes as text, as they stand.
inline std::string_view as_text(std::span<const std::byte> bytes) noexcept
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// A text of a binary header that fills `width` bytes, as `header_text` gives it.
inline std::string fixed_text(base::byte_reader& in, std::size_t width) { return header_text(as_text(in.take(width))); }

} // namespace vldv::formats
