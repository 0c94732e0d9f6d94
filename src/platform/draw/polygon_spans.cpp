#include "platform/draw/polygon_spans.h"

#include <cmath>
#include <cstdint>

namespace vldv::platform {

namespace {

constexpr int coordinateLimit = 1 << 26;
__extension__ using wide = __int128;

/// Where an edge crosses the middle of a row: the first pixel whose centre is not left of it.
using crossing = edge_crossing;

CPoint within_limit(CPoint point) noexcept
{
    return {std::clamp(point.x, -coordinateLimit, coordinateLimit),
            std::clamp(point.y, -coordinateLimit, coordinateLimit)};
}

// Division truncates towards zero, which is already the ceiling of a negative quotient.
std::int64_t ceil_div(std::int64_t a, std::int64_t b) noexcept { return a / b + (a % b != 0 && (a > 0) == (b > 0)); }

void add_edge(CPoint from, CPoint to, std::vector<crossing>& out)
{
    const int direction = from.y < to.y ? 1 : -1;
    if (direction < 0) std::swap(from, to);
    const std::int64_t dx = std::int64_t{to.x} - from.x, dy = std::int64_t{to.y} - from.y;
    // The edge meets that line at x = from.x + halves * dx / (2 dy), and the centre of pixel p is p + 1/2. The first p
    // with p + 1/2 >= x is the ceiling below. All is in whole numbers, so that polygons which share an edge neither
    // overlap nor leave a gap. With the limit on coordinates the products stay under 2^56.
    // The middle of row y lies (2 (y - from.y) + 1) / 2 rows below the upper end; a pixel's centre half a pixel right.
    for (int y = from.y; y < to.y; ++y) {
        const std::int64_t halves = 2 * (std::int64_t{y} - from.y) + 1;
        out.push_back({y, from.x + static_cast<int>(ceil_div(halves * dx - dy, 2 * dy)), direction});
    }
}

} // namespace

std::vector<pixel_span> spans_between(std::span<const edge_crossing> crossings, bool winding)
{
    std::vector<pixel_span> out;
    int count = 0;
    for (std::size_t i = 0; i + 1 < crossings.size(); ++i) {
        const crossing &here = crossings[i], &next = crossings[i + 1];
        count += winding ? here.direction : 1;
        if (here.y != next.y) {
            count = 0; // polygons are closed, so the row's edges have cancelled out
            continue;
        }
        const bool inside = winding ? count != 0 : count % 2 != 0;
        if (!inside || here.x >= next.x) continue;
        if (!out.empty() && out.back().y == here.y && out.back().right == here.x)
            out.back().right = next.x;
        else
            out.push_back({here.y, here.x, next.x});
    }
    return out;
}

std::vector<pixel_span> polygon_spans(std::span<const std::vector<CPoint>> figures, bool winding)
{
    std::vector<crossing> crossings;
    for (const std::vector<CPoint>& points : figures)
        for (std::size_t i = 0; i < points.size(); ++i)
            add_edge(within_limit(points[i]), within_limit(points[(i + 1) % points.size()]), crossings);
    std::sort(crossings.begin(), crossings.end(),
              [](const crossing& a, const crossing& b) { return a.y != b.y ? a.y < b.y : a.x < b.x; });
    return spans_between(crossings, winding);
}

std::vector<pixel_span> ellipse_spans(const CRect& rect, int firstRow, int endRow)
{
    const CPoint low = within_limit(rect.TopLeft()), high = within_limit(rect.BottomRight());
    const std::int64_t width = high.x - low.x, height = high.y - low.y;
    std::vector<pixel_span> out;
    for (int y = std::max(low.y, firstRow); y < std::min(high.y, endRow); ++y) {
        // In half pixels from the middle: inside is u^2 height^2 + v^2 width^2 <= width^2 height^2.
        const std::int64_t v = 2 * std::int64_t{y} + 1 - low.y - high.y;
        const wide room = wide{width * width} * (height * height - v * v);
        const auto inside = [&](std::int64_t u) { return wide{u * u} * (height * height) <= room; };
        // The largest u with inside(u). The root in floating point is only an estimate, as `room` has up to 108 bits;
        // the two loops correct it in whole numbers.
        auto u = static_cast<std::int64_t>(std::sqrt(static_cast<double>(room)) / static_cast<double>(height));
        while (u > 0 && !inside(u)) --u;
        while (inside(u + 1)) ++u;
        const std::int64_t middle = std::int64_t{low.x} + high.x - 1; // doubled
        const std::int64_t first = ceil_div(middle - u, 2), last = -ceil_div(-(middle + u), 2);
        if (first <= last) out.push_back({y, static_cast<int>(first), static_cast<int>(last + 1)});
    }
    return out;
}

} // namespace vldv::platform
