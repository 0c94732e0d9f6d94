#pragma once
#include "primitives/mask/bit_strips.h"

#include <utility>

namespace vldv::primitives {

/// One of the eight positions that a mask can be laid in: rows and columns exchanged or not, and then mirrored along
/// rows and along columns or not.
struct mask_position {
    bool exchanges = false, mirrorsX = false, mirrorsY = false;

    bool operator==(const mask_position&) const = default;
    /// Which sample of the mask a sample of the laid one is.
    std::pair<int, int> source(const bit_strips& laid, int x, int y) const noexcept
    {
        if (mirrorsX) x = laid.width() - 1 - x;
        if (mirrorsY) y = laid.height() - 1 - y;
        return exchanges ? std::pair(y, x) : std::pair(x, y);
    }
};

/// Lays a mask.
/// \param upright  the same mask with rows and columns exchanged; not looked at unless the position does that
void lay_mask(const bit_strips& mask, const bit_strips& upright, mask_position position, bit_strips& laid);

/// The position in which all the masks look the same that become each other by mirrors and turns: what is worked out on
/// the laid mask does not depend on how the mask itself lay.
/// \param upright         the mask with rows and columns exchanged; not looked at where the mask is wider than high
/// \param exchangesFirst  of positions in which the mask looks the same, one that exchanges rows and columns is taken
mask_position standard_position(const bit_strips& mask, const bit_strips& upright,
                                bool exchangesFirst = false) noexcept;

} // namespace vldv::primitives
