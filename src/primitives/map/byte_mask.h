#pragma once
#include <cstddef>
#include <cstdint>

namespace vldv::primitives {

/// One bit a byte, 1 where it is not 0; the words lie `stride` words apart, bits past the width are 0.
void pack_bytes(const std::uint8_t* bytes, int width, std::uint64_t* words, std::size_t stride) noexcept;
void pack_bytes_reference(const std::uint8_t* bytes, int width, std::uint64_t* words, std::size_t stride) noexcept;

/// Makes 0 of every byte whose bit is clear.
void keep_bytes(const std::uint64_t* words, std::size_t stride, std::uint8_t* bytes, int width) noexcept;
void keep_bytes_reference(const std::uint64_t* words, std::size_t stride, std::uint8_t* bytes, int width) noexcept;

} // namespace vldv::primitives
