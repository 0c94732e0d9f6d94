#include "primitives/simd.h"

#if defined(__x86_64__)
#include "primitives/mask/bit_image.h"

#include <immintrin.h>

namespace vldv::primitives::simd {

__attribute__((target("avx512f,avx512bw"))) void pack_bytes_avx512(const std::uint8_t* bytes, int width,
                                                                   std::uint64_t* words, std::size_t stride) noexcept
{
    for (; width >= bitsOfWord; width -= bitsOfWord, bytes += bitsOfWord, words += stride) {
        const __m512i block = _mm512_loadu_si512(bytes);
        *words = _mm512_test_epi8_mask(block, block);
    }
    pack_bytes_reference(bytes, width, words, stride);
}

__attribute__((target("avx2"))) void pack_bytes_avx2(const std::uint8_t* bytes, int width, std::uint64_t* words,
                                                     std::size_t stride) noexcept
{
    const __m256i none = _mm256_setzero_si256();
    for (; width >= bitsOfWord; width -= bitsOfWord, bytes += bitsOfWord, words += stride) {
        const auto* const block = reinterpret_cast<const __m256i*>(bytes);
        const int low = _mm256_movemask_epi8(_mm256_cmpeq_epi8(_mm256_loadu_si256(block), none));
        const int high = _mm256_movemask_epi8(_mm256_cmpeq_epi8(_mm256_loadu_si256(block + 1), none));
        *words = ~(static_cast<std::uint64_t>(static_cast<std::uint32_t>(low)) |
                   static_cast<std::uint64_t>(static_cast<std::uint32_t>(high)) << 32);
    }
    pack_bytes_reference(bytes, width, words, stride);
}

__attribute__((target("avx512f,avx512bw"))) void keep_bytes_avx512(const std::uint64_t* words, std::size_t stride,
                                                                   std::uint8_t* bytes, int width) noexcept
{
    for (; width >= bitsOfWord; width -= bitsOfWord, bytes += bitsOfWord, words += stride) {
        const __m512i block = _mm512_loadu_si512(bytes);
        // Most blocks have nothing to lose, and what is not written need not go back to memory.
        if (_mm512_mask_test_epi8_mask(~*words, block, block) == 0) continue;
        _mm512_storeu_si512(bytes, _mm512_maskz_mov_epi8(*words, block));
    }
    keep_bytes_reference(words, stride, bytes, width);
}

__attribute__((target("avx2"))) void keep_bytes_avx2(const std::uint64_t* words, std::size_t stride,
                                                     std::uint8_t* bytes, int width) noexcept
{
    // Byte k of a register looks at bit k % 8 of byte k / 8 of the half word.
    const __m256i spread = _mm256_setr_epi64x(0, 0x0101010101010101, 0x0202020202020202, 0x0303030303030303);
    const __m256i bit = _mm256_set1_epi64x(static_cast<long long>(0x8040201008040201));
    for (; width >= bitsOfWord; width -= bitsOfWord, bytes += bitsOfWord, words += stride)
        for (int part = 0; part < bitsOfWord; part += 32) {
            auto* const block = reinterpret_cast<__m256i*>(bytes + part);
            const __m256i all = _mm256_set1_epi32(static_cast<int>(*words >> part & 0xFFFFFFFF));
            const __m256i found = _mm256_and_si256(_mm256_shuffle_epi8(all, spread), bit);
            _mm256_storeu_si256(block, _mm256_and_si256(_mm256_loadu_si256(block), _mm256_cmpeq_epi8(found, bit)));
        }
    keep_bytes_reference(words, stride, bytes, width);
}

} // namespace vldv::primitives::simd
#endif
