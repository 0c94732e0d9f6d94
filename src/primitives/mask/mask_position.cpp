#include "primitives/mask/mask_position.h"

namespace vldv::primitives {

namespace {

std::uint64_t reversed(std::uint64_t bits) noexcept
{
    bits = (bits >> 1 & 0x5555555555555555) | (bits & 0x5555555555555555) << 1;
    bits = (bits >> 2 & 0x3333333333333333) | (bits & 0x3333333333333333) << 2;
    bits = (bits >> 4 & 0x0F0F0F0F0F0F0F0F) | (bits & 0x0F0F0F0F0F0F0F0F) << 4;
    return __builtin_bswap64(bits);
}

/// A mask as it looks in a mirror.
class mirrored_mask {
public:
    mirrored_mask(const bit_strips& mask_, mask_position position)
        : mask(mask_), mirrorsX(position.mirrorsX), mirrorsY(position.mirrorsY)
    {
    }
    /// The 64 samples from column 64 `strip` on, the first in the lowest bit.
    std::uint64_t word(int strip, int y) const noexcept
    {
        if (mirrorsY) y = mask.height() - 1 - y;
        return mirrorsX ? reversed(from(mask.width() - (strip + 1) * bitsOfWord, y)) : mask.strip(strip)[y];
    }

private:
    /// The 64 samples from a column on, which may lie up to 63 before the first.
    std::uint64_t from(int x, int y) const noexcept
    {
        const int strip = x < 0 ? -1 : x / bitsOfWord, shift = x & (bitsOfWord - 1);
        const std::uint64_t first = mask.strip(strip)[y];
        return shift == 0 ? first : first >> shift | mask.strip(strip + 1)[y] << (bitsOfWord - shift);
    }

    const bit_strips& mask;
    bool mirrorsX, mirrorsY;
};

/// An order of positions in which only those are equal that show the same: the one comes first that has the first
/// sample which the other has not. Both masks are of the same size.
bool is_before(const bit_strips& mask, mask_position position, const bit_strips& other,
               mask_position otherPosition) noexcept
{
    const mirrored_mask a(mask, position), b(other, otherPosition);
    for (int y = 0; y < mask.height(); ++y)
        for (int strip = 0; strip < mask.strips(); ++strip) {
            const std::uint64_t word = a.word(strip, y), change = word ^ b.word(strip, y);
            if (change != 0) return (word & change & -change) != 0;
        }
    return false;
}

} // namespace

void lay_mask(const bit_strips& mask, const bit_strips& upright, mask_position position, bit_strips& laid)
{
    const bit_strips& source = position.exchanges ? upright : mask;
    const mirrored_mask mirrored(source, position);
    laid.assign(source.width(), source.height());
    for (int strip = 0; strip < laid.strips(); ++strip)
        for (int y = 0; y < laid.height(); ++y) laid.strip(strip)[y] = mirrored.word(strip, y);
}

mask_position standard_position(const bit_strips& mask, const bit_strips& upright, bool exchangesFirst) noexcept
{
    const int excess = mask.height() - mask.width(); // laid, a mask is wider than high
    mask_position best{excess > 0 || (excess == 0 && exchangesFirst), false, false};
    for (const bool exchanges : {exchangesFirst, !exchangesFirst}) { // the first of equal ones stays
        if (exchanges ? excess < 0 : excess > 0) continue;
        for (const bool mirrorsY : {false, true})
            for (const bool mirrorsX : {false, true}) {
                const mask_position each{exchanges, mirrorsX, mirrorsY};
                if (is_before(exchanges ? upright : mask, each, best.exchanges ? upright : mask, best)) best = each;
            }
    }
    return best;
}

} // namespace vldv::primitives
