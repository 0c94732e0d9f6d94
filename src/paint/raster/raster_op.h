#pragma once
#include "platform/draw/color.h"
#include "platform/draw/drawing.h"

namespace vldv::paint {

/// A bitwise operation of a source S and the destination D as its truth table: bit 2 S + D is the result.
struct raster_op {
    /// D becomes (D & keep) ^ flip.
    struct change {
        std::uint32_t keep, flip;
    };

    unsigned truth = 12; ///< copies the source
    bool operator==(const raster_op&) const = default;

    constexpr bool result(unsigned source, unsigned destination) const noexcept
    {
        return (truth >> (2 * source + destination) & 1) != 0;
    }
    constexpr bool readsSource() const noexcept { return (truth >> 2) != (truth & 3); }
    constexpr bool readsDestination() const noexcept { return (truth >> 1 & 5) != (truth & 5); }
    /// Drawing a pixel twice leaves what drawing it once does.
    constexpr bool isIdempotent() const noexcept
    {
        for (unsigned s = 0; s < 2; ++s)
            for (unsigned d = 0; d < 2; ++d)
                if (result(s, result(s, d)) != result(s, d)) return false;
        return true;
    }
    /// What the operation with this source does to the low 24 bits of a pixel; the others stay.
    constexpr change with(std::uint32_t source) const noexcept
    {
        const auto where = [&](unsigned row) { return truth >> row & 1 ? ~0u : 0u; };
        const std::uint32_t overZero = (~source & where(0)) | (source & where(2));
        const std::uint32_t overOne = (~source & where(1)) | (source & where(3));
        return {(overZero ^ overOne) | 0xFF000000u, overZero & 0x00FFFFFFu};
    }
};

/// The pen or brush is the source. Numbers that are no mode copy.
constexpr raster_op raster_op_of(int rop2) noexcept
{
    return rop2 >= R2_BLACK && rop2 <= R2_WHITE ? raster_op{static_cast<unsigned>(rop2 - 1)} : raster_op{};
}

/// The operation's number holds its truth table over brush, source and destination, bit 4 P + 2 S + D of its third
/// byte. Here the blitted pixels are the source and the brush counts as none (its bits 0).
constexpr raster_op blit_op_of(raster_op3 operation) noexcept { return {operation >> 16 & 15u}; }
/// Combines the brush, in place of blitted pixels, with what is there.
constexpr raster_op brush_op_of(raster_op3 operation) noexcept
{
    return {(operation >> 16 & 3u) | (operation >> 18 & 12u)};
}

/// 0x00RRGGBB, as a bitmap's bytes blue, green, red read.
constexpr std::uint32_t pixel_of(colorEntry color) noexcept
{
    return (color & 0xFFu) << 16 | (color & 0xFF00u) | (color >> 16 & 0xFFu);
}

} // namespace vldv::paint
