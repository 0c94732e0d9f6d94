#include "platform/draw/pixel_memory.h"

#include <cstring>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace vldv::platform {

pixel_memory allocate_pixels(std::size_t bytes) noexcept
{
    constexpr std::size_t cacheLine = 64, hugePage = std::size_t{1} << 21;
    if (bytes == 0) return nullptr;
    // A large picture on large pages takes few entries of the processor's table of pages, which a walk along columns or
    // over the whole of it would otherwise run out of.
    const std::size_t alignment = bytes >= hugePage ? hugePage : cacheLine;
    const std::size_t rounded = (bytes + alignment - 1) / alignment * alignment;
    pixel_memory block(static_cast<std::byte*>(std::aligned_alloc(alignment, rounded)));
    if (!block) return nullptr;
#if defined(__linux__)
    if (alignment == hugePage) madvise(block.get(), rounded, MADV_HUGEPAGE); // a wish; pages of any size will do
#endif
    std::memset(block.get(), 0, bytes);
    return block;
}

} // namespace vldv::platform
