#include "primitives/mask/thinning.h"

#include "primitives/map/byte_mask.h"
#include "primitives/mask/boundary.h"
#include "primitives/mask/thinning_rule.h"
#include "primitives/numeric.h"
#include "primitives/simd/kernels.h"

#include <array>
#include <bit>

using namespace vldv;

namespace vldv::primitives {

namespace {

/// Where a way leads from the outside into the set around a sample, by its neighbours: exactly one, so that the sample
/// is no link; and two neighbours that touch at a right angle, so that it is no end.
constexpr bool is_idle_corner(unsigned neighbours)
{
    const auto has = [neighbours](int way) { return (neighbours >> (way & 7) & 1) != 0; };
    int ways = 0;
    bool isCorner = false;
    for (int side = 0; side < 8; side += 2) {
        ways += !has(side) && (has(side + 1) || has(side + 2));
        isCorner |= has(side) && has(side + 2);
    }
    return ways == 1 && isCorner;
}

constexpr std::array<bool, 256> idle_corners()
{
    std::array<bool, 256> table{};
    for (unsigned neighbours = 0; neighbours < table.size(); ++neighbours)
        table[neighbours] = is_idle_corner(neighbours);
    return table;
}
constexpr std::array<bool, 256> isIdleCorner = idle_corners();

bool has_bits(const std::uint64_t* tile) noexcept
{
    std::uint64_t any = 0;
    for (int row = 0; row < bit_strips::tileRows; ++row) any |= tile[row];
    return any != 0;
}

} // namespace

void thinner::thin(bit_strips& mask)
{
    const std::size_t awakeStride = static_cast<std::size_t>(mask.tilesOfStrip()) + 2;
    awake.assign(awakeStride * static_cast<std::size_t>(mask.strips() + 2), 0);
    for (int s = 0; s < mask.strips(); ++s)
        for (int tile = 0; tile < mask.tilesOfStrip(); ++tile)
            if (has_bits(mask.strip(s) + std::ptrdiff_t{tile} * bit_strips::tileRows))
                awake[awakeStride * static_cast<std::size_t>(s + 1) + 1 + static_cast<std::size_t>(tile)] = 2;
    scratch.resize(thinning_step::scratchWords(mask));
    // Odd and even steps take from opposite sides. When one of each has found nothing to take, no later one will. A
    // tile starts awake for both, and each step keeps those awake next to which something changed; the others are
    // passed over.
    std::uint32_t lastChange = 0;
    for (std::uint32_t number = 1; number <= lastChange + 2; ++number)
        if (kernels().thinningStep({mask, scratch.data(), awake.data(), number})) lastChange = number;
    while (takeCorners(mask)) {}
}

/// Takes away corners in the order of rows and columns, each seeing what became of those before.
/// \return whether one that was passed already has become one
bool thinner::takeCorners(bit_strips& mask)
{
    const auto isCorner = [&mask](int x, int y) { return mask.test(x, y) && isIdleCorner[mask.neighbours(x, y)]; };
    bool again = false;
    for (int y = 0; y < mask.height(); ++y) {
        if (y % bit_strips::tileRows == 0) findOccupied(mask, y);
        const std::size_t words = occupied.size() / bit_strips::tileRows;
        const std::uint64_t* const row = occupied.data() + words * static_cast<std::size_t>(y % bit_strips::tileRows);
        for (std::size_t word = 0; word < words; ++word)
            for (std::uint64_t strips = row[word]; strips != 0; strips &= strips - 1) {
                const int s = static_cast<int>(word) * bitsOfWord + std::countr_zero(strips);
                for (std::uint64_t left = mask.strip(s)[y]; left != 0; left &= left - 1) {
                    const int x = s * bitsOfWord + std::countr_zero(left);
                    if (!isIdleCorner[mask.neighbours(x, y)]) continue;
                    mask.clear(x, y);
                    again |=
                        isCorner(x - 1, y) || isCorner(x - 1, y - 1) || isCorner(x, y - 1) || isCorner(x + 1, y - 1);
                }
            }
    }
    return again;
}

/// Which strips have bits in each of the eight rows from `firstRow` on.
void thinner::findOccupied(const bit_strips& mask, int firstRow)
{
    const auto words = static_cast<std::size_t>(words_for(mask.strips()));
    occupied.assign(words * bit_strips::tileRows, 0);
    for (int s = 0; s < mask.strips(); ++s) {
        const std::uint64_t* const rows = mask.strip(s) + firstRow;
        std::uint64_t* const bits = occupied.data() + s / bitsOfWord;
        for (std::size_t row = 0; row < bit_strips::tileRows; ++row)
            bits[row * words] |= static_cast<std::uint64_t>(rows[row] != 0) << (s % bitsOfWord);
    }
}

namespace {

/// One sample of the rule, by its neighbours in the order of `boundarySteps`.
bool is_taken(unsigned neighbours, bool isOdd)
{
    const auto at = [neighbours](int way) -> std::uint64_t { return neighbours >> way & 1; };
    const thinning_rule::around<std::uint64_t> around{at(2), at(1), at(0), at(7), at(6), at(5), at(4), at(3)};
    std::uint64_t out = 0;
    thinning_rule::taken_away<std::uint64_t>(1, around, isOdd, out);
    return (out & 1) != 0;
}

/// Samples of rows with nothing around them.
class byte_field {
public:
    byte_field(std::uint8_t* samples_, int width_, int height_) : samples(samples_), width(width_), height(height_) {}
    std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
    unsigned neighbours(const std::uint8_t* of, int x, int y) const
    {
        unsigned bits = 0;
        for (unsigned way = 0; way < 8; ++way) {
            const int nearX = x + boundarySteps[way].x, nearY = y + boundarySteps[way].y;
            if (nearX >= 0 && nearY >= 0 && nearX < width && nearY < height && of[index(nearX, nearY)] != 0)
                bits |= 1u << way;
        }
        return bits;
    }
    /// Clears what `isGone` says, with the neighbours in `of`. \return whether there was something
    template <class IsGone>
    bool sweep(const std::uint8_t* of, IsGone isGone)
    {
        bool changed = false;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                std::uint8_t& sample = samples[index(x, y)];
                if (sample == 0 || !isGone(neighbours(of, x, y))) continue;
                sample = 0;
                changed = true;
            }
        return changed;
    }

private:
    std::uint8_t* samples;
    int width, height;
};

} // namespace

void thin_reference(std::uint8_t* samples, int width, int height)
{
    byte_field field(samples, width, height);
    std::uint32_t lastChange = 0;
    for (std::uint32_t number = 1; number <= lastChange + 2; ++number) {
        const std::vector<std::uint8_t> before(samples, samples + field.index(0, height));
        if (field.sweep(before.data(), [&](unsigned around) { return is_taken(around, number % 2 != 0); }))
            lastChange = number;
    }
    while (field.sweep(samples, [](unsigned around) { return isIdleCorner[around]; })) {}
}

} // namespace vldv::primitives

void findSkeletonByThinning(unsigned char* image, int stride, int width, int height, int)
{
    if (width <= 0 || height <= 0) return;
    primitives::bit_strips mask;
    mask.assign(width, height);
    const auto row = [image, stride](int y) { return image + std::ptrdiff_t{y} * stride; };
    for (int y = 0; y < height; ++y) primitives::pack_bytes(row(y), width, mask.strip(0) + y, mask.stride());
    primitives::thinner().thin(mask);
    for (int y = 0; y < height; ++y) primitives::keep_bytes(mask.strip(0) + y, mask.stride(), row(y), width);
}
