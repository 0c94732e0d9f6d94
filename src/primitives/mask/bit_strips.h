#pragma once
#include "primitives/map/bit_image.h"

#include <cstdint>
#include <vector>

namespace vldv::primitives {

/// A mask in upright strips of 64 columns, the rows of a strip one word after another, with a border of clear bits all
/// around: eight rows of a strip are one wide register, and a narrow area is one short column of words.
class bit_strips {
public:
    /// Rows of a tile, the piece of a strip that is worked on at a time.
    static constexpr int tileRows = 8;

    /// All clear; keeps its memory. The size may not be negative.
    void assign(int width, int height)
    {
        columns = width;
        lines = height;
        tiles = (height + tileRows - 1) / tileRows;
        // The rows behind a strip are those before the next.
        stripWords = static_cast<std::size_t>(tiles + 1) * tileRows;
        memory.assign(static_cast<std::size_t>(tiles + 1) * static_cast<std::size_t>(strips() + 2) + 1, {});
    }

    int width() const noexcept { return columns; }
    int height() const noexcept { return lines; }
    int strips() const noexcept { return words_for(columns); }
    int tilesOfStrip() const noexcept { return tiles; }
    std::size_t stride() const noexcept { return stripWords; } ///< words from a strip to the next
    /// Row 0 of a strip, -1 to `strips()`; rows -1 and `height()` up to the end of the tile are there and clear.
    std::uint64_t* strip(int s) noexcept { return memory[firstTile(s)].rows; }
    const std::uint64_t* strip(int s) const noexcept { return memory[firstTile(s)].rows; }

    /// The column may be one outside on either side, as may the row.
    bool test(int x, int y) const noexcept
    {
        const int s = x < 0 ? -1 : x / bitsOfWord;
        return (strip(s)[y] >> (x & (bitsOfWord - 1)) & 1) != 0;
    }
    void clear(int x, int y) noexcept { strip(x / bitsOfWord)[y] &= ~(std::uint64_t{1} << (x & (bitsOfWord - 1))); }
    /// Sets columns `first` to `last` - 1 of a row, all inside.
    void set(int y, int first, int last) noexcept
    {
        while (first < last) {
            const int s = first / bitsOfWord, end = std::min(last, (s + 1) * bitsOfWord);
            strip(s)[y] |= bit_range(first - s * bitsOfWord, end - s * bitsOfWord);
            first = end;
        }
    }
    /// Sets rows `first` to `last` - 1 of a column, all inside.
    void setUpright(int x, int first, int last) noexcept
    {
        std::uint64_t* const rows = strip(x / bitsOfWord);
        const std::uint64_t bit = std::uint64_t{1} << (x & (bitsOfWord - 1));
        for (int y = first; y < last; ++y) rows[y] |= bit;
    }
    /// Bits of the eight neighbours of a sample inside, bit k for direction k of `boundarySteps`.
    unsigned neighbours(int x, int y) const noexcept;

private:
    /// Samples x - 1, x and x + 1 of a row as bits 0, 1 and 2.
    unsigned three(int x, int y) const noexcept
    {
        const int bit = x & (bitsOfWord - 1);
        if (bit > 0 && bit < bitsOfWord - 1) return static_cast<unsigned>(strip(x / bitsOfWord)[y] >> (bit - 1)) & 7;
        return static_cast<unsigned>(test(x - 1, y)) | static_cast<unsigned>(test(x, y)) << 1 |
               static_cast<unsigned>(test(x + 1, y)) << 2;
    }

    /// As wide as the widest register, so that a tile is never on two cache lines.
    struct alignas(64) tile {
        std::uint64_t rows[tileRows];
    };
    std::size_t firstTile(int s) const noexcept
    {
        return static_cast<std::size_t>(tiles + 1) * static_cast<std::size_t>(s + 1) + 1;
    }

    std::vector<tile> memory;
    std::size_t stripWords = 0;
    int columns = 0, lines = 0, tiles = 0;
};

inline unsigned bit_strips::neighbours(int x, int y) const noexcept
{
    const unsigned below = three(x, y - 1), beside = three(x, y), above = three(x, y + 1);
    // East, then the three above from east to west, west, and the three below from west to east.
    return beside >> 2 | (above & 4) >> 1 | (above & 2) << 1 | (above & 1) << 3 | (beside & 1) << 4 | (below & 1) << 5 |
           (below & 2) << 5 | (below & 4) << 5;
}

} // namespace vldv::primitives
