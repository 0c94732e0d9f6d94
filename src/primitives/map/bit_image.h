#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vldv::primitives {

constexpr int bitsOfWord = 64;
constexpr int words_for(int bits) noexcept { return (bits + bitsOfWord - 1) / bitsOfWord; }

/// A mask with one bit a sample, row by row: sample x is bit x % 64 of word x / 64. Bits past the width stay 0.
class bit_image {
public:
    bit_image() = default;
    bit_image(int width, int height) { assign(width, height); }
    /// All 0 in the given size; keeps its memory.
    void assign(int width, int height)
    {
        columns = std::max(width, 0);
        lines = std::max(height, 0);
        words.assign(static_cast<std::size_t>(words_for(columns)) * static_cast<std::size_t>(lines), 0);
    }

    int width() const noexcept { return columns; }
    int height() const noexcept { return lines; }
    std::uint64_t* row(int y) noexcept { return words.data() + offset(y); }
    const std::uint64_t* row(int y) const noexcept { return words.data() + offset(y); }
    /// False outside.
    bool test(int x, int y) const noexcept
    {
        return x >= 0 && y >= 0 && x < columns && y < lines && (row(y)[x / bitsOfWord] >> (x % bitsOfWord) & 1) != 0;
    }
    /// Sets or clears columns `first` to `last` - 1 of a row; what lies outside is left out.
    void fill(int y, int first, int last, bool value) noexcept;

private:
    std::size_t offset(int y) const noexcept
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(words_for(columns));
    }
    std::vector<std::uint64_t> words;
    int columns = 0, lines = 0;
};

/// Bits `first` to `last` - 1 of a word, 0 <= first < last <= 64.
constexpr std::uint64_t bit_range(int first, int last) noexcept
{
    return ~std::uint64_t{0} >> (bitsOfWord - (last - first)) << first;
}

inline void bit_image::fill(int y, int first, int last, bool value) noexcept
{
    first = std::max(first, 0);
    last = std::min(last, columns);
    if (y < 0 || y >= lines) return;
    std::uint64_t* const bits = row(y);
    while (first < last) {
        const int word = first / bitsOfWord, end = std::min(last, (word + 1) * bitsOfWord);
        const std::uint64_t range = bit_range(first - word * bitsOfWord, end - word * bitsOfWord);
        bits[word] = value ? bits[word] | range : bits[word] & ~range;
        first = end;
    }
}

} // namespace vldv::primitives
