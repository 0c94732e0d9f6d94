#include "primitives/map/byte_mask.h"

#include "primitives/cpu.h"
#include "primitives/mask/bit_image.h"
#include "primitives/simd.h"

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
#if defined(__x86_64__)
    if (has_avx512()) return simd::pack_bytes_avx512(bytes, width, words, stride);
    if (has_avx2()) return simd::pack_bytes_avx2(bytes, width, words, stride);
#endif
    pack_bytes_reference(bytes, width, words, stride);
}

void keep_bytes(const std::uint64_t* words, std::size_t stride, std::uint8_t* bytes, int width) noexcept
{
#if defined(__x86_64__)
    if (has_avx512()) return simd::keep_bytes_avx512(words, stride, bytes, width);
    if (has_avx2()) return simd::keep_bytes_avx2(words, stride, bytes, width);
#endif
    keep_bytes_reference(words, stride, bytes, width);
}

} // namespace vldv::primitives
