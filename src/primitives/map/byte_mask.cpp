#include "primitives/map/byte_mask.h"

#include "primitives/map/bit_image.h"
#include "primitives/simd/kernels.h"

namespace vldv::primitives {

void pack_bytes_reference(const std::uint8_t* bytes, int width, std::uint64_t* words, std::size_t stride) noexcept
{
    for (; width > 0; width -= bitsOfWord, bytes += bitsOfWord, words += stride) {
        std::uint64_t word = 0;
        for (int i = 0; i < std::min(width, bitsOfWord); ++i) word |= static_cast<std::uint64_t>(bytes[i] != 0) << i;
        *words = word;
    }
}

void keep_bytes_reference(const std::uint64_t* words, std::size_t stride, std::uint8_t* bytes, int width) noexcept
{
    for (; width > 0; width -= bitsOfWord, bytes += bitsOfWord, words += stride)
        for (int i = 0; i < std::min(width, bitsOfWord); ++i)
            if ((*words >> i & 1) == 0) bytes[i] = 0;
}

void pack_bytes(const std::uint8_t* bytes, int width, std::uint64_t* words, std::size_t stride) noexcept
{
    kernels().packBytes(bytes, width, words, stride);
}

void keep_bytes(const std::uint64_t* words, std::size_t stride, std::uint8_t* bytes, int width) noexcept
{
    kernels().keepBytes(words, stride, bytes, width);
}

} // namespace vldv::primitives
