#include "render_floor.h"

#include "primitives/cpu.h"

#include <algorithm>

#if defined(__x86_64__)
#include <immintrin.h>
/// Compiled for each instruction set; the machine's best is taken when the program starts.
#define VLDV_EACH_SET __attribute__((target_clones("default", "avx2", "arch=x86-64-v4")))
#else
#define VLDV_EACH_SET
#endif

namespace vldv::bench {

VLDV_EACH_SET std::int64_t read_all(std::span<const std::int16_t> samples)
{
    std::uint64_t mixed = 0;
    const auto* words = reinterpret_cast<const unsigned char*>(samples.data());
    const std::size_t count = samples.size_bytes() / sizeof(std::uint64_t);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint64_t word;
        __builtin_memcpy(&word, words + i * sizeof word, sizeof word);
        mixed ^= word;
    }
    return static_cast<std::int64_t>(mixed);
}

VLDV_EACH_SET std::int64_t plain_range(std::span<const std::int16_t> samples)
{
    std::int16_t low = 32767, high = -32768;
    for (const std::int16_t v : samples) {
        low = std::min(low, v);
        high = std::max(high, v);
    }
    return high - low;
}

#if defined(__x86_64__)
namespace {

__attribute__((target("avx512f,avx512bw"))) void stream_512(std::span<const std::int16_t> samples, std::uint8_t* out)
{
    for (std::size_t i = 0; i < samples.size(); i += 32, out += 128) {
        const __m512i block = _mm512_loadu_si512(samples.data() + i);
        _mm512_stream_si512(reinterpret_cast<__m512i*>(out), _mm512_unpacklo_epi16(block, block));
        _mm512_stream_si512(reinterpret_cast<__m512i*>(out + 64), _mm512_unpackhi_epi16(block, block));
    }
    _mm_sfence();
}

__attribute__((target("avx2"))) void stream_256(std::span<const std::int16_t> samples, std::uint8_t* out)
{
    for (std::size_t i = 0; i < samples.size(); i += 16, out += 64) {
        const __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(samples.data() + i));
        _mm256_stream_si256(reinterpret_cast<__m256i*>(out), _mm256_unpacklo_epi16(block, block));
        _mm256_stream_si256(reinterpret_cast<__m256i*>(out + 32), _mm256_unpackhi_epi16(block, block));
    }
    _mm_sfence();
}

} // namespace
#endif

void stream_pixels(std::span<const std::int16_t> samples, std::uint8_t* out)
{
#if defined(__x86_64__)
    if (primitives::has_avx512()) return stream_512(samples, out);
    if (primitives::has_avx2()) return stream_256(samples, out);
#endif
    for (const std::int16_t v : samples) {
        const std::uint32_t pixel = static_cast<std::uint16_t>(v);
        for (int k = 0; k < 4; ++k) *out++ = static_cast<std::uint8_t>(pixel >> 8 * k);
    }
}

} // namespace vldv::bench
