#include "base/streams/array_memory.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace vldv::base {

void* zeroed_array(std::size_t bytes)
{
    if (bytes == 0) return nullptr;
    // The system hands out large blocks as zero pages, which take memory and time only when they are touched.
    if (void* block = std::calloc(bytes, 1)) return block;
    throw std::bad_alloc();
}

void* copy_array(const void* source, std::size_t bytes)
{
    if (bytes == 0) return nullptr;
    void* block = std::malloc(bytes);
    if (!block) throw std::bad_alloc();
    return std::memcpy(block, source, bytes);
}

void* resize_array(void* block, std::size_t oldBytes, std::size_t newBytes, bool zeroed)
{
    if (oldBytes == newBytes) return block;
    if (newBytes == 0) {
        free_array(block);
        return nullptr;
    }
    if (!block && zeroed) return zeroed_array(newBytes);
    void* resized = std::realloc(block, newBytes);
    if (!resized) throw std::bad_alloc();
    if (zeroed && newBytes > oldBytes) std::memset(static_cast<char*>(resized) + oldBytes, 0, newBytes - oldBytes);
    return resized;
}

void free_array(void* block) noexcept { std::free(block); }

} // namespace vldv::base
