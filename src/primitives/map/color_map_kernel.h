// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/map/color_map.h"
#include "primitives/simd/vector.h"

namespace vldv::primitives::simd {
namespace {

/// The very operations of `mapped_byte`: 255 above the window, and below it anything that is not above 0. What is no
/// number stays so.
inline vec<float> scaled(vec<float> values, byte_window window)
{
    return lower(all(255.0f), (values - window.low) * 255.0f / all(window.high - window.low));
}

/// Four registers of numbers up to 255 as bytes, to nearest with ties to even; 0 of what is below 0 or no number.
inline vec<std::uint8_t> rounded_bytes(vec<float> a, vec<float> b, vec<float> c, vec<float> d)
{
#if defined(VLDV_INTRINSIC)
    const auto pack = [](vec<float> x, vec<float> y) {
        return VLDV_INTRINSIC(packs_epi32)(VLDV_INTRINSIC(cvtps_epi32)(x), VLDV_INTRINSIC(cvtps_epi32)(y));
    };
    const auto groups = as<std::uint32_t>(VLDV_INTRINSIC(packus_epi16)(pack(a, b), pack(c, d)));
#else
    // So large a number has no room for fractions: the addition rounds.
    const auto pack = [](vec<float> x, vec<float> y) {
        const auto whole = [](vec<float> v) { return as<std::uint16_t>(higher(v, vec<float>{}) + 8388608.0f); };
        return as<std::uint8_t>(even_places(whole(x), whole(y)));
    };
    const auto groups = as<std::uint32_t>(even_places(pack(a, b), pack(c, d)));
#endif
    // Packing works within each 16 bytes; this order of the groups of four puts them right.
    constexpr int blocks = VLDV_VECTOR_BYTES / 16;
    return as<std::uint8_t>(shuffled<[](int i) { return i % blocks * 4 + i / blocks; }>(groups, groups));
}

inline vec<float> load_numbers(const float* from) { return load(from); }
inline vec<float> load_numbers(const std::int16_t* from)
{
    return __builtin_convertvector(load_widened(from), vec<float>);
}

template <class Sample>
void map_samples(const Sample* samples, std::size_t count, byte_window window, std::uint8_t* out) noexcept
{
    constexpr std::size_t lanes = wide<float>, block = 4 * lanes;
    const auto mapBlock = [window](const Sample* from) {
        const auto part = [&](std::size_t k) { return scaled(load_numbers(from + k * lanes), window); };
        return rounded_bytes(part(0), part(1), part(2), part(3));
    };
    std::size_t i = 0;
    for (; i + block <= count; i += block) store(out + i, mapBlock(samples + i));
    if (i == count) return;
    if (count > block) return store(out + count - block, mapBlock(samples + count - block)); // some of them again
    Sample few[block] = {};
    std::memcpy(few, samples, count * sizeof(Sample));
    const auto bytes = mapBlock(few);
    std::memcpy(out, &bytes, count);
}

/// Writes pixels of 4 bytes around the fourth ones that are there; those of `pixels` are 0.
template <class Vector>
inline void merge_pixels(std::uint8_t* out, Vector pixels)
{
    Vector before;
    std::memcpy(&before, out, sizeof before);
    store(out, (before & 0xff000000) | pixels);
}

inline void paint_32_rest(const std::uint8_t* bytes, std::size_t count, const color_lookup& colors, std::uint8_t* out)
{
    for (; count > 0; --count, ++bytes, out += 4) merge_pixels(out, colors.pixel[*bytes]);
}

/// By whole words: the fourth byte of one is overwritten by the next pixel, so that only the last must be exact.
inline void paint_24_words(const std::uint8_t* bytes, std::size_t count, const color_lookup& colors, std::uint8_t* out)
{
#pragma GCC unroll 4
    for (; count > 1; --count, ++bytes, out += 3) std::memcpy(out, &colors.pixel[*bytes], 4);
    if (count > 0) std::memcpy(out, &colors.pixel[*bytes], 3);
}

#if defined(__AVX512VBMI__) // tables of 256 bytes in registers need its permutations

/// One channel of the colours: a quarter of the table in each register.
struct channel_table {
    explicit channel_table(const std::uint8_t* table)
        : parts{load(table), load(table + 64), load(table + 128), load(table + 192)}
    {
    }
    vec<std::uint8_t> operator[](vec<std::uint8_t> bytes) const
    {
        // The byte's top bit chooses between the halves.
        return as<std::int8_t>(bytes) < 0 ? lookedUp(bytes, 2) : lookedUp(bytes, 0);
    }

private:
    vec<std::uint8_t> lookedUp(vec<std::uint8_t> bytes, int part) const
    {
        return as<std::uint8_t>(_mm512_permutex2var_epi8(bits(parts[part]), bits(bytes), bits(parts[part + 1])));
    }
    vec<std::uint8_t> parts[4];
};

struct channel_tables {
    explicit channel_tables(const color_lookup& colors) : blue(colors.blue), green(colors.green), red(colors.red) {}
    channel_table blue, green, red;
};

void paint_32(const std::uint8_t* bytes, std::size_t count, const color_lookup& colors, std::uint8_t* out) noexcept
{
    constexpr std::size_t block = wide<std::uint8_t>;
    const channel_tables tables(colors);
    for (; count >= block; count -= block, bytes += block, out += 4 * block) {
        // Interleaving works within quarters: this order of the 32-bit groups makes its results consecutive.
        const auto groups = as<std::uint32_t>(load(bytes));
        const auto level = as<std::uint8_t>(shuffled<[](int i) { return i / 4 + i % 4 * 4; }>(groups, groups));
        const auto b = tables.blue[level], g = tables.green[level], r = tables.red[level];
        const auto put = [&]<bool Upper>(std::uint8_t* to) {
            const auto blueGreen = as<std::uint16_t>(interleaved<Upper>(b, g));
            const auto red = as<std::uint16_t>(interleaved<Upper>(r, vec<std::uint8_t>{}));
            merge_pixels(to, as<std::uint32_t>(interleaved<false>(blueGreen, red)));
            merge_pixels(to + block, as<std::uint32_t>(interleaved<true>(blueGreen, red)));
        };
        put.template operator()<false>(out);
        put.template operator()<true>(out + 2 * block);
    }
    paint_32_rest(bytes, count, colors, out);
}

/// Of 64 pixels of 3 bytes, vector number `Part` of three.
template <int Part, class Vector>
inline Vector packed_pixels(Vector b, Vector g, Vector r)
{
    constexpr int block = wide<std::uint8_t>, first = Part * block;
    const auto blueGreen = shuffled<[](int i) { return (first + i) / 3 + ((first + i) % 3 == 1 ? block : 0); }>(b, g);
    const auto red = shuffled<[](int i) { return (first + i) / 3; }>(r, r);
    return shuffled<[](int i) { return i + ((first + i) % 3 == 2 ? block : 0); }>(blueGreen, red);
}

void paint_24(const std::uint8_t* bytes, std::size_t count, const color_lookup& colors, std::uint8_t* out) noexcept
{
    constexpr std::size_t block = wide<std::uint8_t>;
    const channel_tables tables(colors);
    for (; count >= block; count -= block, bytes += block, out += 3 * block) {
        const auto level = load(bytes);
        const auto b = tables.blue[level], g = tables.green[level], r = tables.red[level];
        store(out, packed_pixels<0>(b, g, r));
        store(out + block, packed_pixels<1>(b, g, r));
        store(out + 2 * block, packed_pixels<2>(b, g, r));
    }
    paint_24_words(bytes, count, colors, out);
}

#else

void paint_32(const std::uint8_t* bytes, std::size_t count, const color_lookup& colors, std::uint8_t* out) noexcept
{
    // Eight plain loads out of one word of indices take half the time of a gather.
    constexpr std::size_t step = 8;
    for (; count >= step; count -= step, bytes += step, out += 4 * step) {
        std::uint64_t word;
        std::memcpy(&word, bytes, sizeof word);
        const std::uint32_t* const pixel = colors.pixel;
        merge_pixels(out,
                     vec<std::uint32_t, step>{pixel[word & 255], pixel[word >> 8 & 255], pixel[word >> 16 & 255],
                                              pixel[word >> 24 & 255], pixel[word >> 32 & 255], pixel[word >> 40 & 255],
                                              pixel[word >> 48 & 255], pixel[word >> 56]});
    }
    paint_32_rest(bytes, count, colors, out);
}

void paint_24(const std::uint8_t* bytes, std::size_t count, const color_lookup& colors, std::uint8_t* out) noexcept
{
    paint_24_words(bytes, count, colors, out);
}

#endif

} // namespace
} // namespace vldv::primitives::simd
