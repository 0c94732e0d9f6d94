#include "primitives/map/histogram.h"

#include <cstring>

namespace vldv::primitives {

namespace {

constexpr std::size_t wordHeights = 4;

/// Four heights in one word, each as its place among the counts.
std::uint64_t places(const std::int16_t* heights) noexcept
{
    std::uint64_t word;
    std::memcpy(&word, heights, sizeof word);
    // Turning the sign bit over adds 32768 to each of the four.
    return word ^ 0x8000800080008000u;
}

} // namespace

void count_heights(std::span<const std::int16_t> heights, std::span<std::uint32_t, heightCount> counts) noexcept
{
    std::uint32_t* const table = counts.data();
    // Neighbours are often equal, and a count that has just been written is slow to read again: four distant places of
    // the image take turns.
    const std::size_t quarter = heights.size() / (4 * wordHeights) * wordHeights;
    const std::int16_t* const from = heights.data();
    for (std::size_t i = 0; i < quarter; i += wordHeights) {
        std::uint64_t a = places(from + i), b = places(from + quarter + i), c = places(from + 2 * quarter + i),
                      d = places(from + 3 * quarter + i);
        for (std::size_t k = 0; k < wordHeights; ++k) {
            ++table[a & 0xffff];
            ++table[b & 0xffff];
            ++table[c & 0xffff];
            ++table[d & 0xffff];
            a >>= 16;
            b >>= 16;
            c >>= 16;
            d >>= 16;
        }
    }
    for (const std::int16_t height : heights.subspan(4 * quarter)) ++table[static_cast<std::size_t>(height + 32768)];
}

} // namespace vldv::primitives
