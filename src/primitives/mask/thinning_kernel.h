// Included by the sources of the kernels alone; see simd/vector.h.
#pragma once
#include "primitives/mask/thinning.h"
#include "primitives/mask/thinning_rule.h"
#include "primitives/simd/vector.h"

namespace vldv::primitives::simd {
namespace {

/// Neighbouring rows of a strip.
using strip_rows = vec<std::uint64_t>;
constexpr int rowsAtOnce = wide<std::uint64_t>;

/// The rows of a register, each one lower: the first is the one that was before.
inline strip_rows one_row_lower(std::uint64_t before, strip_rows rows)
{
    return shuffled<[](int i) { return rowsAtOnce - 1 + i; }>(all(before), rows);
}

/// The bits that are set in any of the rows.
inline std::uint64_t any_of(strip_rows rows)
{
    return folded(rows, [](auto a, auto b) { return a | b; });
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
inline std::uint64_t step_tile(const tile_place& tile, bool isOdd)
{
    std::uint64_t changed = 0;
    for (int row = 0; row < bit_strips::tileRows; row += rowsAtOnce) {
        thinning_rule::around<strip_rows> at;
        strip_rows centre, out;
        thinning_rule::load_row(tile.oldLeft + row, tile.rows + row, tile.right + row, at.west, centre, at.east);
        store(tile.old + row, centre);
        if (any_of(centre) == 0) continue;
        thinning_rule::load_row(tile.oldLeft + row + 1, tile.rows + row + 1, tile.right + row + 1, at.northWest,
                                at.north, at.northEast);
        at.south = one_row_lower(tile.old[row - 1], centre);
        thinning_rule::beside(load(tile.oldLeft + row - 1), at.south, load(tile.right + row - 1), at.southWest,
                              at.southEast);
        thinning_rule::taken_away(centre, at, isOdd, out);
        store(tile.rows + row, centre & ~out);
        changed |= any_of(out);
    }
    return changed;
}

/// Keeps the tiles awake that lie around a change, for the two steps that follow: those of the strip, and those beside
/// it where the column at its edge changed. Without branches, since how an area lies to the tiles is anybody's guess.
/// \param changed  columns of each tile, of the one before the first and of the one behind the last
inline void wake_around(const std::uint64_t* changed, std::ptrdiff_t tiles, std::uint32_t* awake,
                        std::ptrdiff_t awakeStride, std::uint32_t until)
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
bool run_thinning_step(const thinning_step& step) noexcept
{
    constexpr std::ptrdiff_t rows = bit_strips::tileRows;
    const std::ptrdiff_t tiles = step.tiles, awakeStride = tiles + 2;
    const std::uint32_t number = step.number;
    const bool isOdd = number % 2 != 0;
    // Left of the first strip all is clear, as it is before and behind every strip.
    std::memset(step.scratch, 0, step.scratchCount * sizeof *step.scratch);
    std::uint64_t *oldLeft = step.scratch + rows, *old = oldLeft + (tiles + 2) * rows;
    std::uint64_t* const columns = old + (tiles + 1) * rows + 1;
    std::uint64_t everywhere = 0;
    for (std::ptrdiff_t s = 0; s < step.strips; ++s) {
        std::uint64_t *const strip = step.rows + s * step.stride, *const right = strip + step.stride;
        std::uint32_t* const awake = step.awake + awakeStride * (s + 1) + 1;
        std::uint64_t any = 0;
        for (std::ptrdiff_t tile = 0; tile < tiles; ++tile) {
            const std::ptrdiff_t first = tile * rows;
            if (awake[tile] < number) {
                std::memcpy(old + first, strip + first, sizeof(std::uint64_t) * rows);
                columns[tile] = 0;
            } else {
                columns[tile] = step_tile({oldLeft + first, old + first, strip + first, right + first}, isOdd);
            }
            any |= columns[tile];
        }
        if (any != 0) wake_around(columns, tiles, awake, awakeStride, number + 2);
        everywhere |= any;
        std::uint64_t* const before = old;
        old = oldLeft;
        oldLeft = before;
    }
    return everywhere != 0;
}

} // namespace
} // namespace vldv::primitives::simd
