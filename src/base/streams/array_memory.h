#pragma once
#include <cstddef>

namespace vldv::base {

// The memory of array variables. A size of 0 gives a null pointer. All throw std::bad_alloc.

/// Zeros; large blocks cost nothing until they are touched.
void* zeroed_array(std::size_t bytes);
void* copy_array(const void* source, std::size_t bytes);
/// Keeps what both sizes share. New bytes are zero when `zeroed` is set. The old block stays valid on an exception.
void* resize_array(void* block, std::size_t oldBytes, std::size_t newBytes, bool zeroed);
void free_array(void* block) noexcept;

} // namespace vldv::base
