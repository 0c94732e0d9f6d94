#include "view/scale/palette_edit.h"

#include "base/streams/rounding.h"

#include <algorithm>
#include <cstdint>

namespace vldv::view {

namespace {

constexpr int highest = 255;

void set_channel(colorEntry& color, color_channel channel, int value) noexcept
{
    const auto shift = static_cast<unsigned>(channel);
    color = (color & ~(255u << shift)) | static_cast<colorEntry>(std::clamp(value, 0, highest)) << shift;
}

/// Entry under a client x; cut towards the left side, clamped.
int entry_at(const color_table& table, int x, const CRect& pane) noexcept
{
    const auto last = static_cast<std::int64_t>(table.size()) - 1;
    const std::int64_t entry = (std::int64_t{x} - pane.left) * last / pane.Width();
    return static_cast<int>(std::clamp<std::int64_t>(entry, 0, last));
}

/// Mean of the entries within `reach` of `i`, halves up.
int mean_around(const color_table& table, color_channel channel, std::size_t i, std::size_t reach) noexcept
{
    int sum = 0;
    for (std::size_t at = i - reach; at <= i + reach; ++at) sum += channel_of(table[at], channel);
    const int count = static_cast<int>(2 * reach + 1);
    return (2 * sum + count) / (2 * count);
}

} // namespace

void draw_stroke(color_table& table, color_channel channel, CPoint from, CPoint to, const CRect& pane)
{
    if (pane.IsRectEmpty()) return;
    const int first = entry_at(table, from.x, pane), last = entry_at(table, to.x, pane);
    const int target = static_cast<int>(
        std::clamp<std::int64_t>((std::int64_t{pane.bottom} - to.y) * highest / pane.Height(), -(1 << 24), 1 << 24));
    if (first == last) {
        set_channel(table[static_cast<std::size_t>(first)], channel, target);
        return;
    }
    const int before = channel_of(table[static_cast<std::size_t>(first)], channel), step = last > first ? 1 : -1;
    for (int i = first; i != last + step; i += step) {
        // The line runs to where the pen is, beyond the pane too; only what it gives an entry is cut.
        const double left = static_cast<double>(target - before) * (last - i) / (last - first);
        colorEntry& entry = table[static_cast<std::size_t>(i)];
        entry &= 0x00ffffffu;
        set_channel(entry, channel, target - static_cast<int>(base::round_half_up(left)));
    }
}

void smooth(color_table& table)
{
    const std::size_t count = table.size();
    if (count < 3) return;
    // Two passes, means of three and then of five of those, make a smooth kernel seven entries wide. Entries that are
    // too near to an end for a pass take what the pass before gave them, and the ends themselves stay.
    color_table threes(count);
    threes.front() = table.front();
    threes.back() = table.back();
    for (const color_channel channel : {color_channel::red, color_channel::green, color_channel::blue}) {
        for (std::size_t i = 1; i + 1 < count; ++i) set_channel(threes[i], channel, mean_around(table, channel, i, 1));
        for (std::size_t i = 2; i + 2 < count; ++i) set_channel(table[i], channel, mean_around(threes, channel, i, 2));
    }
    table[1] = threes[1];
    table[count - 2] = threes[count - 2];
}

colorEntry column_color(const color_table& table, int x, int width) noexcept
{
    const auto last = static_cast<std::int64_t>(table.size()) - 1;
    return table[static_cast<std::size_t>(last * x / width)];
}

std::vector<CPoint> channel_line(const color_table& table, color_channel channel, CSize pane)
{
    std::vector<CPoint> points;
    const int lowest = pane.cy - 1;
    for (int x = 0; x < pane.cx; ++x) {
        const colorEntry color = column_color(table, x, pane.cx);
        points.push_back({x, lowest - channel_of(color, channel) * lowest / highest});
    }
    return points;
}

} // namespace vldv::view
