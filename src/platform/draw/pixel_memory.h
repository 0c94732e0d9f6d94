#pragma once
#include <cstddef>
#include <cstdlib>
#include <memory>

namespace vldv::platform {

struct pixel_release {
    void operator()(std::byte* block) const noexcept { std::free(block); }
};
using pixel_memory = std::unique_ptr<std::byte, pixel_release>;

/// Black pixels: zeroed memory that begins on a cache line, so that a row's vectors do not straddle two; large blocks
/// ask for huge pages, since a new picture otherwise spends more time on page faults than on its drawing.
/// \return null for no bytes or when there is no memory
pixel_memory allocate_pixels(std::size_t bytes) noexcept;

} // namespace vldv::platform
