#include "surface/tools/hit_test.h"

#include "surface/figures/selection_state.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace vldv::surface {

namespace {

constexpr std::size_t none = hot_item::none;

int scaled(int value, int from, int to) noexcept
{
    return from == 0 ? value : static_cast<int>(std::int64_t{value} * to / from);
}

} // namespace

bool is_vertex_hit(CPoint vertex, CPoint at, int reach) noexcept
{
    return std::abs(vertex.x - at.x) <= reach && std::abs(vertex.y - at.y) <= reach;
}

bool is_segment_hit(CPoint from, CPoint to, CPoint at, int reach) noexcept
{
    const auto between = [](int a, int b, int value) { return std::min(a, b) <= value && value <= std::max(a, b); };
    if (!between(from.x, to.x, at.x) || !between(from.y, to.y, at.y)) return false;
    const double dx = double(to.x) - from.x, dy = double(to.y) - from.y;
    const double cross = dx * (double(at.y) - from.y) - dy * (double(at.x) - from.x);
    // Compared without dividing, so that a segment of no length is its point.
    return std::abs(cross) <= reach * std::hypot(dx, dy);
}

std::size_t find_vertex(const std::vector<CPoint>& points, CPoint at, int reach) noexcept
{
    const auto found = std::ranges::find_if(points, [=](CPoint each) { return is_vertex_hit(each, at, reach); });
    return found == points.end() ? none : static_cast<std::size_t>(found - points.begin());
}

std::size_t find_segment(const std::vector<CPoint>& points, CPoint at, int reach) noexcept
{
    for (std::size_t i = 1; i < points.size(); ++i)
        if (is_segment_hit(points[i - 1], points[i], at, reach)) return i;
    return none;
}

CPoint rescaled(CPoint point, CSize from, CSize to) noexcept
{
    return {scaled(point.x, from.cx, to.cx), scaled(point.y, from.cy, to.cy)};
}

} // namespace vldv::surface
