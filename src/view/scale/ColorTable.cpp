#include "view/scale/ColorTable.h"

#include "base/streams/rounding.h"

#include <cmath>
#include <cstdlib>

namespace vldv::view {

namespace {

constexpr unsigned tableLength[builtInPalettes] = {255, 256, 256, 256, 256, 2048, 1024, 1024};

/// Conversion toward zero; a small negative number becomes 0 or wraps within 8 bits like the table itself.
unsigned truncated(double v) noexcept { return static_cast<unsigned>(static_cast<int>(v)); }

/// Quarter circles that rise late and early.
unsigned late_arc(int i) noexcept { return truncated(256.0 - std::sqrt(65535.0 - i * i)); }
unsigned early_arc(int i) noexcept { return truncated(std::sqrt(65535.0 - (i - 255) * (i - 255))); }

/// Triangle wave of period 510 that starts at 0.
colorEntry zebra(int i) noexcept
{
    const auto v = static_cast<unsigned>(std::abs((i + 255) % 510 - 255));
    return color_of(v, v, v);
}

/// Black, blue, pale blue-green, red, white.
colorEntry multicolor(int index) noexcept
{
    const auto i = static_cast<unsigned>(index);
    if (i < 256) return color_of(0, i / 2, i);
    if (i < 512) return color_of(i / 2 - 128, i / 2, 383 - i / 2);
    if (i < 768) return color_of(i / 2 - 128, 767 - i, 383 - i / 2);
    return color_of(255, i - 768, i - 768);
}

colorEntry built_in_color(int id, int i) noexcept
{
    const auto level = static_cast<unsigned>(i);
    switch (id) {
    case 1:
        return color_of(level, level, level);
    case 2:
        return color_of(late_arc(i), level, early_arc(i));
    case 3:
        return color_of(early_arc(i), level, late_arc(i));
    case 4:
        return color_of(level >> 1, level, level >> 1);
    case 5:
        return zebra(i);
    case 6:
        return multicolor(i);
    case 7:
        return multicolor(i) ^ 0xffffffu;
    default:
        return 0;
    }
}

} // namespace

color_table built_in_palette(int id)
{
    color_table table(tableLength[id]);
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = built_in_color(id, static_cast<int>(i));
    return table;
}

colorEntry color_at(const color_table& table, bool inverse, int i, int n) noexcept
{
    if (table.empty()) return 0;
    if (n == 0) return table[0];
    const auto k = static_cast<unsigned>(inverse ? n - i : i);
    const std::size_t index = k * static_cast<unsigned>(table.size() - 1) / static_cast<unsigned>(n);
    return table[index < table.size() ? index : table.size() - 1];
}

colorEntry color_at(const color_table& table, bool inverse, int i, int n, double gamma) noexcept
{
    if (table.empty()) return 0;
    if (n == 0) return table[0];
    const double last = static_cast<double>(table.size() - 1);
    const double x = static_cast<double>(inverse ? n - i : i) / n;
    const double index = base::round_half_up(std::pow(x, gamma) * last);
    return table[static_cast<std::size_t>(std::fmax(0.0, std::fmin(index, last)))];
}

} // namespace vldv::view
