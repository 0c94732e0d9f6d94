#include "paint/raster/scan_convert.h"

#include <algorithm>
#include <numeric>

namespace vldv::paint {

namespace {

using platform::pixel_span;
__extension__ using wide = __int128;

constexpr std::int64_t coordinateLimit = std::int64_t{1} << 40;
constexpr std::int64_t half = fixedOne / 2;

/// Where an edge crosses the middle of a row.
using crossing = platform::edge_crossing;

/// Brings crossings in order, by rows first: there are many of few columns each.
void sort_crossings(std::vector<crossing>& crossings, int top, int rows)
{
    // Counting puts them in rows in two walks over all; only the few of one row are sorted by comparison.
    std::vector<std::size_t> ends(static_cast<std::size_t>(rows) + 1);
    for (const crossing& one : crossings) ++ends[static_cast<std::size_t>(one.y - top) + 1];
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    std::vector<std::size_t> next(ends.begin(), ends.end() - 1);
    std::vector<crossing> out(crossings.size());
    for (const crossing& one : crossings) out[next[static_cast<std::size_t>(one.y - top)]++] = one;
    for (std::size_t row = 0; row + 1 < ends.size(); ++row)
        std::sort(out.begin() + static_cast<std::ptrdiff_t>(ends[row]),
                  out.begin() + static_cast<std::ptrdiff_t>(ends[row + 1]),
                  [](const crossing& a, const crossing& b) { return a.x < b.x; });
    crossings = std::move(out);
}

std::int64_t floor_div(wide a, wide b) noexcept
{
    return static_cast<std::int64_t>(a / b - ((a % b != 0 && (a < 0) != (b < 0)) ? 1 : 0));
}

/// The first row or column whose middle is not before `at`.
std::int64_t first_from(std::int64_t at) noexcept { return -floor_div(-(at - half), fixedOne); }

fixed_point within_limit(fixed_point point) noexcept
{
    return {std::clamp(point.x, -coordinateLimit, coordinateLimit),
            std::clamp(point.y, -coordinateLimit, coordinateLimit)};
}

void add_edge(fixed_point from, fixed_point to, const CRect& bounds, std::vector<crossing>& out)
{
    const int direction = from.y < to.y ? 1 : -1;
    if (direction < 0) std::swap(from, to);
    const std::int64_t first = std::max<std::int64_t>(first_from(from.y), bounds.top);
    const std::int64_t end = std::min<std::int64_t>(first_from(to.y), bounds.bottom);
    if (first >= end) return;
    // Column = ceil(at / unit), stepped from row to row by whole columns and a rest.
    const wide dx = wide{to.x} - from.x, unit = wide{to.y - from.y} * fixedOne;
    const wide at = wide{from.x - half} * (to.y - from.y) + wide{first * fixedOne + half - from.y} * dx;
    std::int64_t column = -floor_div(-at, unit);
    wide rest = wide{column} * unit - at; // 0 … unit - 1
    const std::int64_t step = floor_div(dx * fixedOne, unit);
    const wide stepRest = dx * fixedOne - wide{step} * unit;
    for (std::int64_t y = first; y < end; ++y) {
        const auto x = std::clamp<std::int64_t>(column, bounds.left, bounds.right);
        out.push_back({static_cast<int>(y), static_cast<int>(x), direction});
        column += step;
        rest -= stepRest;
        if (rest < 0) {
            ++column;
            rest += unit;
        }
    }
}

} // namespace

std::vector<pixel_span> scan_convert(std::span<const fixed_figure> figures, bool winding, const CRect& bounds)
{
    std::vector<crossing> crossings;
    for (const fixed_figure& points : figures)
        for (std::size_t i = 0; i < points.size(); ++i)
            add_edge(within_limit(points[i]), within_limit(points[(i + 1) % points.size()]), bounds, crossings);
    if (crossings.empty()) return {};
    sort_crossings(crossings, bounds.top, bounds.Height());
    return platform::spans_between(crossings, winding);
}

void join_spans(std::vector<pixel_span>& spans)
{
    std::sort(spans.begin(), spans.end(),
              [](const pixel_span& a, const pixel_span& b) { return a.y != b.y ? a.y < b.y : a.left < b.left; });
    std::size_t kept = 0;
    for (const pixel_span& span : spans) {
        if (kept > 0 && spans[kept - 1].y == span.y && spans[kept - 1].right >= span.left)
            spans[kept - 1].right = std::max(spans[kept - 1].right, span.right);
        else
            spans[kept++] = span;
    }
    spans.resize(kept);
}

} // namespace vldv::paint
