#include "paint/raster/line_pixels.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace vldv::paint {

namespace {

constexpr int coordinateLimit = 1 << 29;

/// One stretch of a line, stepped pixel by pixel along its longer side.
struct pixel_steps {
    CPoint from;
    std::int64_t dx, dy, count;

    pixel_steps(CPoint from_, CPoint to)
        : from(from_),
          dx(std::int64_t{to.x} - from_.x),
          dy(std::int64_t{to.y} - from_.y),
          count(std::max(std::abs(dx), std::abs(dy)))
    {
    }

    bool isUpright() const noexcept { return dx == 0; }

    /// Steps begin … end - 1 of an upright line; empty when there are none.
    CRect column(std::int64_t begin, std::int64_t end) const noexcept
    {
        if (begin >= end) return {};
        const std::int64_t first = dy > 0 ? from.y + begin : from.y - end + 1;
        return CRect({from.x, static_cast<int>(first)}, CSize{1, static_cast<int>(end - begin)});
    }

    /// Steps begin … end - 1 as spans.
    void add(std::int64_t begin, std::int64_t end, std::vector<platform::pixel_span>& out) const
    {
        if (begin >= end) return;
        walk x(from.x, dx, count, begin), y(from.y, dy, count, begin);
        bool continues = false;
        for (std::int64_t step = begin; step < end; ++step, x.go(), y.go()) {
            if (continues && out.back().y == y.place) {
                out.back().left = std::min(out.back().left, x.place);
                out.back().right = std::max(out.back().right, x.place + 1);
            } else {
                out.push_back({y.place, x.place, x.place + 1});
            }
            continues = true;
        }
    }

private:
    /// One coordinate on its way: start + floor(step * way / count + 1/2) in whole numbers. Where it begins is found by
    /// itself, so that a piece of a line has the pixels that it has in the whole line, wherever a clip begins.
    struct walk {
        walk(int start, std::int64_t way, std::int64_t count, std::int64_t step) : turn(2 * count), rise(2 * way)
        {
            const std::int64_t a = step * rise + count;
            const std::int64_t whole = a >= 0 ? a / turn : -((-a + turn - 1) / turn);
            place = static_cast<int>(start + whole);
            rest = a - whole * turn;
        }
        void go() noexcept // |rise| <= turn: by one at most
        {
            rest += rise;
            if (rest >= turn) {
                rest -= turn;
                ++place;
            } else if (rest < 0) {
                rest += turn;
                --place;
            }
        }

        std::int64_t turn, rise, rest;
        int place;
    };
};

CPoint within_limit(CPoint point) noexcept
{
    return {std::clamp(point.x, -coordinateLimit, coordinateLimit),
            std::clamp(point.y, -coordinateLimit, coordinateLimit)};
}

} // namespace

visible_part find_visible_part(double fromX, double fromY, double toX, double toY, double length, const CRect& bounds,
                               double margin)
{
    // The line is cut against the four sides of the bounds by its parameter (Liang and Barsky). Positions along it stay
    // those of the whole line, so that the pattern does not shift when a part is out of sight.
    visible_part out{0.0, length};
    const auto limit = [&](double from, double to, double low, double high) {
        const double way = to - from;
        if (way == 0.0) {
            if (from < low || from > high) out.last = out.first;
            return;
        }
        const double a = (low - from) / way * length, b = (high - from) / way * length;
        out.first = std::max(out.first, std::min(a, b));
        out.last = std::min(out.last, std::max(a, b));
    };
    limit(fromX, toX, bounds.left - margin, bounds.right + margin);
    limit(fromY, toY, bounds.top - margin, bounds.bottom + margin);
    return out;
}

line_spans thin_line(std::span<const CPoint> points, bool closed, const device_pen& pen, const CRect& bounds)
{
    line_spans out;
    if (points.empty()) return out;
    dash_walk dashes(pen.pattern);
    std::int64_t steps = 0;
    for (std::size_t i = 0; i + (closed ? 0 : 1) < points.size(); ++i) {
        const CPoint from = within_limit(points[i]), to = within_limit(points[(i + 1) % points.size()]);
        const pixel_steps stretch(from, to);
        if (stretch.count == 0) continue;
        steps += stretch.count;
        const auto length = static_cast<double>(stretch.count);
        constexpr double slack = 2.0;
        const visible_part part = find_visible_part(from.x, from.y, to.x, to.y, length, bounds, slack);
        const std::int64_t first = std::max(static_cast<std::int64_t>(std::floor(part.first)), std::int64_t{0});
        const std::int64_t end = std::min(static_cast<std::int64_t>(std::ceil(part.last)), stretch.count);
        if (stretch.isUpright() && pen.pattern.empty()) {
            if (const CRect column = stretch.column(first, end); !column.IsRectEmpty()) out.uprights.push_back(column);
            continue;
        }
        dashes.advance(length, part.first, part.last, [&](bool on, double begin, double until) {
            stretch.add(std::max(first, static_cast<std::int64_t>(std::ceil(begin))),
                        std::min(end, static_cast<std::int64_t>(std::ceil(until))), on ? out.line : out.gaps);
        });
    }
    // A closed outline without length is still a pixel.
    if (closed && steps == 0) out.line.push_back({points[0].y, points[0].x, points[0].x + 1});
    return out;
}

} // namespace vldv::paint
