// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/map/byte_mask.h"
#include "primitives/simd/vector.h"

namespace vldv::primitives::simd {
namespace {

/// All bits of byte i are bit i of the word.
inline vec<std::uint8_t> bytes_of(std::uint64_t bits)
{
#if VLDV_VECTOR_BYTES == 64
    return as<std::uint8_t>(_mm512_movm_epi8(bits));
#else
    // Byte i looks at bit i % 8 of byte i / 8.
#if VLDV_VECTOR_BYTES == 32
    const auto word = as<std::uint8_t>(all(static_cast<std::uint32_t>(bits)));
    const auto spread = shuffled<[](int i) { return i / 16 * 16 + i / 8; }>(word, word);
#else
    const std::uint64_t ones = 0x0101010101010101;
    const auto spread = as<std::uint8_t>(vec<std::uint64_t>{(bits & 255) * ones, (bits >> 8 & 255) * ones});
#endif
    const auto bit = as<std::uint8_t>(all<std::uint64_t>(0x8040201008040201));
    return as<std::uint8_t>((spread & bit) == bit);
#endif
}

/// One bit a byte of 64, 1 where it is not 0.
inline std::uint64_t word_of(const std::uint8_t* bytes)
{
#if VLDV_VECTOR_BYTES == 64
    return _mm512_test_epi8_mask(bits(load(bytes)), bits(load(bytes)));
#else
    std::uint64_t zeros = 0;
    for (int part = 0; part < 64; part += wide<std::uint8_t>) zeros |= zeros_of(load(bytes + part)) << part;
    return ~zeros;
#endif
}

void pack_bytes(const std::uint8_t* bytes, int width, std::uint64_t* words, std::size_t stride) noexcept
{
    for (; width >= 64; width -= 64, bytes += 64, words += stride) *words = word_of(bytes);
    pack_bytes_reference(bytes, width, words, stride);
}

void keep_bytes(const std::uint64_t* words, std::size_t stride, std::uint8_t* bytes, int width) noexcept
{
    constexpr int lanes = wide<std::uint8_t>;
    for (; width >= 64; width -= 64, bytes += 64, words += stride)
        for (int part = 0; part < 64; part += lanes) {
            const auto block = load(bytes + part), kept = block & bytes_of(*words >> part);
            // Most blocks have nothing to lose, and what is not written need not go back to memory; but to ask for
            // each part of a word takes longer than to write.
            if (lanes == 64 && zeros_of(block ^ kept) == ~std::uint64_t{0}) continue;
            store(bytes + part, kept);
        }
    keep_bytes_reference(words, stride, bytes, width);
}

} // namespace
} // namespace vldv::primitives::simd
