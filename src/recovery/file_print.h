#pragma once
#include <cstdint>
#include <iosfwd>
#include <optional>

namespace vldv::recovery {

/// Tells the content of a file from others of its size: the CRC-32 of 1024 pieces of 64 KiB that lie evenly from its
/// begin to its end, so that a large one is told quickly as well.
/// \param size  of the file in bytes \return nothing when it cannot be read; the position is at the begin again
std::optional<std::uint32_t> print_of(std::istream& in, std::uint64_t size);

/// The print of such a file is one of all its bytes.
bool is_printed_whole(std::uint64_t size) noexcept;

} // namespace vldv::recovery
