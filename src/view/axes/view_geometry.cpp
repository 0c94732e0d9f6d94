#include "view/axes/view_geometry.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace vldv::view {

namespace {

/// a * b / c, halves up, at least 1.
int scaled(int a, int b, int c) noexcept
{
    const std::int64_t doubled = 2 * std::int64_t{a} * b;
    return static_cast<int>(std::clamp<std::int64_t>((doubled + c) / (2 * std::int64_t{c}), 1, 1 << 30));
}

std::int64_t overlap(const CRect& a, const CRect& b) noexcept
{
    CRect common;
    return common.IntersectRect(a, b) ? std::int64_t{common.Width()} * common.Height() : 0;
}

std::int64_t distance(const CRect& a, const CRect& b) noexcept
{
    const CSize apart = a.CenterPoint() - b.CenterPoint();
    return std::int64_t{apart.cx} * apart.cx + std::int64_t{apart.cy} * apart.cy;
}

bool is_nearer(const CRect& candidate, const CRect& best, const CRect& main) noexcept
{
    const std::int64_t own = overlap(candidate, main), other = overlap(best, main);
    return own != other ? own > other : distance(candidate, main) < distance(best, main);
}

} // namespace

CSize best_size(CSize size, CSize limit) noexcept
{
    if (size.cx <= 0 || size.cy <= 0) return size;
    // The side that is larger in relation to its limit takes the limit, and the other follows in proportion: the
    // largest size of this shape that fits. A size that touches its limit already is left alone, as scaling could only
    // round it.
    const double rx = static_cast<double>(size.cx) / limit.cx, ry = static_cast<double>(size.cy) / limit.cy;
    if (std::max(rx, ry) == 1.0) return size;
    if (rx < ry) return {scaled(size.cx, limit.cy, size.cy), limit.cy};
    return {limit.cx, scaled(size.cy, limit.cx, size.cx)};
}

CRect shape_kept(const CRect& room, CSize source) noexcept
{
    if (source.cx <= 0 || source.cy <= 0) return room;
    const double rx = static_cast<double>(room.Width()) / source.cx,
                 ry = static_cast<double>(room.Height()) / source.cy;
    CRect kept = room;
    if (rx <= ry) {
        const int fitting = base::nearest_int(source.cy * rx);
        kept.top += (room.Height() - fitting) / 2;
        kept.bottom = kept.top + fitting;
    } else {
        const int fitting = base::nearest_int(source.cx * ry);
        kept.left += (room.Width() - fitting) / 2;
        kept.right = kept.left + fitting;
    }
    return kept;
}

CRect zoomed_window(const CRect& window, CSize whole, CPoint around, double factor) noexcept
{
    const auto zoomed = [factor](int low, int length, int all, int at) {
        // A few samples that grow by a fifth would stay as many for good.
        const int least = factor > 1.0 ? length + 1 : 1;
        const int wanted = std::min(all, std::max(least, static_cast<int>(std::floor(length * factor))));
        // The sample under the pointer stays there: its distance from the start shrinks or grows with the window.
        const int distance = at - low;
        const int start = std::max(0, std::min(all - wanted, low + distance - base::nearest_int(distance * factor)));
        return std::pair{start, std::max(wanted, std::min(all, start + wanted))};
    };
    const auto [left, right] = zoomed(window.left, window.Width(), whole.cx, around.x);
    const auto [top, bottom] = zoomed(window.top, window.Height(), whole.cy, around.y);
    return {left, top, right, bottom};
}

CRect window_showing(const CRect& window, CSize whole, CPoint sample) noexcept
{
    if (window.PtInRect(sample)) return window;
    const auto start = [](int at, int length, int all) {
        return std::clamp(at - length / 2, 0, std::max(all - length, 0));
    };
    const CPoint corner{start(sample.x, window.Width(), whole.cx), start(sample.y, window.Height(), whole.cy)};
    return {corner, window.Size()};
}

CSize repaired_content(CSize size) noexcept
{
    constexpr int widest = 1 << 24; // no screen is; sums with margins and frames stay inside the numbers
    if (size.cx == 0) return {1, 1};
    if (size.cx > 0) return {std::min(size.cx, widest), std::clamp(size.cy, -widest, widest)};
    return {1, std::clamp(base::nearest_int(static_cast<double>(size.cy) / size.cx), -widest, widest)};
}

CSize largest_display(const std::vector<CRect>& monitors) noexcept
{
    constexpr int unlimited = std::numeric_limits<int>::max();
    CRect all;
    for (const CRect& each : monitors) all.UnionRect(CRect(all), each);
    return all.IsRectEmpty() ? CSize{unlimited, unlimited} : CSize{2 * all.Width(), 2 * all.Height()};
}

double bounded_zoom(double factor, CSize display, int smallest, CSize largest) noexcept
{
    if (display.cx < 1 || display.cy < 1) return factor;
    if (factor < 1.0) return std::min(1.0, std::max(factor, double(smallest) / std::min(display.cx, display.cy)));
    const double room = std::min(double(largest.cx) / display.cx, double(largest.cy) / display.cy);
    return std::max(1.0, std::min(factor, room));
}

CSize shrunk_into(CSize size, CSize limit) noexcept
{
    const CSize box{std::max(limit.cx, 1), std::max(limit.cy, 1)};
    return size.cx <= box.cx && size.cy <= box.cy ? size : best_size(size, box);
}

full_screen_place place_full_screen(const std::vector<CRect>& monitors, int mode, int index, const CRect& main)
{
    CRect all; // holds the screen's origin in any case
    CRect selected = monitors.empty() ? CRect() : monitors.front();
    CRect nearest = selected;
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        const CRect& each = monitors[i];
        all = {std::min(all.left, each.left), std::min(all.top, each.top), std::max(all.right, each.right),
               std::max(all.bottom, each.bottom)};
        if (index >= 0 && i == static_cast<std::size_t>(index)) selected = each;
        if (is_nearer(each, nearest, main)) nearest = each;
    }
    if (mode == nearestMonitor) return {nearest, nearest.CenterPoint()};
    return {mode == allMonitors ? all : selected, selected.CenterPoint()};
}

} // namespace vldv::view
