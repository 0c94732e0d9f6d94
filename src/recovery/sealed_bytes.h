#pragma once
#include "base/streams/byte_reader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Numbers and texts as bytes, little-endian, closed by the CRC-32 of all that.
namespace vldv::recovery {

class byte_writer {
public:
    template <class T>
    void number(T value)
    {
        for (std::size_t i = 0; i < sizeof(T); ++i)
            bytes.push_back(static_cast<std::byte>(static_cast<std::uint64_t>(value) >> (8 * i) & 0xff));
    }
    void plain(std::span<const std::byte> added) { bytes.insert(bytes.end(), added.begin(), added.end()); }
    void plain(std::string_view added) { plain(std::as_bytes(std::span(added))); }
    /// A 32-bit length and the text.
    void text(std::string_view added)
    {
        number(static_cast<std::uint32_t>(added.size()));
        plain(added);
    }
    /// All that was written and its checksum. The writer is empty afterwards.
    std::vector<std::byte> sealed();

private:
    std::vector<std::byte> bytes;
};

/// A text as `byte_writer::text` writes it; empty, and failure, when it is longer than what is left.
std::string text_from(base::byte_reader& in);
/// What stands before the checksum; nothing when that is another.
std::optional<std::span<const std::byte>> unsealed(std::span<const std::byte> bytes);

} // namespace vldv::recovery
