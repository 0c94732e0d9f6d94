#pragma once
#include <cstdint>
#include <cstring>

/// The rule of `thinner` on words of any width: a 64-bit number, or a vector of them for several rows of a strip.
namespace vldv::primitives::thinning_rule {

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

/// Rows of a strip and of its neighbours as those lie to the left and to the right: the bits of the samples to the west
/// and to the east come to the place of the sample.
template <class Word>
[[gnu::always_inline]] inline void beside(const Word& left, const Word& middle, const Word& right, Word& west,
                                          Word& east)
{
    west = middle << 1 | left >> 63;
    east = middle >> 1 | right << 63;
}

template <class Word>
[[gnu::always_inline]] inline void load_row(const std::uint64_t* left, const std::uint64_t* middle,
                                            const std::uint64_t* right, Word& west, Word& centre, Word& east)
{
    Word before, behind;
    load(left, before);
    load(middle, centre);
    load(right, behind);
    beside(before, centre, behind, west, east);
}

} // namespace vldv::primitives::thinning_rule
