#pragma once
#include "primitives/mask/thinning.h"

#include <algorithm>
#include <cstring>
#include <utility>

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

/// The rows of a register, each one lower: the first is the one that was before.
template <class Word>
[[gnu::always_inline]] inline void one_row_lower(std::uint64_t before, const Word& rows, Word& out)
{
    if constexpr (sizeof(Word) == 8) {
        out = before;
    } else {
        const Word first = before - Word{}; // in all places
        if constexpr (sizeof(Word) == 32)
            out = __builtin_shufflevector(first, rows, 3, 4, 5, 6);
        else
            out = __builtin_shufflevector(first, rows, 7, 8, 9, 10, 11, 12, 13, 14);
    }
}

/// The bits that are set in any of the rows.
template <class Word>
[[gnu::always_inline]] inline std::uint64_t any_of(const Word& rows)
{
    if constexpr (sizeof(Word) == 64) {
        const auto half =
            __builtin_shufflevector(rows, rows, 0, 1, 2, 3) | __builtin_shufflevector(rows, rows, 4, 5, 6, 7);
        return any_of(half);
    } else if constexpr (sizeof(Word) == 32) {
        const auto half = __builtin_shufflevector(rows, rows, 0, 1) | __builtin_shufflevector(rows, rows, 2, 3);
        return half[0] | half[1];
    } else {
        return rows;
    }
}

/// A tile and what lies around it as it was before the step: the strip to the left and the rows below have been through
/// it, so that they come from copies.
struct tile_place {
    const std::uint64_t* oldLeft;
    std::uint64_t* old; ///< the copy of this tile is made here
    std::uint64_t* rows;
    const std::uint64_t* right;
};

/// \return in which columns something was taken away
template <class Word>
[[gnu::always_inline]] inline std::uint64_t step_tile(const tile_place& tile, bool isOdd)
{
    constexpr int rowsAtOnce = sizeof(Word) / 8;
    std::uint64_t changed = 0;
    for (int row = 0; row < bit_strips::tileRows; row += rowsAtOnce) {
        around<Word> at;
        Word centre, out, left, right;
        load_row(tile.oldLeft + row, tile.rows + row, tile.right + row, at.west, centre, at.east);
        std::memcpy(tile.old + row, &centre, sizeof centre);
        if (any_of(centre) == 0) continue;
        load_row(tile.oldLeft + row + 1, tile.rows + row + 1, tile.right + row + 1, at.northWest, at.north,
                 at.northEast);
        one_row_lower(tile.old[row - 1], centre, at.south);
        load(tile.oldLeft + row - 1, left);
        load(tile.right + row - 1, right);
        beside(left, at.south, right, at.southWest, at.southEast);
        taken_away(centre, at, isOdd, out);
        centre &= ~out;
        std::memcpy(tile.rows + row, &centre, sizeof centre);
        changed |= any_of(out);
    }
    return changed;
}

/// Keeps the tiles awake that lie around a change, for the two steps that follow: those of the strip, and those beside
/// it where the column at its edge changed. Without branches, since how an area lies to the tiles is anybody's guess.
/// \param changed  columns of each tile, of the one before the first and of the one behind the last
inline void wake_around(const std::uint64_t* changed, std::ptrdiff_t tiles, std::uint32_t* awake,
                        std::ptrdiff_t awakeStride, std::uint32_t until) noexcept
{
    std::uint32_t *const left = awake - awakeStride, *const right = awake + awakeStride;
    for (std::ptrdiff_t tile = 0; tile < tiles; ++tile) {
        const std::uint64_t columns = changed[tile - 1] | changed[tile] | changed[tile + 1];
        awake[tile] = columns != 0 ? until : awake[tile];
        left[tile] = (columns & 1) != 0 ? until : left[tile];
        right[tile] = columns >> 63 != 0 ? until : right[tile];
    }
}

/// \return whether something was taken away
template <class Word>
[[gnu::always_inline]] inline bool step_mask(const thinning_step& step)
{
    constexpr std::ptrdiff_t rows = bit_strips::tileRows;
    bit_strips& mask = *step.mask;
    const std::ptrdiff_t tiles = mask.tilesOfStrip(), awakeStride = tiles + 2;
    const std::uint32_t number = step.number;
    const bool isOdd = number % 2 != 0;
    // Left of the first strip all is clear, as it is before and behind every strip.
    std::fill_n(step.scratch, thinning_step::scratchWords(mask), std::uint64_t{0});
    std::uint64_t *oldLeft = step.scratch + rows, *old = oldLeft + (tiles + 2) * rows;
    std::uint64_t* const columns = old + (tiles + 1) * rows + 1;
    std::uint64_t everywhere = 0;
    for (int s = 0; s < mask.strips(); ++s) {
        std::uint64_t *const strip = mask.strip(s), *const right = mask.strip(s + 1);
        std::uint32_t* const awake = step.awake + awakeStride * (s + 1) + 1;
        std::uint64_t any = 0;
        for (std::ptrdiff_t tile = 0; tile < tiles; ++tile) {
            const std::ptrdiff_t first = tile * rows;
            if (awake[tile] < number) {
                std::memcpy(old + first, strip + first, sizeof(std::uint64_t) * rows);
                columns[tile] = 0;
            } else {
                columns[tile] = step_tile<Word>({oldLeft + first, old + first, strip + first, right + first}, isOdd);
            }
            any |= columns[tile];
        }
        if (any != 0) wake_around(columns, tiles, awake, awakeStride, number + 2);
        everywhere |= any;
        std::swap(old, oldLeft);
    }
    return everywhere != 0;
}

} // namespace vldv::primitives::thinning_rule
