#include "paint/raster/hatch.h"

#include <cmath>

namespace vldv::paint {

namespace {

constexpr int period = 8;

/// Bit x of a row of the pattern: there is a line.
unsigned pattern_row(hatch_style style, int y) noexcept
{
    const unsigned falling = 1u << (y & 7), rising = 1u << (-y & 7);
    const unsigned across = (y & 7) == 0 ? 0xFFu : 0u, down = 1u;
    switch (style) {
    case HS_HORIZONTAL:
        return across;
    case HS_VERTICAL:
        return down;
    case HS_FDIAGONAL:
        return falling;
    case HS_BDIAGONAL:
        return rising;
    case HS_CROSS:
        return across | down;
    case HS_DIAGCROSS:
        return falling | rising;
    }
    return 0;
}

} // namespace

hatched_spans split_by_hatch(std::span<const platform::pixel_span> area, hatch_style style, CPoint origin, double ratio)
{
    // Cells of the pattern are `ratio` pixels wide. A pixel belongs to the cell in which its centre lies, and
    // `cellStart` is the first pixel of a cell by the same rule. Neighbouring cells of one kind become one span.
    const auto cell = [&](int pixel) { return static_cast<int>(std::floor((pixel + 0.5) / ratio)); };
    const auto cellStart = [&](int index) { return static_cast<int>(std::ceil(index * ratio - 0.5)); };
    hatched_spans out;
    for (const platform::pixel_span& span : area) {
        const unsigned pattern = pattern_row(style, cell(span.y - origin.y));
        const auto isLine = [&](int index) { return (pattern >> (index & (period - 1)) & 1) != 0; };
        for (int x = span.left; x < span.right;) {
            const int first = cell(x - origin.x);
            int next = first + 1;
            int end = cellStart(next) + origin.x;
            while (end < span.right && isLine(next) == isLine(first)) end = cellStart(++next) + origin.x;
            end = std::min(end, span.right);
            (isLine(first) ? out.lines : out.between).push_back({span.y, x, end});
            x = end;
        }
    }
    return out;
}

} // namespace vldv::paint
