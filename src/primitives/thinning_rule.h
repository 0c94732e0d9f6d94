#pragma once
#include "primitives/thinning.h"

#include <cstring>

/// The rule of `thinner` on words of any width: a 64-bit number, or a vector of them for several rows of a strip.
namespace primitives::thinning_rule {

template <class Word>
struct around {
    Word north, northEast, east, southEast, south, southWest, west, northWest;
};

/// At least two of four.
template <class Word>
[[gnu::always_inline]] inline void two_of(const Word& a, const Word& b, const Word& c, const Word& d, Word& out)
{
    out = (a & b) | (c & d) | ((a | b) & (c | d));
}

/// The samples of `centre` that step `number` takes away.
template <class Word>
[[gnu::always_inline]] inline void taken_away(const Word& centre, const around<Word>& at, bool isOdd, Word& out)
{
    const Word eastSide = at.northEast | at.east, southSide = at.southEast | at.south;
    const Word westSide = at.southWest | at.west, northSide = at.northWest | at.north;
    // Ways from the outside into the set around the sample: it is the only link of none if there is one way.
    const Word a = ~at.north & eastSide, b = ~at.east & southSide, c = ~at.south & westSide, d = ~at.west & northSide;
    const Word once = (a ^ b ^ c ^ d) & ~((a & b) | (c & d));
    // Neighbours, counted in pairs in two ways: two or three pairs.
    const Word e = at.north | at.northEast, f = at.east | at.southEast, g = at.south | at.southWest,
               h = at.west | at.northWest;
    Word many, alsoMany;
    two_of(northSide, eastSide, southSide, westSide, many);
    two_of(e, f, g, h, alsoMany);
    const Word all = northSide & eastSide & southSide & westSide & e & f & g & h;
    const Word kept = isOdd ? (e | ~at.southEast) & at.east : (g | ~at.northWest) & at.west;
    out = centre & once & many & alsoMany & ~all & ~kept;
}

template <class Word>
[[gnu::always_inline]] inline void load(const std::uint64_t* at, Word& out)
{
    std::memcpy(&out, at, sizeof out);
}

/// One row of three: the words themselves, and shifted so that the neighbour lies at the sample's place.
template <class Word>
[[gnu::always_inline]] inline void load_row(const std::uint64_t* at, std::size_t stride, Word& west, Word& middle,
                                            Word& east)
{
    Word before, behind;
    load(at - stride, before);
    load(at, middle);
    load(at + stride, behind);
    west = middle << 1 | before >> 63;
    east = middle >> 1 | behind << 63;
}

template <class Word>
[[gnu::always_inline]] inline bool is_zero(const Word& word)
{
    if constexpr (sizeof(Word) == sizeof(std::uint64_t)) {
        return word == 0;
    } else {
        std::uint64_t parts[sizeof(Word) / sizeof(std::uint64_t)], any = 0;
        std::memcpy(parts, &word, sizeof word);
        for (const std::uint64_t part : parts) any |= part;
        return any == 0;
    }
}

/// Works on a tile. \return whether something was taken away
template <class Word>
[[gnu::always_inline]] inline bool step_tile(const std::uint64_t* from, std::uint64_t* to, std::size_t stride,
                                             bool isOdd)
{
    constexpr int rowsAtOnce = sizeof(Word) / sizeof(std::uint64_t);
    bool changed = false;
    for (int row = 0; row < bit_strips::tileRows; row += rowsAtOnce) {
        around<Word> at;
        Word centre, out;
        load_row(from + row - 1, stride, at.southWest, at.south, at.southEast);
        load_row(from + row, stride, at.west, centre, at.east);
        load_row(from + row + 1, stride, at.northWest, at.north, at.northEast);
        taken_away(centre, at, isOdd, out);
        centre &= ~out;
        std::memcpy(to + row, &centre, sizeof centre);
        changed |= !is_zero(out);
    }
    return changed;
}

/// \return whether something was taken away
template <class Word>
[[gnu::always_inline]] inline bool step_mask(const thinning_step& step)
{
    const int tiles = step.from->tilesOfStrip(), strips = step.from->strips();
    const std::size_t stride = step.from->stride(), awakeStride = static_cast<std::size_t>(tiles) + 2;
    const bool isOdd = step.number % 2 != 0;
    bool changed = false;
    for (int s = 0; s < strips; ++s) {
        const std::uint64_t* const from = step.from->strip(s);
        std::uint64_t* const to = step.to->strip(s);
        std::uint32_t* const awake = step.awake + awakeStride * static_cast<std::size_t>(s + 1) + 1;
        for (int tile = 0; tile < tiles; ++tile) {
            if (awake[tile] < step.number) continue;
            const std::ptrdiff_t first = std::ptrdiff_t{tile} * bit_strips::tileRows;
            if (!step_tile<Word>(from + first, to + first, stride, isOdd)) continue;
            changed = true;
            // What lies around may change in the two steps that follow; this tile is not asked again in this one.
            for (const std::ptrdiff_t strip : {-1, 0, 1})
                for (const std::ptrdiff_t row : {-1, 0, 1})
                    awake[tile + row + strip * static_cast<std::ptrdiff_t>(awakeStride)] = step.number + 2;
        }
    }
    return changed;
}

} // namespace primitives::thinning_rule
