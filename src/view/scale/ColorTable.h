#pragma once
#include "platform/draw/color.h"

#include <vector>

namespace vldv {

/// Colours from the lowest value to the highest. Tables differ in length.
using color_table = std::vector<colorEntry>;

} // namespace vldv

namespace vldv::view {

constexpr int builtInPalettes = 8;
constexpr int customPalette = 0;

constexpr colorEntry color_of(unsigned red, unsigned green, unsigned blue) noexcept
{
    return (red & 255u) | (green & 255u) << 8 | (blue & 255u) << 16;
}
constexpr unsigned red_of(colorEntry color) noexcept { return color & 255u; }
constexpr unsigned green_of(colorEntry color) noexcept { return color >> 8 & 255u; }
constexpr unsigned blue_of(colorEntry color) noexcept { return color >> 16 & 255u; }

/// Table of a built-in palette: 1 gray, 2 blue, 3 brown, 4 green, 5 zebra, 6 and 7 multicolor. The custom palette (0),
/// which belongs to the user, is black and has 255 entries here.
color_table built_in_palette(int id);

/// Entry of position i of n: T[k * (L - 1) / n], truncated, with k = n - i when `inverse`. n = 0 gives T[0].
colorEntry color_at(const color_table& table, bool inverse, int i, int n) noexcept;
/// Entry of position i of n through a gamma curve, rounded halves up.
colorEntry color_at(const color_table& table, bool inverse, int i, int n, double gamma) noexcept;

} // namespace vldv::view
