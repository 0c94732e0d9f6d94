#pragma once
#include <cstddef>
#include <cstdint>

/// What a native container may hold. A few kilobytes of archive can describe a great deal; each limit is far above what
/// instruments record, and the reader names the one that a file exceeds.
namespace vldv::document::spmx_limits {

constexpr std::uint64_t descriptionBytes = 64u << 20; ///< of main.xml
constexpr std::size_t streams = 65'535;               ///< and entities
constexpr std::size_t texts = 1'000'000;              ///< of the document and all streams together
constexpr std::size_t names = 1'000'000;              ///< of sub-images and dependent variables together
constexpr unsigned dimensions = 32;                   ///< of a stream
constexpr unsigned axes = 256;                        ///< of a dimension, or of the values
constexpr std::uint64_t paddingBytes = 256u << 20;    ///< that shapes may ask for beyond what the file holds
constexpr std::uint64_t elements = 0xffffffffu;       ///< of a stream

} // namespace vldv::document::spmx_limits
